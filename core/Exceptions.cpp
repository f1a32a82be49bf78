#include "ZuXmlLib16/Exceptions.h"

namespace ZuXmlLib16 {
namespace {

// Cloning goes down the chain of causes, which has one link for every level that added its place.
// NOLINTBEGIN(misc-no-recursion)

std::unique_ptr<CZuException> CloneOf(const CZuException* exception) {
  return std::unique_ptr<CZuException>(exception != nullptr ? exception->Clone() : nullptr);
}

std::string WithPath(const std::string& message, const std::string& path) {
  return path.empty() ? message : message + "\nPath: " + path;
}

}  // namespace

CZuException::CZuException() = default;

CZuException::CZuException(const std::string& message) : m_message(message) {}

CZuException::CZuException(const std::string& message, const CZuException& inner)
    : m_message(message), m_inner(inner.Clone()) {}

CZuException::CZuException(const std::string& message, const std::string& path)
    : m_message(WithPath(message, path)), m_path(path) {}

CZuException::CZuException(const std::string& message, const std::string& path,
                           const CZuException& inner)
    : m_message(WithPath(message, path)), m_path(path), m_inner(inner.Clone()) {}

CZuException::CZuException(const CZuException& other)
    : m_message(other.m_message), m_path(other.m_path), m_inner(CloneOf(other.m_inner.get())) {}

CZuException& CZuException::operator=(const CZuException& other) {
  // Both copies first: other may be this exception or part of its own chain of causes.
  auto inner = CloneOf(other.m_inner.get());
  std::string message = other.m_message;
  m_message = std::move(message);
  m_inner = std::move(inner);
  return *this;
}

CZuException::~CZuException() = default;

CZuException* CZuException::Clone() const {
  return new CZuException(*this);
}

// NOLINTEND(misc-no-recursion)

std::string CZuException::GetFullMessage() const {
  std::string result = m_message;
  for (const CZuException* inner = m_inner.get(); inner != nullptr; inner = inner->m_inner.get()) {
    result += '\n';
    result += inner->m_message;
  }
  return result;
}

CZuValidationException* CZuValidationException::Clone() const {
  return new CZuValidationException(*this);
}
CZuInvalidValueException* CZuInvalidValueException::Clone() const {
  return new CZuInvalidValueException(*this);
}
CZuInvalidNamespaceException* CZuInvalidNamespaceException::Clone() const {
  return new CZuInvalidNamespaceException(*this);
}
CZuInvalidStateException* CZuInvalidStateException::Clone() const {
  return new CZuInvalidStateException(*this);
}
CZuInvalidParamException* CZuInvalidParamException::Clone() const {
  return new CZuInvalidParamException(*this);
}
CZuOverFlowException* CZuOverFlowException::Clone() const {
  return new CZuOverFlowException(*this);
}

}  // namespace ZuXmlLib16

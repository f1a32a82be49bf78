#pragma once

#include <memory>
#include <string>

#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// Root of all failures of the library. Not derived from std::exception; catch by reference.
/// Carries a message, the document path of the fault (empty when unknown) and the exception that
/// caused it.
class ZUXMLLIB16_API CZuException {
 public:
  CZuException();
  explicit CZuException(const std::string& message);
  /// @param inner  the cause; a clone of it is kept.
  CZuException(const std::string& message, const CZuException& inner);
  /// @param path  XPath of the fault; when not empty the message gets "\nPath: " and the path
  /// appended.
  CZuException(const std::string& message, const std::string& path);
  CZuException(const std::string& message, const std::string& path, const CZuException& inner);
  CZuException(const CZuException& other);
  /// Copies the message and the inner exception; the path of this object stays as it was.
  CZuException& operator=(const CZuException& other);
  virtual ~CZuException();

  /// @return a new heap copy of the most derived type, owned by the caller.
  virtual CZuException* Clone() const;

  /// The message, with the path behind it when there is one.
  std::string GetMessage() const { return m_message; }
  std::string GetPath() const { return m_path; }
  /// The cause or null; owned by this exception.
  CZuException* GetInnerException() const { return m_inner.get(); }
  /// This message and those of the inner exceptions, outermost first, one a line.
  std::string GetFullMessage() const;

 private:
  std::string m_message;
  std::string m_path;
  std::unique_ptr<CZuException> m_inner;
};

/// The document does not satisfy the schema.
class ZUXMLLIB16_API CZuValidationException : public CZuException {
 public:
  CZuValidationException() = default;
  using CZuException::CZuException;
  /// Takes over message, path and cause, giving them this type.
  explicit CZuValidationException(const CZuException& other) : CZuException(other) {}
  CZuValidationException* Clone() const override;

 private:
  std::string m_text;  // always empty; part of the class's layout
};

/// A value that cannot be converted.
class ZUXMLLIB16_API CZuInvalidValueException : public CZuValidationException {
 public:
  CZuInvalidValueException() = default;
  explicit CZuInvalidValueException(const std::string& message) : CZuValidationException(message) {}
  CZuInvalidValueException(const std::string& message, const CZuException& inner)
      : CZuValidationException(message, inner) {}
  explicit CZuInvalidValueException(const CZuException& other) : CZuValidationException(other) {}
  CZuInvalidValueException* Clone() const override;
};

/// A namespace that is not allowed where it stands.
class ZUXMLLIB16_API CZuInvalidNamespaceException : public CZuValidationException {
 public:
  CZuInvalidNamespaceException() = default;
  using CZuValidationException::CZuValidationException;
  CZuInvalidNamespaceException* Clone() const override;
};

/// An operation that the object's present state does not allow.
class ZUXMLLIB16_API CZuInvalidStateException : public CZuException {
 public:
  CZuInvalidStateException() = default;
  explicit CZuInvalidStateException(const std::string& message) : CZuException(message) {}
  CZuInvalidStateException(const std::string& message, const CZuException& inner)
      : CZuException(message, inner) {}
  explicit CZuInvalidStateException(const CZuException& other) : CZuException(other) {}
  CZuInvalidStateException* Clone() const override;
};

/// A bad argument.
class ZUXMLLIB16_API CZuInvalidParamException : public CZuException {
 public:
  CZuInvalidParamException() = default;
  explicit CZuInvalidParamException(const std::string& message) : CZuException(message) {}
  CZuInvalidParamException(const std::string& message, const CZuException& inner)
      : CZuException(message, inner) {}
  explicit CZuInvalidParamException(const CZuException& other) : CZuException(other) {}
  CZuInvalidParamException* Clone() const override;
};

/// A CDecimal too large for the type it is converted to.
class ZUXMLLIB16_API CZuOverFlowException : public CZuException {
 public:
  CZuOverFlowException() = default;
  explicit CZuOverFlowException(const std::string& message) : CZuException(message) {}
  CZuOverFlowException(const std::string& message, const CZuException& inner)
      : CZuException(message, inner) {}
  explicit CZuOverFlowException(const CZuException& other) : CZuException(other) {}
  CZuOverFlowException* Clone() const override;
};

}  // namespace ZuXmlLib16

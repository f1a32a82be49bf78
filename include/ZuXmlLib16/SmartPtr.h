#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

namespace ZuXmlLib16 {

/// Intrusive pointer to a reference-counted object: takes a reference with `AddRef`, gives it back
/// with `Release`. Objects start with a count of 0, so the first CSmartPtr made from `new T`
/// becomes its owner.
template <class T>
class CSmartPtr {
 public:
  CSmartPtr() noexcept = default;
  CSmartPtr(std::nullptr_t) noexcept {}
  /// Shares ownership of object (null allowed).
  CSmartPtr(T* object) : m_object(object) { Take(); }
  CSmartPtr(const CSmartPtr& other) : m_object(other.m_object) { Take(); }
  CSmartPtr(CSmartPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  CSmartPtr(const CSmartPtr<U>& other) : m_object(other.Get()) {
    Take();
  }
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  CSmartPtr(CSmartPtr<U>&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
  CSmartPtr& operator=(CSmartPtr other) noexcept {
    Swap(other);
    return *this;
  }
  ~CSmartPtr() {
    if (m_object != nullptr) m_object->Release();
  }

  T* Get() const noexcept { return m_object; }
  T* operator->() const noexcept { return m_object; }
  T& operator*() const noexcept { return *m_object; }
  explicit operator bool() const noexcept { return m_object != nullptr; }
  void Reset(T* object = nullptr) { CSmartPtr(object).Swap(*this); }
  void Swap(CSmartPtr& other) noexcept { std::swap(m_object, other.m_object); }

 private:
  template <class U>
  friend class CSmartPtr;

  void Take() {
    if (m_object != nullptr) m_object->AddRef();
  }

  T* m_object = nullptr;
};

template <class T, class U>
bool operator==(const CSmartPtr<T>& a, const CSmartPtr<U>& b) noexcept {
  return a.Get() == b.Get();
}
template <class T, class U>
bool operator!=(const CSmartPtr<T>& a, const CSmartPtr<U>& b) noexcept {
  return a.Get() != b.Get();
}
template <class T>
bool operator==(const CSmartPtr<T>& a, std::nullptr_t) noexcept {
  return a.Get() == nullptr;
}
template <class T>
bool operator!=(const CSmartPtr<T>& a, std::nullptr_t) noexcept {
  return a.Get() != nullptr;
}

}  // namespace ZuXmlLib16

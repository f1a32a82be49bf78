#pragma once

#include <pthread.h>

#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// A POSIX mutex that the thread holding it may enter again.
class ZUXMLLIB16_API CZUCriticalSection {
 public:
  /// Enters on construction, leaves on destruction.
  class CGuard {
   public:
    explicit CGuard(CZUCriticalSection& section) : m_section(section) { m_section.Enter(); }
    CGuard(const CGuard&) = delete;
    CGuard& operator=(const CGuard&) = delete;
    ~CGuard() { m_section.Leave(); }

   private:
    CZUCriticalSection& m_section;
  };

  CZUCriticalSection() = default;
  CZUCriticalSection(const CZUCriticalSection&) = delete;
  CZUCriticalSection& operator=(const CZUCriticalSection&) = delete;
  ~CZUCriticalSection() { pthread_mutex_destroy(&m_mutex); }

  void Enter() { pthread_mutex_lock(&m_mutex); }
  void Leave() { pthread_mutex_unlock(&m_mutex); }

 private:
  pthread_mutex_t m_mutex = PTHREAD_RECURSIVE_MUTEX_INITIALIZER_NP;
};

}  // namespace ZuXmlLib16

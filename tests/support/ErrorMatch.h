#pragma once

#include <gtest/gtest.h>

#include <string>

#include "ZuXmlLib16/Exceptions.h"

/// Runs a statement and checks that it throws an exception of exactly this class whose message (the
/// path tail taken off) and path are the given ones.
#define EXPECT_ZU_ERROR(ExceptionClass, statement, expectedText, expectedPath) \
  do {                                                                         \
    try {                                                                      \
      static_cast<void>(statement);                                            \
      ADD_FAILURE() << #statement " did not throw";                            \
    } catch (const ZuXmlLib16::CZuException& caught) {                         \
      EXPECT_EQ(typeid(caught), typeid(ZuXmlLib16::ExceptionClass));           \
      const std::string path{expectedPath};                                    \
      const std::string tail = path.empty() ? "" : "\nPath: " + path;          \
      EXPECT_EQ(caught.GetMessage(), std::string(expectedText) + tail);        \
      EXPECT_EQ(caught.GetPath(), path);                                       \
    }                                                                          \
  } while (false)

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>

#include "ZuXmlLib16/Exceptions.h"

namespace ZuXmlLib16 {
namespace {

/// "top" at /a/b, caused by an invalid state, caused by a bad value.
CZuValidationException Chain() {
  const CZuInvalidValueException bottom("bottom");
  return CZuValidationException("top", "/a/b", CZuInvalidStateException("middle", bottom));
}

const char* const kChainText = "top\nPath: /a/b\nmiddle\nbottom";

template <class Exception>
class EveryException : public testing::Test {};
using AllExceptions = testing::Types<CZuException, CZuValidationException, CZuInvalidValueException,
                                     CZuInvalidNamespaceException, CZuInvalidStateException,
                                     CZuInvalidParamException, CZuOverFlowException>;
TYPED_TEST_SUITE(EveryException, AllExceptions, );  // the comma: some compilers want an argument

TYPED_TEST(EveryException, CloneKeepsTypeTextPathAndCausesOfItsOwn) {
  auto chain = std::make_unique<CZuValidationException>(Chain());
  const TypeParam converted(static_cast<const CZuException&>(*chain));  // no second path tail
  chain.reset();
  const std::unique_ptr<CZuException> clone(converted.Clone());
  const CZuException& cloned = *clone;
  EXPECT_EQ(typeid(cloned), typeid(TypeParam));
  EXPECT_EQ(clone->GetFullMessage(), kChainText);
  EXPECT_EQ(clone->GetPath(), "/a/b");
  const CZuException* const middle = clone->GetInnerException();
  EXPECT_NE(middle, converted.GetInnerException());
  EXPECT_NE(dynamic_cast<const CZuInvalidStateException*>(middle), nullptr);
  EXPECT_NE(dynamic_cast<const CZuInvalidValueException*>(middle->GetInnerException()), nullptr);
}

TEST(Exceptions, AssignmentLeavesThePathAndTakesOwnCauses) {
  CZuValidationException error("old", std::string());
  EXPECT_EQ(error.GetMessage(), "old");  // no tail without a path
  error = Chain();
  const CZuValidationException& self = error;
  error = self;
  EXPECT_EQ(error.GetPath(), "");
  EXPECT_EQ(error.GetFullMessage(), kChainText);
  static_cast<CZuException&>(error) = *error.GetInnerException();
  EXPECT_EQ(error.GetFullMessage(), "middle\nbottom");
}

}  // namespace
}  // namespace ZuXmlLib16

#include "ZuXmlLib16/Exceptions.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>

namespace ZuXmlLib16 {
namespace {

const std::string kPath = "/a/b";

/// Outermost "top" at /a/b, then "middle", then a bad value.
CZuValidationException Chain() {
  const CZuInvalidValueException bottom("bottom");
  return CZuValidationException("top", kPath, CZuInvalidStateException("middle", bottom));
}

template <class Exception>
class EveryException : public testing::Test {};
using AllExceptions =
    testing::Types<CZuException, CZuValidationException, CZuInvalidValueException,
                   CZuInvalidNamespaceException, CZuInvalidStateException, CZuInvalidParamException,
                   CZuOverFlowException>;
TYPED_TEST_SUITE(EveryException, AllExceptions);

TYPED_TEST(EveryException, CloneKeepsTypeTextPathAndCausesOfItsOwn) {
  const CZuValidationException chain = Chain();
  // The conversion shows the path tail once, though both texts carry a path.
  const TypeParam original(static_cast<const CZuException&>(chain));
  const std::unique_ptr<CZuException> clone(static_cast<const CZuException&>(original).Clone());

  EXPECT_EQ(typeid(*clone), typeid(TypeParam));
  EXPECT_EQ(clone->GetFullMessage(), "top\nPath: /a/b\nmiddle\nbottom");
  EXPECT_EQ(clone->GetPath(), kPath);
  const CZuException* const middle = clone->GetInnerException();
  ASSERT_NE(middle, nullptr);
  EXPECT_NE(middle, original.GetInnerException());
  EXPECT_NE(dynamic_cast<const CZuInvalidStateException*>(middle), nullptr);
  ASSERT_NE(middle->GetInnerException(), nullptr);
  EXPECT_NE(dynamic_cast<const CZuInvalidValueException*>(middle->GetInnerException()), nullptr);
}

TYPED_TEST(EveryException, CauseOutlivesItsSource) {
  auto cause = std::make_unique<CZuOverFlowException>("cause");
  const TypeParam error("text", *cause);
  cause.reset();
  EXPECT_EQ(error.GetFullMessage(), "text\ncause");
  EXPECT_EQ(error.GetPath(), "");
}

TEST(Exceptions, EmptyPathLeavesNoTail) {
  const CZuInvalidNamespaceException error("text", std::string());
  EXPECT_EQ(error.GetMessage(), "text");
}

TEST(Exceptions, CopyIsIndependentOfItsSource) {
  CZuValidationException source = Chain();
  const CZuValidationException copy(source);
  source = CZuValidationException("other");
  EXPECT_EQ(copy.GetFullMessage(), "top\nPath: /a/b\nmiddle\nbottom");
  EXPECT_EQ(source.GetFullMessage(), "other");
}

TEST(Exceptions, AssignmentLeavesThePathAsItWas) {
  CZuValidationException target("old", std::string("/old"));
  target = Chain();
  EXPECT_EQ(target.GetPath(), "/old");
  EXPECT_EQ(target.GetMessage(), "top\nPath: /a/b");
}

TEST(Exceptions, MayBeAssignedTheirOwnCausesAndThemselves) {
  CZuException error = Chain();
  const CZuException& self = error;
  error = self;
  EXPECT_EQ(error.GetFullMessage(), "top\nPath: /a/b\nmiddle\nbottom");
  error = *error.GetInnerException();
  EXPECT_EQ(error.GetFullMessage(), "middle\nbottom");
  error = *error.GetInnerException();
  EXPECT_EQ(error.GetFullMessage(), "bottom");
}

}  // namespace
}  // namespace ZuXmlLib16

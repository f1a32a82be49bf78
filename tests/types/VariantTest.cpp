#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/Variant.h"
#include "ZuXmlLib16/XmlCollection.h"
#include "ZuXmlLib16/XmlObjectBase.h"
#include "support/ErrorMatch.h"

namespace ZuXmlLib16 {
namespace {

using Rule = CWhitespaceUtils::WhitespaceRule;

struct TypeCase {
  ItemType type;
  const char* code;
  const char* text;
};

// One text a type, none of it the text of a zero value.
// clang-format off
const TypeCase kTypes[] = {
    {ItemType::hexBinary, "hexBinary", "0AFF"}, {ItemType::base64Binary, "base64Binary", "AAEC"},
    {ItemType::i1, "i1", "-1"}, {ItemType::i2, "i2", "-2"}, {ItemType::i4, "i4", "-4"},
    {ItemType::i8, "i8", "-8"}, {ItemType::ui1, "ui1", "201"}, {ItemType::ui2, "ui2", "60002"},
    {ItemType::ui4, "ui4", "18446744073709551604"},
    {ItemType::ui8, "ui8", "18446744073709551608"}, {ItemType::r4, "r4", "1.5"},
    {ItemType::r8, "r8", "-1e+300"}, {ItemType::duration, "duration", "P1YT2M"},
    {ItemType::yearMonth, "yearMonth", "2018-05"}, {ItemType::monthDay, "monthDay", "--05-07"},
    {ItemType::year, "year", "2018"}, {ItemType::month, "month", "--05"},
    {ItemType::day, "day", "---07"}, {ItemType::date, "date", "2018-05-07"},
    {ItemType::datetime, "datetime", "2018-05-07T01:02:03Z"},
    {ItemType::time, "time", "01:02:03"}, {ItemType::char_, "char", " "},
    {ItemType::string, "string", " a text that needs memory of its own "},
    {ItemType::boolean, "boolean", "true"},
    {ItemType::decimal, "decimal", "-1234567890123456789.50"},
    {ItemType::integer, "integer", "-123456789012345678901234567890"},
};
// clang-format on
static_assert(std::size(kTypes) == 26);

ZuVariant Parsed(const TypeCase& c) {
  ZuVariant value;
  value.FromString(c.text, c.type);
  return value;
}

TEST(Variant, CarriesEveryTypeThroughTextCopyAndMove) {
  for (const TypeCase& from : kTypes) {
    for (const TypeCase& to : kTypes) {
      ZuVariant target = Parsed(to);
      const ZuVariant source = Parsed(from);
      target = source;
      EXPECT_EQ(target.GetType(), from.code);
      EXPECT_EQ(target.ToString(), from.text);
      ZuVariant moved = std::move(target);
      EXPECT_FALSE(target.IsValid());  // NOLINT(bugprone-use-after-move): that it is empty is told
      moved.FromString(to.text, to.type);
      const ZuVariant& self = moved;
      moved = self;
      EXPECT_EQ(moved.ToString(), to.text);
      EXPECT_EQ(source.ToString(), from.text);
    }
  }
}

/// The values that all getters give, as text.
std::vector<std::string> GetAll(const ZuVariant& v) {
  const auto text = [](auto number) { return std::to_string(number); };
  // clang-format off
  return {v.GetHexBinary().GetAsHexString(), v.GetBase64Binary().GetAsBase64(),
          text(v.GetI1()), text(v.GetI2()), text(v.GetI4()), text(v.GetI8()),
          text(v.GetUI1()), text(v.GetUI2()), text(v.GetUI4()), text(v.GetUI8()),
          text(v.GetR4()), text(v.GetR8()), v.GetDuration().ToString(),
          v.GetYearMonth().ToString(), v.GetMonthDay().ToString(),
          text(v.GetYear()), text(v.GetMonth()), text(v.GetDay()),
          v.GetDate().ToString(), v.GetDateTime().ToString(), v.GetTime().ToString(),
          std::string(1, v.GetChar()), v.GetString(), v.GetBoolean() ? "true" : "false",
          v.GetDecimal().ToString(), v.GetInteger().ToString()};
  // clang-format on
}

TEST(Variant, GettersOfOtherTypesGiveZero) {
  const std::vector<std::string> zeros = GetAll(ZuVariant());
  for (std::size_t i = 0; i < std::size(kTypes); ++i) {
    ZuVariant value = Parsed(kTypes[i]);
    const std::vector<std::string> got = GetAll(value);
    for (std::size_t getter = 0; getter < got.size(); ++getter)
      EXPECT_EQ(got[getter] == zeros[getter], getter != i) << kTypes[i].code << " by " << getter;
    EXPECT_FALSE(value.GetXmlObject());
    EXPECT_FALSE(value.GetXmlCollection());
    value.SetNil();
    EXPECT_EQ(GetAll(value), zeros) << kTypes[i].code;
  }
}

/// The least that a bound object or collection is, telling when it goes.
template <class Base>
class Bound : public Base {
 public:
  explicit Bound(int& alive) : m_alive(alive) { ++m_alive; }
  ~Bound() override { --m_alive; }
  CXmlObjectBase* GetBase() override { return this; }
  std::string GetTargetNamespace() const override { return ""; }
  std::string GetNamespace() const override { return ""; }
  void ToXml_Int(CXmlWriter*, bool, const char*, const CSerializationContext&,
                 bool) const override {}
  CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* first, const CSerializationContext&,
                           bool) override {
    return first;
  }

 private:
  int& m_alive;
};

class BoundCollection : public Bound<CXmlCollectionBase> {
 public:
  using Bound::Bound;
  std::int32_t GetCount() const override { return 0; }
  void Clear() override {}
  void Remove(int) override {}
};

TEST(Variant, HoldsReferencesToObjects) {
  int alive = 0;
  ZuVariant value;
  value.SetXmlObject(new Bound<CXmlObjectBase>(alive));
  value.SetXmlObject(value.GetXmlObject().Get());  // its only reference is the variant's
  ASSERT_EQ(alive, 1);
  ZuVariant copy = value;
  value.SetXmlCollection(new BoundCollection(alive));
  EXPECT_EQ(alive, 2);
  EXPECT_TRUE(copy.GetXmlObject() && !value.GetXmlObject());
  copy = value;
  EXPECT_EQ(alive, 1);
  value.SetNil();
  EXPECT_TRUE(copy.GetXmlCollection() && !value.GetXmlCollection());
  copy.Clear();
  EXPECT_EQ(alive, 0);
}

TEST(Variant, TakesAValueOutOfTheObjectItHolds) {
  struct Holder : Bound<CXmlObjectBase> {
    using Bound::Bound;
    ZuVariant inner;
  };
  int alive = 0;
  auto* const holder = new Holder(alive);
  holder->inner.SetI4(42);
  ZuVariant value;
  value.SetXmlObject(holder);
  value = holder->inner;
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(value.GetI4(), 42);
}

TEST(Variant, NilKeepsTheTypeOnly) {
  ZuVariant value = Parsed(kTypes[0]);
  value.SetNil();
  const ZuVariant copy = value;
  EXPECT_TRUE(copy.IsNil() && copy.IsValid());
  EXPECT_EQ(copy.GetType(), "hexBinary");
  EXPECT_EQ(copy.ToString(), "");
  value.SetHexBinary(CBinaryData("x"));
  EXPECT_FALSE(value.IsNil());
  ZuVariant untyped;
  untyped.SetNil();
  EXPECT_TRUE(untyped.IsValid());
  untyped.SetInvalid();
  EXPECT_FALSE(untyped.IsNil());
}

TEST(Variant, OtherTypesHaveNoText) {
  ZuVariant value;
  EXPECT_ZU_ERROR(CZuException, value.GetType(), "Invalid Type 0", "");
  EXPECT_ZU_ERROR(CZuException, value.ToString(), "Invalid Type 0 to convert to string", "");
  value.SetXmlObject(nullptr);
  EXPECT_ZU_ERROR(CZuException, value.GetType(), "Invalid Type 27", "");
  value.SetI4(4);
  for (const int type : {0, 27, 28, 99}) {
    EXPECT_ZU_ERROR(CZuException, value.FromString("x", static_cast<ItemType>(type)),
                    "Invalid Type " + std::to_string(type) + " to convert to string", "");
  }
  EXPECT_THROW(value.FromString("x", ItemType::r8), CZuInvalidValueException);
  EXPECT_EQ(value.ToString(), "4");  // unchanged by all that failed
}

TEST(Variant, FormatsAndRules) {
  ZuVariant value;
  value.FromString(" 1.5 ", ItemType::r8);
  EXPECT_EQ(value.ToString("%.2f"), "1.50");
  value.SetDecimal(CDecimal("2.5"));
  EXPECT_EQ(value.ToString("3"), "2.500");
  value.FromString(" a ", ItemType::string);
  EXPECT_EQ(value.GetString(), " a ");
  value.FromString(" a ", ItemType::string, Rule::Collapse);
  EXPECT_EQ(value.GetString(), "a");
}

}  // namespace
}  // namespace ZuXmlLib16

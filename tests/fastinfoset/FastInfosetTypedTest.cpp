#include <gtest/gtest.h>

#include <string>

#include "ZuXmlLib16/FastInfosetContext.h"
#include "ZuXmlLib16/UntypedCollections.h"
#include "support/BindableClass.h"
#include "support/CharacterTypeLocale.h"

namespace ZuXmlLib16 {
namespace {

using namespace ZuXmlLib16Data;
using Mode = CFastInfosetContext::TypedValueMode;

CBinaryData AsFastInfoset(const CXmlObjectBase& object, const CSerializationContext& context) {
  return object.ToFastInfosetStream(FInfoDecl::None, context, CompressionType::None);
}

/// Reads an object from XML and expects that it arrives through Fast Infoset, whatever the setting.
void ExpectKept(const Shape& shape, const std::string& xml, CSerializationContext context = {}) {
  const CSmartPtr<BindableClass> object = shape.Make();
  object->FromXml(xml.c_str(), context);
  for (const Mode mode : {Mode::Text, Mode::Binary, Mode::All}) {
    context.GetFIContext().SetTypedValues(mode);
    const CSmartPtr<BindableClass> copy = shape.Make();
    copy->FromXmlStream(AsFastInfoset(*object, context), context);
    EXPECT_EQ(WriteOutcome(*copy, context), WriteOutcome(*object, context));
  }
}

template <class Col>
Shape& AddValues(Shape& shape, const char* name) {
  return shape.Items<CElementInfoSeqPrimCol>(name, [name, uri = shape.uri] {
    return new Col(name, uri, 0, -1, "", -1, -1, "", "", "", "", -1, -1, -1, kCollapse, "");
  });
}

Shape& AddAttribute(Shape& shape, const char* name, const char* namespaceUri, ItemType type) {
  return shape.Attribute<CAttributeInfoPrimitive>(name, namespaceUri, true, nullptr, type, "",
                                                  kCollapse, CPrimitiveRestrictions(), "");
}

TEST(TypedFastInfoset, KeepsValuesOfAllTypes) {
  const CharacterTypeLocale utf8("C.UTF-8");
  constexpr struct {
    ItemType type;
    const char* texts[3];
  } kCases[] = {
      {ItemType::hexBinary, {"0AFF", "", "00"}},
      {ItemType::base64Binary, {"AQID", "AQ==", ""}},
      {ItemType::i1, {"-128", "0", "127"}},
      {ItemType::i2, {"-32768", "0", "32767"}},
      {ItemType::i4, {"-2147483648", "2147483648", "-9223372036854775808"}},
      {ItemType::i8, {"0", "-1", "9223372036854775807"}},
      {ItemType::ui1, {"0", "1", "255"}},
      {ItemType::ui2, {"0", "1", "65535"}},
      {ItemType::ui4, {"0", "1", "4294967295"}},
      {ItemType::ui8, {"0", "1", "18446744073709551615"}},
      {ItemType::r4, {"-0", "0.1", "INF"}},
      {ItemType::r8, {"NaN", "0.1", "4.940656458412465e-324"}},
      {ItemType::duration, {"P1Y2M3DT4H5M6S", "-P1D", "PT0.5S"}},
      {ItemType::yearMonth, {"2018-02", "2018-02Z", "0001-12"}},
      {ItemType::monthDay, {"--02-29", "--12-31Z", "--01-01"}},
      {ItemType::year, {"2018", "1000", "9999"}},
      {ItemType::month, {"--01--", "--12--", "--06--"}},
      {ItemType::day, {"---01", "---31", "---15"}},
      {ItemType::date, {"2018-02-28", "2018-02-28Z", "2018-02-28+01:00"}},
      {ItemType::datetime,
       {"2018-02-28T01:02:03", "2018-02-28T01:02:03.5Z", "0001-01-01T00:00:00"}},
      {ItemType::time, {"01:02:03", "01:02:03Z", "23:59:59.5"}},
      {ItemType::string, {"a &amp; b", "\xC3\xA9", "x"}},
      {ItemType::boolean, {"true", "false", "true"}},
      {ItemType::decimal, {"1.5", "-0.001", "100"}},
      {ItemType::integer, {"123456789012345678901234567890", "-1", "0"}},
  };
  for (const auto& [type, texts] : kCases) {
    SCOPED_TRACE(texts[0]);
    Shape item("c"), shape("r");
    AddAttribute(item.Text(type), "n", "urn:n", type);
    shape.Objects<CElementInfoSeqClsCol>("c", item);
    shape.Prim<CElementInfoSeqPrimOpt>("d", texts[1], true, {}, type);
    std::string items;
    for (const char* const text : texts) {
      items += "<c n:n='" + std::string(text) + "'>" + text + "</c>";
    }
    for (const char* const text : {texts[1], texts[2]}) {  // the default, and another
      ExpectKept(shape, "<r xmlns:n='urn:n'>" + items + "<d>" + text + "</d></r>");
    }
  }
}

TEST(TypedFastInfoset, KeepsNilTypesGroupsAndWildcards) {
  Shape derived("derived"), group("g", Group::Sequence, kPseudo), shape("r");
  derived.uri = group.uri = shape.uri = "urn:t";
  derived.writesType = true;
  derived.Text(ItemType::boolean).Number("n");
  group.Prim<CElementInfoSeqPrimMnd>("a", "", true).Prim<CElementInfoSeqPrimOpt>("b", "7");
  group.Number("m", true, "3", "urn:m");
  AddValues<Cbase64BinaryCol>(AddValues<Cr8Col>(shape, "f"), "s");
  shape.Child<CElementInfoSeqClsOpt>("g", group).Substitute<CElementInfoSeqAbsClsOpt>("p");
  shape.Items<CElementInfoSeqUntpdCol>(
      "AnyElement", [] { return new CElementCol("AnyElement", "##any", "", 0, -1); }, "##any", "");
  const auto anyAttribute = [](ZuVariant& value) {
    value.SetXmlCollection(new CAttributeCol("", "##any", ""));
  };
  shape.Attribute<CAttributeInfoAny>("any", "", true, anyAttribute, "##local urn:w", "", "");
  const std::string xml =
      "<r xmlns='urn:t' xmlns:i='http://www.w3.org/2001/XMLSchema-instance' xmlns:m='urn:m'"
      " xmlns:w='urn:w' o='1' w:o='2' m:m='3'><f>1</f><f>1.5</f><f>1</f><s>AQID</s><s/>"
      "<a i:nil='true'/><b>7</b><p i:type='derived' n='5'>true</p>"
      "<q xmlns='' o='1'>u<v xmlns='urn:v' m:o='1'/></q><q xmlns=''/></r>";
  const CSmartPtr<BindableClass> object = shape.Make();
  EXPECT_NE(Outcome(*object, xml).find("g={a=nil b=7 m=3} p={true n=5}"), std::string::npos);
  CSerializationContext context;
  ExpectKept(shape, xml, context);
  context.SetDefaultNamespaceURI("urn:t");
  ExpectKept(shape, xml, context);
}

TEST(TypedFastInfoset, TellsTheWriterTheTypesOfValues) {
  Shape shape("r");
  AddAttribute(shape, "n", "", ItemType::i4);
  shape.Prim<CElementInfoSeqPrimMnd>("d", "", false, {}, ItemType::hexBinary);
  AddValues<CbooleanCol>(shape, "b").Text(ItemType::i2);
  const CSmartPtr<BindableClass> object = shape.Make();
  ASSERT_EQ(Outcome(*object, "<r n='7'><d>0AFF</d><b>1</b><b>1</b>5</r>").find('!'),
            std::string::npos);
  const auto written = [&](Mode mode) {
    CSerializationContext context;
    context.GetFIContext().SetTypedValues(mode);
    return AsFastInfoset(*object, context).GetAsHexString().substr(10);
  };
  EXPECT_EQ(written(Mode::All),
            "7C0072"
            "78006E"
            "303300000007"
            "F0"  // r, n, an int
            "3C0064"
            "8C010AFF"
            "F0"  // d, hexadecimal
            "3C0062"
            "8C1438"
            "F0"  // b, a boolean
            "02"
            "8C1438"
            "F0"
            "8C090005"
            "FF");  // a short
  EXPECT_EQ(written(Mode::Binary),
            "7C007278006E4037F0"
            "3C00648C010AFFF0"
            "3C0062920174727565F0"
            "02A0F0"
            "9035FF");
  EXPECT_EQ(written(Mode::Text),
            "7C007278006E4037F0"
            "3C0064920130414646F0"
            "3C0062920174727565F0"
            "02A1F0"
            "9035FF");
}

}  // namespace
}  // namespace ZuXmlLib16

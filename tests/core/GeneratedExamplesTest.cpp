#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <tuple>

#include "ZuXmlLib16.h"
#include "bench/Documents.h"
#include "examples/generated/Orders.h"
#include "examples/generated/Telemetry.h"
#include "support/CharacterTypeLocale.h"
#include "support/ErrorMatch.h"
#include "support/SameTree.h"
#include "support/Untyped.h"

namespace ZuXmlLib16 {
namespace {

using orders::COrder;
using orders::COrderFeed;

CSmartPtr<CXmlGeneratedClass> MakeRoot(const std::string& kind) {
  if (kind == "orders") return CSmartPtr<CXmlGeneratedClass>(new COrderFeed);
  return CSmartPtr<CXmlGeneratedClass>(new telemetry::CTelemetry);
}

// Whole documents

/// Numbers have many texts: those of "v" become the one that the library writes.
CSmartPtr<CElement> Canonical(const std::string& xml) {
  const auto rule = CWhitespaceUtils::WhitespaceRule::Collapse;
  CSmartPtr<CElement> root = ReadUntyped(xml);
  for (const CElement* record : *root->GetElements()) {
    for (CElement* value : *record->GetElements()) {
      if (value->GetName() != "v") continue;
      const double number = CConversions::r8FromString(value->GetText(), rule);
      value->SetText(CConversions::r8ToString(number).c_str());
    }
  }
  return root;
}

class ExampleDocuments : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Kinds, ExampleDocuments, testing::Values("orders", "telemetry"));

TEST_P(ExampleDocuments, AreWrittenAsTheyWereRead) {
  const CharacterTypeLocale utf8("C.UTF-8");
  const CSmartPtr<CXmlGeneratedClass> root = MakeRoot(GetParam());  // read anew every time
  for (const bool isPretty : {false, true}) {
    bench::DocumentOptions options;
    options.sizeInBytes = 100000;
    options.seed = isPretty ? 1 : 2;
    options.isPretty = isPretty;
    options.nonAsciiPercent = 30;
    const std::string document = bench::MakeDocument(GetParam(), options);
    root->FromXml(document.c_str(), CSerializationContext::m_defaultContext);
    const std::string written = Written(*root);
    EXPECT_TRUE(IsSameTree(*Canonical(document), *ReadUntyped(written)));
    root->FromXml(written.c_str(), CSerializationContext::m_defaultContext);
    EXPECT_EQ(Written(*root), written);
  }
}

// Values

CSmartPtr<COrder> AddOrder(const COrderFeed& feed) {
  const CSmartPtr<COrder> order = feed.GetOrder()->Add();
  order->SetDate("2024-02-29-14:00");
  order->SetReferenceNil();
  const CSmartPtr<orders::CItem> item = order->GetItems()->GetItem()->Add();
  item->SetSku("001-AZ");
  item->SetQuantity(1);
  order->GetPayment()->SetInvoice("");
  return order;
}

auto ValuesOf(const COrder& order) {
  const orders::CAddress& to = *order.GetShipTo();
  return std::tuple(order.GetId(), order.GetDate().ToString(), to.GetCountry(), to.GetName(),
                    to.GetStreet(), order.GetComment(), order.GetReference(),
                    order.IsReferenceNil(), order.GetPayment()->GetSelected(),
                    order.GetPayment()->GetInvoice());
}

auto ValuesOf(const orders::CItem& item) {
  return std::tuple(item.GetSku(), item.GetProductName(), item.GetQuantity(),
                    item.GetPrice().ToString(), item.GetShipDate().has_value(),
                    item.GetThumbnail().has_value(),
                    item.GetShipDate().value_or(CDateTime()).ToString(),
                    item.GetThumbnail().value_or(CBinaryData()).GetAsBase64());
}

TEST(ExampleOrders, ReadsBackTheValuesThatWereSet) {
  const CSmartPtr<COrderFeed> feed(new COrderFeed);
  const CSmartPtr<COrder> plain = AddOrder(*feed);
  const CSmartPtr<COrder> full = AddOrder(*feed);
  full->SetId(-2147483648);
  full->SetComment("");
  full->SetReference("");
  full->GetShipTo()->SetCountry(orders::Country::JP);
  full->GetShipTo()->SetName("<a> & \"b\"");
  full->GetShipTo()->SetStreet(" two  blanks\n");
  const CSmartPtr<orders::CItem> item = full->GetItems()->GetItem()->Item(0);
  item->SetQuantity(99);
  item->SetPrice("-1234567890123456789012345.60");
  item->SetShipDate(CDateTime("2024-02-29T23:59:59.000000001Z"));
  item->SetThumbnail(CBinaryData());
  full->GetPayment()->Clear();
  full->GetPayment()->SetTransfer(new orders::CTransfer);
  full->GetPayment()->GetTransfer()->SetAmount("0.10");

  const CSmartPtr<COrderFeed> read(new COrderFeed);
  read->FromXml(Written(*feed).c_str(), CSerializationContext::m_defaultContext);
  ASSERT_EQ(read->GetOrder()->GetCount(), 2);
  EXPECT_EQ(ValuesOf(*read->GetOrder()->Item(0)), ValuesOf(*plain));
  const CSmartPtr<COrder> readFull = read->GetOrder()->Item(1);
  EXPECT_EQ(ValuesOf(*readFull), ValuesOf(*full));
  EXPECT_EQ(ValuesOf(*readFull->GetItems()->GetItem()->Item(0)), ValuesOf(*item));
  EXPECT_EQ(readFull->GetPayment()->GetTransfer()->GetAmount().ToString(), "0.10");
}

TEST(ExampleOrders, HoldsOnlyWhatWasReadLast) {
  const CSmartPtr<COrderFeed> feed(new COrderFeed);
  const CSmartPtr<COrder> order = AddOrder(*feed);
  const std::string second = Written(*order);
  order->SetComment("gone");
  order->SetReference("gone");
  order->GetItems()->GetItem()->Item(0)->SetThumbnail(CBinaryData("gone"));
  order->GetPayment()->Clear();
  order->GetPayment()->SetCard(new orders::CCard);
  order->FromXml(second.c_str(), CSerializationContext::m_defaultContext);
  EXPECT_EQ(Written(*order), second);
}

TEST(ExampleOrders, ChoiceRefusesASecondMember) {
  const CSmartPtr<orders::COrderPayment> payment(new orders::COrderPayment);
  payment->SetCard(new orders::CCard);
  EXPECT_ZU_ERROR(CZuInvalidStateException, payment->SetTransfer(new orders::CTransfer),
                  "The Property [card] is already set. Only one element within this class bay be "
                  "set at a time",
                  "");
  EXPECT_ZU_ERROR(CZuInvalidStateException, payment->SetInvoice("i"),
                  "The Property card is already set. Only one element within this class bay be set "
                  "at a time",
                  "");
  payment->SetCard(nullptr);
  payment->SetInvoice("i");
  EXPECT_EQ(payment->GetSelected(), "invoice");
}

struct WriteCase {
  const char* name;
  std::function<void(COrder&)> breakOrder;
  const char* cause;  ///< the last line of the full message
};

TEST(ExampleOrders, RefusesToWriteWhatTheSchemaForbids) {
  const WriteCase cases[] = {
      {"sku", [](COrder& o) { o.GetItems()->GetItem()->Item(0)->SetSku("1-AZ"); },
       "Invalid Value for sku [1-AZ]."},
      {"quantity", [](COrder& o) { o.GetItems()->GetItem()->Item(0)->SetQuantity(0); },
       "Invalid Value for quantity [0]"},
      {"price", [](COrder& o) { o.GetItems()->GetItem()->Item(0)->SetPrice("0.125"); },
       "Invalid Value for price [0.125]."},
      {"no items", [](COrder& o) { o.GetItems()->Clear(); },
       "The Minimum number of [item] elements allowed in this collection is 1"},
      {"no payment", [](COrder& o) { o.GetPayment()->Clear(); },
       "This element is a choice, and as such must have at one (and only one) valid item, "
       "currently there are none set"},
      {"no reference", [](COrder& o) { o.SetReference(std::nullopt); },
       "The Property [reference] is mandatory, it may not be NULL"},
      {"no date", [](COrder& o) { o.SetDate(CDateTime()); }, "Invalid Type 0 to convert to string"},
  };
  for (const WriteCase& test : cases) {
    SCOPED_TRACE(test.name);
    const CSmartPtr<COrderFeed> feed(new COrderFeed);
    test.breakOrder(*AddOrder(*feed));
    try {
      ADD_FAILURE() << Written(*feed);
    } catch (const CZuValidationException& failure) {
      const std::string text = failure.GetFullMessage();
      EXPECT_EQ(text.rfind("Failed to convert the element [orders] to XML\n", 0), 0u);
      EXPECT_EQ(text.substr(text.rfind('\n') + 1), test.cause);
    }
  }
}

// Every single change of a small document, and what has to come of it

enum class Place { Own, Foreign, Instance };  // the namespace of a name

struct Attribute {
  std::string name;
  Place place = Place::Own;
  std::string text;
};

struct Node {
  std::string name;
  Place place = Place::Own;
  std::string text;
  std::vector<Attribute> attributes;
  std::vector<Node> children;
};

template <class Named>
std::string QName(const Named& item, const std::string& mark = "") {
  const char* const prefixes[] = {"", "q:", "xsi:"};
  return prefixes[static_cast<int>(item.place)] + mark + item.name;
}

Node ToNode(const CXmlElement& element) {
  Node node{element.GetLocalName(), Place::Own, element.GetText(), {}, {}};
  for (const CXmlAttribute* attribute : element.GetAttributes()) {
    const Place place = attribute->IsNilAttribute() ? Place::Instance : Place::Own;
    node.attributes.push_back({attribute->GetLocalName(), place, attribute->GetValue()});
  }
  const CXmlElement* child = element.GetFirstElement();
  for (; child != nullptr; child = child->GetNextSiblingElement()) {
    node.children.push_back(ToNode(*child));
  }
  return node;
}

std::string ToXml(const Node& node, const std::string& declarations) {
  std::string xml = '<' + QName(node) + declarations;
  for (const Attribute& attribute : node.attributes) {
    xml += ' ' + QName(attribute) + "=\"" + attribute.text + '"';
  }
  xml += '>' + node.text;
  for (const Node& child : node.children) {
    xml += ToXml(child, "");
  }
  return xml + "</" + QName(node) + '>';
}

/// What the schemas say of an element with children: the particles of its sequence, in terms of
/// "name;" for each child, and its attributes, all of them required.
struct Content {
  std::vector<std::string> particles;
  std::set<std::string> attributes;
};

const std::map<std::string, Content> kContents = {
    {"orders", {{"(order;)*"}, {}}},
    {"order",
     {{"shipTo;", "(comment;)?", "reference;", "items;", "(card;|transfer;|invoice;)"},
      {"id", "date"}}},
    {"shipTo", {{"name;", "street;", "city;", "state;", "zip;"}, {"country"}}},
    {"items", {{"(item;)+"}, {}}},
    {"item", {{"productName;", "quantity;", "price;", "(shipDate;)?", "(thumbnail;)?"}, {"sku"}}},
    {"card", {{"number;", "holder;", "expires;"}, {}}},
    {"transfer", {{"iban;", "amount;"}, {}}},
    {"telemetry", {{"(sample;)*"}, {}}},
    {"sample", {{"(v;)+", "(n;)+", "(ok;)+"}, {"t"}}},
};
/// Elements and attributes whose text may be anything when it is read.
const std::set<std::string> kTexts = {"name",        "street",    "city",    "state",  "zip",
                                      "comment",     "reference", "sku",     "number", "holder",
                                      "productName", "thumbnail", "invoice", "iban"};

/// The parser's word, in place of a path.
constexpr const char* kDuplicate = "not valid: duplicate attribute at line 1";

/// Predicts from the schema where reading fails: the path of the fault, "" for none. A document has
/// one fault at most.
class Oracle {
 public:
  explicit Oracle(const CSerializationContext& context) : m_context(context) {
    for (const auto& [name, content] : kContents) {
      m_grammars.emplace(name, Grammar(content));
    }
  }

  std::string FindFault(const Node& node, const std::string& path,
                        const std::string& parentPath) const {
    const auto content = kContents.find(node.name);
    const bool isLeaf = content == kContents.end();
    std::set<std::string> missing = isLeaf ? std::set<std::string>() : content->second.attributes;
    std::set<std::string> seen;
    for (const Attribute& attribute : node.attributes) {
      if (!seen.insert(QName(attribute)).second) return kDuplicate;
      const bool isNil = attribute.place == Place::Instance && attribute.name == "nil";
      if (isNil ? attribute.text == "true"
                : IsOwn(attribute) && missing.erase(attribute.name) != 0) {
        if (!IsValue(attribute.name, attribute.text) && !isNil) return path;
      } else if (isNil || !m_context.GetIgnoreUnknownAttributes()) {
        return path + '/' + QName(attribute, "@");
      }
    }
    if (!missing.empty()) return path;
    // A fault in a text is reported at the innermost object.
    if (isLeaf) return IsValue(node.name, node.text) ? "" : parentPath;

    std::string names;
    for (const Node& child : node.children) {
      names += (IsKnown(child) ? child.name : "?") + ';';
    }
    if (!std::regex_match(names, m_grammars.at(node.name))) return path;
    for (const Node& child : node.children) {
      if (!IsKnown(child)) continue;
      std::string fault = FindFault(child, path + '/' + Step(node, child), path);
      if (!fault.empty()) return fault;
    }
    return {};
  }

 private:
  /// An enumerated attribute may lose its namespace, a primitive one not.
  bool IsOwn(const Attribute& attribute) const {
    return attribute.place == Place::Own ||
           (m_context.GetIgnoreNamespaces() && attribute.name == "country");
  }
  bool IsKnown(const Node& node) const {
    return node.name != "unknown" && (node.place == Place::Own || m_context.GetIgnoreNamespaces());
  }
  static bool IsValue(const std::string& name, const std::string& text) {
    return kTexts.count(name) != 0 || (!text.empty() && text != "garbage");
  }

  std::regex Grammar(const Content& content) const {
    const std::string others = m_context.GetIgnoreUnknownElements() ? "([^;]*;)*" : "";
    std::string grammar = others;
    for (const std::string& particle : content.particles) {
      const bool isCollection = particle.back() == '+';
      const bool mayMiss = isCollection ? m_context.GetIgnoreInvalidCollectionCounts()
                                        : m_context.GetIgnoreMissingMandatoryElements();
      grammar += '(' + particle + (mayMiss ? ")?" : ")") + others;
    }
    return std::regex(grammar);
  }

  static std::string Step(const Node& parent, const Node& child) {
    int count = 0;
    int index = 0;
    for (const Node& sibling : parent.children) {
      if (QName(sibling) != QName(child)) continue;
      ++count;
      if (&sibling == &child) index = count;
    }
    return QName(child) + (count > 1 ? '[' + std::to_string(index) + ']' : "");
  }

  const CSerializationContext& m_context;
  std::map<std::string, std::regex> m_grammars;
};

void Empty(Attribute& attribute) {
  attribute.text.clear();
}
void Empty(Node& node) {
  node.text.clear();
  node.children.clear();
}

/// The ways to change one element or attribute among its siblings.
template <class Named, class All = std::vector<Named>, class At = typename All::iterator>
constexpr void (*kChanges[])(All&, At) = {
    [](All& all, At at) { all.insert(at, Named(*at)); },
    [](All& all, At at) { all.erase(at); },
    [](All& all, At at) { std::iter_swap(at, std::min(at + 1, all.end() - 1)); },
    [](All&, At at) { at->name = "unknown"; },
    [](All&, At at) { at->place = Place::Foreign; },
    [](All&, At at) { Empty(*at); },
    [](All&, At at) { at->text = "garbage"; },
};

/// Calls visit after every change, then takes it back.
template <class Named>
void ForEachChange(std::vector<Named>& siblings, const std::function<void()>& visit) {
  const std::vector<Named> original = siblings;
  for (std::size_t i = 0; i < original.size(); ++i) {
    for (const auto change : kChanges<Named>) {
      change(siblings, siblings.begin() + static_cast<std::ptrdiff_t>(i));
      visit();
      siblings = original;
    }
  }
}

void ForEachMutant(Node& parent, const std::function<void()>& visit) {
  ForEachChange(parent.attributes, visit);
  ForEachChange(parent.children, visit);
  for (Node& child : parent.children) {
    ForEachMutant(child, visit);
  }
}

const std::map<std::string, const char*> kSmallDocuments = {
    {"orders",
     "<orders xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'>"
     "<order id='1' date='2024-01-02'><shipTo country='DE'><name>n</name><street>s</street>"
     "<city>c</city><state>t</state><zip>z</zip></shipTo><comment>c</comment>"
     "<reference xsi:nil='true'/><items><item sku='123-AB'><productName>p</productName>"
     "<quantity>1</quantity><price>2.50</price><shipDate>2024-01-02T03:04:05Z</shipDate>"
     "<thumbnail>QUI=</thumbnail></item><item sku='123-AC'><productName>p</productName>"
     "<quantity>2</quantity><price>1</price></item></items>"
     "<card><number>1</number><holder>h</holder><expires>2027-01</expires></card></order>"
     "<order id='2' date='2024-01-03'><shipTo country='US'><name>n</name><street>s</street>"
     "<city>c</city><state>t</state><zip>z</zip></shipTo><reference>r</reference><items>"
     "<item sku='123-AB'><productName>p</productName><quantity>1</quantity><price>0</price></item>"
     "</items><transfer><iban>i</iban><amount>1</amount></transfer></order></orders>"},
    {"telemetry",
     "<telemetry><sample t='2024-01-02T03:04:05Z'><v>1</v><v>2.5</v><n>1</n><n>-2</n><ok>true</ok>"
     "<ok>false</ok></sample><sample t='2024-01-02T03:04:06Z'><v>1</v><n>1</n><ok>1</ok></sample>"
     "</telemetry>"},
};

struct Leniency {
  const char* name;
  void (*set)(CSerializationContext& context);
};
constexpr Leniency kLeniencies[] = {
    {"strict", [](CSerializationContext&) {}},
    {"unknown elements",
     [](CSerializationContext& c) {
       c.SetIgnoreUnknownElements(true);
       c.SetIgnoreInvalidCollectionCounts(true);
     }},
    {"missing elements",
     [](CSerializationContext& c) { c.SetIgnoreMissingMandatoryElements(true); }},
    {"unknown attributes", [](CSerializationContext& c) { c.SetIgnoreUnknownAttributes(true); }},
    {"namespaces", [](CSerializationContext& c) { c.SetIgnoreNamespaces(true); }},
};

/// What came of reading, "" for a success, else the path and the text of the error.
std::string Outcome(CXmlGeneratedClass& object, const std::string& xml,
                    const CSerializationContext& context) {
  try {
    object.FromXml(xml.c_str(), context);
    return {};
  } catch (const CZuValidationException& failure) {
    return failure.GetPath() + "\n" + failure.GetFullMessage();
  } catch (const CZuException& failure) {
    return "not valid: " + failure.GetFullMessage();
  }
}

TEST_P(ExampleDocuments, FailWhereTheSchemaSaysAfterAnyChange) {
  CXmlDocument document;
  document.LoadXml(kSmallDocuments.at(GetParam()));
  Node root = ToNode(*document.GetDocumentElement());
  const std::string declarations = " xmlns='urn:bench:" + root.name +
                                   "' xmlns:q='urn:other'"
                                   " xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'";
  const CSmartPtr<CXmlGeneratedClass> object = MakeRoot(GetParam());
  for (const Leniency& leniency : kLeniencies) {
    CSerializationContext context;
    leniency.set(context);
    const Oracle oracle(context);
    ForEachMutant(root, [&] {
      const std::string xml = ToXml(root, declarations);
      SCOPED_TRACE(leniency.name + ("\n" + xml));
      const std::string outcome = Outcome(*object, xml, context);
      const std::string path = outcome.substr(0, outcome.find('\n'));
      EXPECT_EQ(path, oracle.FindFault(root, '/' + root.name, "")) << outcome;
    });
    EXPECT_EQ(Outcome(*object, ToXml(root, declarations), context), "");
  }
  const CSmartPtr<CXmlGeneratedClass> fresh = MakeRoot(GetParam());
  EXPECT_EQ(Outcome(*fresh, ToXml(root, declarations), CSerializationContext()), "");
  EXPECT_EQ(Written(*object), Written(*fresh));
}

/// Work must stay in proportion: the square of the crowd would take minutes.
TEST(ExampleOrders, SkipsCrowdsOfUnknownElements) {
  std::string crowd;
  for (int i = 0; i < 300000; ++i) {
    crowd += "<u/>";
  }
  const std::string whole = kSmallDocuments.at("orders");
  CSerializationContext lenient;
  lenient.SetIgnoreUnknownElements(true);
  const CSmartPtr<COrderFeed> feed(new COrderFeed);
  for (const char* place : {"<order ", "<card>", "</orders>"}) {
    SCOPED_TRACE(place);
    std::string xml = whole;
    xml.insert(xml.find(place), crowd);
    xml.insert(xml.find("<orders") + 7, " xmlns='urn:bench:orders'");
    EXPECT_EQ(Outcome(*feed, xml, lenient), "");
    EXPECT_NE(Outcome(*feed, xml, CSerializationContext()), "");
  }
}

}  // namespace
}  // namespace ZuXmlLib16

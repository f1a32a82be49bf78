// What reading and writing JSON costs. Speeds are bytes of JSON a second, as ratios to the bytes of
// XML a second that expat alone takes, with namespaces and handlers that do nothing, on the XML
// document with the same content in the same run: 1 is as fast as the parser, more is faster. Typed
// objects are measured by zuxml_bench_typed.

#include <clocale>
#include <cstddef>
#include <string>
#include <vector>

#include "ZuXmlLib16/JsonContext.h"
#include "ZuXmlLib16/JsonTextReader.h"
#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "bench/Documents.h"
#include "bench/Harness.h"
#include "bench/Reference.h"
#include "tests/support/SameTree.h"

using namespace ZuXmlLib16;
using bench::BestSeconds;
using bench::Budget;
using bench::kKilobyte;
using bench::kMegabyte;
using bench::Timed;

namespace {

/// Takes everything and does nothing.
class Sink final : public IJsonReaderHandler {
 public:
  Sink() : IJsonReaderHandler("Sink") {}
  void ReadStartDocument() override {}
  bool ReadEndDocument() override { return true; }
  void ReadName(const std::string&) override {}
  void ReadString(const std::string&) override {}
  void ReadNumber(const std::string&) override {}
  void ReadStartObject() override {}
  void ReadEndObject() override {}
  void ReadStartArray() override {}
  void ReadEndArray() override {}
  void ReadBool(bool) override {}
  void ReadNull() override {}
};

const CSerializationContext& Context() {
  static const CSerializationContext* const context = [] {
    auto* const made = new CSerializationContext;
    made->GetJsonContext().SetStrictEscaping(true);
    made->GetNamespaceAliases().Add("xsi", "http://www.w3.org/2001/XMLSchema-instance");
    return made;
  }();
  return *context;
}

unsigned char* BytesOf(const std::string& text) {
  return reinterpret_cast<unsigned char*>(const_cast<char*>(text.data()));
}

void Tokenize(const std::string& json) {
  Sink sink;
  CJsonTextReader reader(json);
  reader.SetJsonReaderHandler(&sink);
  bench::Require(reader.Read(), "the tokenizer");
}

void BuildTree(const std::string& json) {
  CXmlDocument document(Context());
  document.ReadJsonStream(BytesOf(json), json.size());
}

void BuildTreeThroughText(const std::string& json) {
  CXmlDocument document(Context());
  const CBinaryData xml = document.LoadJsonStream(BytesOf(json), json.size());
  document.LoadXmlStream(xml.GetData(), xml.GetLength());
}

CSmartPtr<CElement> Read(const std::string& json) {
  CSmartPtr<CElement> root(new CElement("root"));
  root->FromJsonStream(BytesOf(json), json.size(), Context());
  return root;
}

std::string Write(const CElement& root) {
  return root.ToJson(false, EOLType::Lf, Context());
}

CBinaryData WriteStream(const CElement& root) {
  return root.ToJsonStream(false, XmlEncoding::Utf8, EOLType::Lf, Context(), CompressionType::None);
}

std::string WriteXml(const CElement& root) {
  return root.ToXml(true, false, EOLType::Lf, Context());
}

void MeasureDocument(const bench::Table& table, const std::string& kind, const char* sizeName,
                     std::size_t sizeInBytes) {
  bench::DocumentOptions options;
  options.sizeInBytes = sizeInBytes;
  const std::string json = bench::MakeDocument(kind + "-json", options);
  const std::string xml = bench::MakeDocument(kind, options);
  const CSmartPtr<CElement> root = Read(json);
  const std::string written = Write(*root);
  bench::Require(IsSameTree(*root, *Read(written)), "objects written as JSON");
  const std::string writtenXml = WriteXml(*root);

  const std::vector<double> seconds = BestSeconds({
      bench::Parsing(xml),
      Timed([&] { Tokenize(json); }),
      Timed([&] { BuildTree(json); }),
      Timed([&] { BuildTreeThroughText(json); }),
      Timed([&] { Read(json); }),
      Timed([&] { bench::Keep(Write(*root)); }),
      Timed([&] { bench::Keep(WriteStream(*root)); }),
      Timed([&] { bench::Keep(WriteXml(*root)); }),
  });
  const double reference = static_cast<double>(xml.size()) / seconds[0];
  const auto ratio = [&](const std::string& text, double time) {
    return static_cast<double>(text.size()) / time / reference;
  };
  table.Heading(kind + ", " + sizeName);
  table.Row("reference, MB/s of XML", reference / 1e6);
  table.Row("bytes of JSON to a byte of XML",
            static_cast<double>(json.size()) / static_cast<double>(xml.size()));
  table.Row("tokenize", ratio(json, seconds[1]), Budget::AtLeast, 1.0);
  table.Row("load and drop a document", ratio(json, seconds[2]));
  table.Row("the same through XML text", ratio(json, seconds[3]));
  table.Row("read and free objects", ratio(json, seconds[4]));
  table.Row("write text", ratio(written, seconds[5]));
  table.Row("write stream", ratio(written, seconds[6]));
  table.Row("write the same as XML", ratio(writtenXml, seconds[7]));
}

// Growth

std::string Repeated(const std::string& text, int count) {
  std::string repeated;
  for (int i = 0; i < count; ++i) {
    repeated += text;
  }
  return repeated;
}

/// Members named and numbered, each with a comma behind it.
std::string Members(int count, const std::string& before, const std::string& after) {
  std::string members;
  for (int i = 0; i < count; ++i) {
    members += before + std::to_string(i) + after + ',';
  }
  return members;
}

/// A document that grows with count.
struct Shape {
  const char* name;
  std::string (*make)(int count);
};

std::string InRoot(const std::string& members) {
  return "{\"r\":{" + members + "\"z\":0}}";
}

constexpr int kCount = 50000;

const Shape kShapes[] = {
    {"items", [](int count) { return InRoot("\"a\":[" + Repeated("1,", count) + "2],"); }},
    {"nulls", [](int count) { return InRoot("\"a\":[" + Repeated("null,", count) + "2],"); }},
    {"different names", [](int count) { return InRoot(Members(count, "\"m", "\":1")); }},
    {"attributes of one element", [](int count) { return InRoot(Members(count, "\"@m", "\":1")); }},
    {"attributes behind content",
     [](int count) { return InRoot(Repeated("\"b\":{\"c\":1,\"@d\":2},", count)); }},
    {"namespaces of one element",
     [](int count) {
       return InRoot(Members(count, "\"@xmlns:p", "\":\"u\"") + Members(count, "\"p", ":m\":1"));
     }},
    {"prefixes for nulls",
     [](int count) {
       return InRoot(Members(count, "\"@xmlns:xsi", "\":\"u\"") +
                     Repeated("\"b\":{\"@xmlns:q\":\"v\",\"c\":null},", count));
     }},
    {"escapes",
     [](int count) { return InRoot("\"a\":\"" + Repeated("\\uD83D\\uDE00\\n", count) + "\","); }},
    {"text pieces", [](int count) { return InRoot(Repeated("\"#text\":\"x\",\"b\":1,", count)); }},
};

void MeasureShape(const bench::Table& table, const Shape& shape) {
  const std::string once = shape.make(kCount);
  const std::string twice = shape.make(2 * kCount);
  const CSmartPtr<CElement> onceRoot = Read(once);
  const CSmartPtr<CElement> twiceRoot = Read(twice);
  std::vector<bench::Work> works = {
      Timed([&] { BuildTree(once); }),
      Timed([&] { BuildTree(twice); }),
      Timed([&] { BuildTreeThroughText(once); }),
      Timed([&] { BuildTreeThroughText(twice); }),
  };
  const std::vector<double> seconds = BestSeconds(works);
  table.Row(std::string(shape.name) + ", load", seconds[1] / seconds[0], Budget::AtMost, 2.2);
  table.Row(std::string(shape.name) + ", through XML text", seconds[3] / seconds[2]);
}

}  // namespace

int main() {
  std::setlocale(LC_CTYPE, "C.UTF-8");
  const bench::Table table("figure");
  for (const char* kind : {"orders", "telemetry"}) {
    MeasureDocument(table, kind, "10 KB", 10 * kKilobyte);
    MeasureDocument(table, kind, "1 MB", kMegabyte);
    MeasureDocument(table, kind, "10 MB", 10 * kMegabyte);
  }
  table.Heading("time for twice as much, against once");
  for (const Shape& shape : kShapes) {
    MeasureShape(table, shape);
  }
  return 0;
}

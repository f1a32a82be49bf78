// What reading and writing typed objects costs, in all formats, on the classes of
// examples/generated. Speeds are
// ratios to expat alone, with namespaces and handlers that do nothing, on the same bytes in the
// same run: 1 is as fast as the parser, more is faster.
// --large measures the documents of 100 MB, too, which takes some minutes and 3 GB.
// --once WHAT KIND does one thing once, to count its instructions:
//   valgrind --tool=callgrind --toggle-collect='*Counted*' zuxml_bench_typed --once read orders

#include <clocale>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "bench/Harness.h"
#include "bench/Reference.h"
#include "examples/generated/Orders.h"
#include "examples/generated/Telemetry.h"

// Counts all allocations of the process, those of the parser too.
namespace {
std::size_t allocations = 0;
}
extern "C" void* __libc_malloc(std::size_t size);  // NOLINT(bugprone-reserved-identifier)
extern "C" void* malloc(std::size_t size) {
  ++allocations;
  return __libc_malloc(size);
}

using namespace ZuXmlLib16;
using bench::Budget;
using bench::kKilobyte;
using bench::kMegabyte;
using bench::MakeDocumentOfSize;
using bench::Parsing;
using bench::Size;
using bench::Timed;

namespace {

struct Orders {
  using Root = orders::COrderFeed;
  static constexpr const char* kName = "orders";
  static constexpr const char* kSmall = "<orders xmlns='urn:bench:orders'/>";
  static constexpr double kRead = 0.48, kText = 1.15, kStream = 1.1, kAllocations = 2.5;
  static constexpr double kReadJson = 0.29, kWriteJson = 0.9;
  static constexpr double kReadFi = 0.75, kWriteFi = 0.85, kSizeFi = 0.42;
};

struct Telemetry {
  using Root = telemetry::CTelemetry;
  static constexpr const char* kName = "telemetry";
  static constexpr const char* kSmall = "<telemetry xmlns='urn:bench:telemetry'/>";
  static constexpr double kRead = 0.48, kText = 0.90, kStream = 0.85, kAllocations = 1.3;
  static constexpr double kReadJson = 0.27, kWriteJson = 0.65;
  static constexpr double kReadFi = 0.72, kWriteFi = 0.65, kSizeFi = 0.77;
};

/// The documents have one namespace and bind it as the default; so does what is written.
template <class Kind>
CSerializationContext Options() {
  CSerializationContext context;
  context.SetDefaultNamespaceURI(typename Kind::Root().GetTargetNamespace().c_str());
  return context;
}

template <class Root>
void Read(Root& root, const std::string& document) {
  root.FromXmlStream(
      const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(document.data())),
      document.size(), CSerializationContext::m_defaultContext);
}

template <class Kind>
CSmartPtr<typename Kind::Root> ReadObjects(const std::string& document) {
  CSmartPtr<typename Kind::Root> root(new typename Kind::Root);
  Read(*root, document);
  return root;
}

template <class Kind>
std::string WriteText(const typename Kind::Root& root) {
  return root.ToXml(true, false, EOLType::Lf, Options<Kind>());
}

template <class Kind>
CBinaryData WriteStream(const typename Kind::Root& root) {
  return root.ToXmlStream(true, false, XmlEncoding::Utf8, EOLType::Lf, Options<Kind>(),
                          CompressionType::None);
}

template <class Kind>
double ReadWithoutFreeing(const std::string& document) {
  CSmartPtr<typename Kind::Root> root(new typename Kind::Root);
  const double start = bench::NowInSeconds();
  Read(*root, document);
  return bench::NowInSeconds() - start;
}

/// Checks that objects come back as they were; returns the text they were written as.
template <class Kind>
std::string CheckedText(const std::string& document) {
  std::string text = WriteText<Kind>(*ReadObjects<Kind>(document));
  const auto root = ReadObjects<Kind>(text);
  bench::Require(WriteText<Kind>(*root) == text, "objects written as text");
  const CBinaryData bytes = WriteStream<Kind>(*root);
  bench::Require(bytes.GetLength() + 100 > text.size(), "objects written as a stream");
  return text;
}

template <class Kind>
void MeasureDocument(const bench::Table& table, const Size& size) {
  const std::string document = MakeDocumentOfSize(Kind::kName, size.bytes);
  const std::string written = CheckedText<Kind>(document);
  const auto root = ReadObjects<Kind>(document);
  const int rounds = size.bytes > 50 * kMegabyte ? 5 : 9;
  const std::vector<double> seconds = bench::BestSeconds(
      {
          Parsing(document),
          Parsing(written),
          [&] { return ReadWithoutFreeing<Kind>(document); },
          Timed([&] { ReadObjects<Kind>(document); }),
          Timed([&] { bench::Keep(WriteText<Kind>(*root)); }),
          Timed([&] { bench::Keep(WriteStream<Kind>(*root)); }),
      },
      rounds);
  table.Heading(std::string(Kind::kName) + ", " + size.name);
  table.Row("reference, MB/s", static_cast<double>(document.size()) / seconds[0] / 1e6);
  table.Row("read objects", seconds[0] / seconds[2], Budget::AtLeast, Kind::kRead);
  table.Row("read and free objects", seconds[0] / seconds[3]);
  table.Row("write text", seconds[1] / seconds[4], Budget::AtLeast, Kind::kText);
  table.Row("write stream", seconds[1] / seconds[5], Budget::AtLeast, Kind::kStream);
}

/// JSON in bytes of its own; Fast Infoset in bytes of the same document as XML.
template <class Kind>
void MeasureOtherFormats(const bench::Table& table, const Size& size) {
  using Root = typename Kind::Root;
  const auto root = ReadObjects<Kind>(MakeDocumentOfSize(Kind::kName, size.bytes));
  const CSerializationContext options = Options<Kind>();
  const std::string xml = WriteText<Kind>(*root);
  const auto json = [&] { return root->ToJson(false, EOLType::Lf, options); };
  const auto fastInfoset = [&] {
    return root->ToFastInfosetStream(FInfoDecl::None, options, CompressionType::None);
  };
  const std::string text = json();
  const CBinaryData octets = fastInfoset();
  const auto readJson = [&] {
    CSmartPtr<Root> copy(new Root);
    copy->FromJson(text.c_str(), options);
    return copy;
  };
  const auto readFastInfoset = [&] {
    CSmartPtr<Root> copy(new Root);
    copy->FromXmlStream(octets, options);
    return copy;
  };
  bench::Require(WriteText<Kind>(*readJson()) == xml, "objects through JSON");
  bench::Require(WriteText<Kind>(*readFastInfoset()) == xml, "objects through Fast Infoset");
  const std::vector<double> seconds = bench::BestSeconds({
      Parsing(xml),
      Timed(readJson),
      Timed([&] { bench::Keep(json()); }),
      Timed(readFastInfoset),
      Timed([&] { bench::Keep(fastInfoset()); }),
  });
  const double jsonShare = static_cast<double>(text.size()) / static_cast<double>(xml.size());
  table.Heading(std::string(Kind::kName) + ", " + size.name + ", JSON and Fast Infoset");
  table.Row("read and free objects from JSON", jsonShare * seconds[0] / seconds[1], Budget::AtLeast,
            Kind::kReadJson);
  table.Row("write JSON", jsonShare * seconds[0] / seconds[2], Budget::AtLeast, Kind::kWriteJson);
  table.Row("read and free objects from Fast Infoset", seconds[0] / seconds[3], Budget::AtLeast,
            Kind::kReadFi);
  table.Row("write Fast Infoset", seconds[0] / seconds[4], Budget::AtLeast, Kind::kWriteFi);
  table.Row("size of Fast Infoset to XML",
            static_cast<double>(octets.GetLength()) / static_cast<double>(xml.size()),
            size.bytes == kMegabyte ? Budget::AtMost : Budget::None, Kind::kSizeFi);
}

template <class Kind>
void MeasureMemory(const bench::Table& table, const std::vector<Size>& sizes) {
  for (const Size& size : sizes) {
    const std::string document = MakeDocumentOfSize(Kind::kName, size.bytes);
    const std::string name = std::string(Kind::kName) + ", " + size.name;
    const double bytes = bench::AddedBytesPerByte(
        Kind::kSmall, document, [](const std::string& text) { ReadObjects<Kind>(text); });
    table.Row(name + ", peak bytes per byte read", bytes, Budget::AtMost, 10);
  }
  const std::string document = MakeDocumentOfSize(Kind::kName, kMegabyte);
  std::size_t elements = 0;
  for (std::size_t at = document.find("</"); at != std::string::npos;
       at = document.find("</", at + 2)) {
    ++elements;
  }
  const auto root = ReadObjects<Kind>(document);
  std::size_t before = allocations;
  const auto other = ReadObjects<Kind>(document);
  table.Row(std::string(Kind::kName) + ", allocations per element read",
            static_cast<double>(allocations - before) / static_cast<double>(elements),
            Budget::AtMost, Kind::kAllocations);
  before = allocations;
  WriteText<Kind>(*root);
  table.Row(std::string(Kind::kName) + ", allocations per element written",
            static_cast<double>(allocations - before) / static_cast<double>(elements));
}

template <class Kind>
void MeasureLargeAgainstSmall(const bench::Table& table) {
  const std::string small = MakeDocumentOfSize(Kind::kName, kMegabyte);
  const std::string large = MakeDocumentOfSize(Kind::kName, 100 * kMegabyte);
  const auto smallRoot = ReadObjects<Kind>(small);
  const auto largeRoot = ReadObjects<Kind>(large);
  const auto rates = [](const bench::Work& doSmall, const bench::Work& doLarge) {
    const std::vector<double> seconds = bench::BestSeconds({doSmall, doLarge}, 3);
    return seconds[0] / seconds[1] * 100;
  };
  table.Heading(std::string(Kind::kName) + ", rate at 100 MB to that at 1 MB");
  table.Row("read objects",
            rates([&] { return ReadWithoutFreeing<Kind>(small); },
                  [&] { return ReadWithoutFreeing<Kind>(large); }),
            Budget::AtLeast, 0.85);
  table.Row("write text", rates(Timed([&] { WriteText<Kind>(*smallRoot); }), Timed([&] {
                                  WriteText<Kind>(*largeRoot);
                                })),
            Budget::AtLeast, 0.85);
}

// Not inlined, so that a profiler can be told to count in here only.
template <class Kind>
[[gnu::noinline]] void CountedRead(typename Kind::Root& root, const std::string& document) {
  Read(root, document);
}
template <class Kind>
[[gnu::noinline]] void CountedWrite(const typename Kind::Root& root) {
  bench::Keep(WriteText<Kind>(root));
}

template <class Kind>
int DoOnce(const std::string& what) {
  const std::string document = MakeDocumentOfSize(Kind::kName, kMegabyte);
  const auto warm = ReadObjects<Kind>(document);
  const std::string written = WriteText<Kind>(*warm);
  if (what == "read") {
    const CSmartPtr<typename Kind::Root> root(new typename Kind::Root);
    CountedRead<Kind>(*root, document);
    std::printf("%zu bytes read\n", document.size());
  } else {
    CountedWrite<Kind>(*warm);
    std::printf("%zu bytes written\n", written.size());
  }
  return 0;
}

template <class Kind>
void Measure(const bench::Table& table, const std::vector<Size>& sizes) {
  for (const Size& size : sizes) {
    MeasureDocument<Kind>(table, size);
    MeasureOtherFormats<Kind>(table, size);
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::setlocale(LC_CTYPE, "C.UTF-8");
  if (argc == 4 && std::strcmp(argv[1], "--once") == 0) {
    return std::strcmp(argv[3], Orders::kName) == 0 ? DoOnce<Orders>(argv[2])
                                                    : DoOnce<Telemetry>(argv[2]);
  }
  const bool withLarge = argc > 1 && std::strcmp(argv[1], "--large") == 0;
  std::vector<Size> sizes = {
      {"10 KB", 10 * kKilobyte}, {"1 MB", kMegabyte}, {"10 MB", 10 * kMegabyte}};
  if (withLarge) sizes.push_back({"100 MB", 100 * kMegabyte});

  const bench::Table table("figure");
  // First, while nothing that was freed can be used again.
  table.Heading("memory");
  const std::vector<Size> large(sizes.begin() + 1, sizes.end());
  MeasureMemory<Orders>(table, large);
  MeasureMemory<Telemetry>(table, large);
  Measure<Orders>(table, sizes);
  Measure<Telemetry>(table, sizes);
  if (withLarge) {
    MeasureLargeAgainstSmall<Orders>(table);
    MeasureLargeAgainstSmall<Telemetry>(table);
  }
  return 0;
}

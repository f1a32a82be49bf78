// What reading and writing XML costs. Speeds are ratios to expat alone, with namespaces and
// handlers that do nothing, on the same bytes in the same run: 1 is as fast as the parser, more is
// faster. With --large the documents of 100 MB are measured too, which takes some minutes and 3 GB.

#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <cstddef>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "bench/Documents.h"
#include "bench/Harness.h"
#include "bench/Reference.h"
#include "tests/support/SameTree.h"

using namespace ZuXmlLib16;
using bench::BestSeconds;
using bench::Budget;
using bench::Parsing;
using bench::Timed;

namespace {

constexpr std::size_t kKilobyte = 1000;
constexpr std::size_t kMegabyte = 1000 * kKilobyte;

struct Size {
  const char* name;
  std::size_t bytes;
};

struct Kind {
  const char* name;
  double domBudget;
};

constexpr Kind kKinds[] = {{"orders", 0.70}, {"telemetry", 0.65}};

std::string MakeDocument(const char* kind, std::size_t sizeInBytes) {
  bench::DocumentOptions options;
  options.sizeInBytes = sizeInBytes;
  return bench::MakeDocument(kind, options);
}

// What is measured

const unsigned char* BytesOf(const std::string& document) {
  return reinterpret_cast<const unsigned char*>(document.data());
}

void Load(CXmlDocument& dom, const std::string& document) {
  dom.LoadXmlStream(BytesOf(document), document.size());
}

void LoadAndDrop(const std::string& document) {
  CXmlDocument dom;
  Load(dom, document);
}

void Read(CElement& root, const std::string& document) {
  root.FromXmlStream(const_cast<unsigned char*>(BytesOf(document)), document.size(),
                     CSerializationContext::m_defaultContext);
}

CSmartPtr<CElement> ReadObjects(const std::string& document) {
  CSmartPtr<CElement> root(new CElement("root"));
  Read(*root, document);
  return root;
}

std::string WriteText(const CElement& root) {
  return root.ToXml(true, false, EOLType::Lf, CSerializationContext::m_defaultContext);
}

CBinaryData WriteStream(const CElement& root) {
  return root.ToXmlStream(true, false, XmlEncoding::Utf8, EOLType::Lf,
                          CSerializationContext::m_defaultContext, CompressionType::None);
}

double ReadWithoutFreeing(const std::string& document) {
  CSmartPtr<CElement> root(new CElement("root"));
  const double start = bench::NowInSeconds();
  Read(*root, document);
  return bench::NowInSeconds() - start;
}

/// Checks that objects come back as they were; returns the text they were written as.
std::string CheckedText(const std::string& document) {
  const CSmartPtr<CElement> root = ReadObjects(document);
  std::string text = WriteText(*root);
  bench::Require(IsSameTree(*root, *ReadObjects(text)), "objects written as text");
  const CBinaryData bytes = WriteStream(*root);
  const std::string stream(reinterpret_cast<const char*>(bytes.GetData()), bytes.GetLength());
  bench::Require(IsSameTree(*root, *ReadObjects(stream)), "objects written as a stream");
  return text;
}

// Speed

void MeasureDocument(const bench::Table& table, const Kind& kind, const Size& size) {
  const std::string document = MakeDocument(kind.name, size.bytes);
  const std::string written = CheckedText(document);
  const CSmartPtr<CElement> root = ReadObjects(document);
  const int rounds = size.bytes > 50 * kMegabyte ? 5 : 9;
  const std::vector<double> seconds = BestSeconds(
      {
          Parsing(document),
          Parsing(written),
          Timed([&] { LoadAndDrop(document); }),
          [&] { return ReadWithoutFreeing(document); },
          Timed([&] { ReadObjects(document); }),
          Timed([&] { bench::Keep(WriteText(*root)); }),
          Timed([&] { bench::Keep(WriteStream(*root)); }),
      },
      rounds);
  const double parsing = seconds[0];
  const double parsingWritten = seconds[1];
  table.Heading(std::string(kind.name) + ", " + size.name);
  table.Row("reference, MB/s", static_cast<double>(document.size()) / parsing / 1e6);
  table.Row("load and drop a document", parsing / seconds[2], Budget::AtLeast, kind.domBudget);
  table.Row("read objects", parsing / seconds[3], Budget::AtLeast, 0.40);
  table.Row("read and free objects", parsing / seconds[4], Budget::AtLeast, 0.40);
  table.Row("write text", parsingWritten / seconds[5], Budget::AtLeast, 1.2);
  table.Row("write text, to parsing what was read", parsing / seconds[5]);
  table.Row("write stream", parsingWritten / seconds[6], Budget::AtLeast, 1.1);
  table.Row("write stream, to parsing what was read", parsing / seconds[6]);
}

// Memory

std::size_t PeakBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

/// What the work on a document adds to the memory of the process at its peak. Done by a child,
/// whose peak begins with what it has; on a small document first, so that the code does not count.
template <class Function>
double AddedBytesPerByte(const std::string& document, Function work) {
  const std::string small = "<small/>";
  malloc_trim(0);
  int ends[2];
  bench::Require(pipe(ends) == 0, "pipe");
  const pid_t child = fork();
  bench::Require(child >= 0, "fork");
  std::size_t added = 0;
  if (child == 0) {
    work(small);
    const std::size_t before = PeakBytes();
    work(document);
    added = PeakBytes() - before;
    _exit(write(ends[1], &added, sizeof(added)) == sizeof(added) ? 0 : 1);
  }
  const bool isRead = read(ends[0], &added, sizeof(added)) == sizeof(added);
  int status = 0;
  bench::Require(waitpid(child, &status, 0) == child && status == 0 && isRead, "measuring memory");
  close(ends[0]);
  close(ends[1]);
  return static_cast<double>(added) / static_cast<double>(document.size());
}

void MeasureMemory(const bench::Table& table, const std::vector<Size>& sizes) {
  table.Heading("peak memory, bytes per byte of the document");
  for (const Kind& kind : kKinds) {
    for (const Size& size : sizes) {
      const std::string document = MakeDocument(kind.name, size.bytes);
      const std::string name = std::string(kind.name) + ", " + size.name;
      table.Row(name + ", document", AddedBytesPerByte(document, LoadAndDrop), Budget::AtMost, 8);
      table.Row(name + ", document and objects", AddedBytesPerByte(document, ReadObjects));
    }
  }
}

// Growth

/// A tree of one shape that grows with count.
struct Shape {
  const char* name;
  std::string (*make)(int count);
  int count;
};

std::string Repeated(const char* text, int count) {
  std::string repeated;
  for (int i = 0; i < count; ++i) {
    repeated += text;
  }
  return repeated;
}

/// Texts made of a number each.
template <class Function>
std::string Numbered(int count, Function text) {
  std::string numbered;
  for (int i = 0; i < count; ++i) {
    numbered += text(std::to_string(i));
  }
  return numbered;
}

std::string MakeDepth(int count) {
  return Repeated("<a>", count) + Repeated("</a>", count);
}

std::string MakeWidth(int count) {
  return "<a>" + Repeated("<b/>", count) + "</a>";
}

std::string MakeAttributes(int count) {
  return "<a" + Numbered(count, [](const std::string& n) { return " b" + n + "=''"; }) + "/>";
}

std::string MakeNames(int count) {
  return "<a>" + Numbered(count, [](const std::string& n) { return "<b" + n + "/>"; }) + "</a>";
}

std::string MakePieces(int count) {
  return "<a>" + Repeated("text&amp;", count) + "</a>";
}

std::string MakeMixed(int count) {
  return "<a>" + Repeated("text<b/>", count) + "</a>";
}

std::string MakeNamespaces(int count) {
  return "<a>" +
         Numbered(count, [](const std::string& n) { return "<b xmlns='urn:" + n + "'/>"; }) +
         "</a>";
}

std::string MakeNamespacesInOne(int count) {
  return "<a" +
         Numbered(count, [](const std::string& n) { return " xmlns:p" + n + "='urn:" + n + "'"; }) +
         Numbered(count, [](const std::string& n) { return " p" + n + ":b=''"; }) + "/>";
}

constexpr Shape kShapes[] = {
    {"depth", MakeDepth, 100000},
    {"children", MakeWidth, 100000},
    {"attributes of one element", MakeAttributes, 50000},
    {"different names", MakeNames, 100000},
    {"pieces of one text", MakePieces, 100000},
    {"pieces of text between children", MakeMixed, 100000},
    {"namespaces of the children", MakeNamespaces, 50000},
    {"namespaces of one element", MakeNamespacesInOne, 300},
};

/// What was read from a document, whatever its depth.
CSmartPtr<CElement> CopyObjects(const CXmlDocument& dom) {
  CSmartPtr<CElement> root(new CElement("root"));
  root->CopyXmlElement(dom.GetDocumentElement());
  return root;
}

void MeasureShape(const bench::Table& table, const Shape& shape) {
  const std::string once = shape.make(shape.count);
  const std::string twice = shape.make(2 * shape.count);
  CXmlDocument onceDom;
  CXmlDocument twiceDom;
  Load(onceDom, once);
  Load(twiceDom, twice);
  const CSmartPtr<CElement> onceRoot = CopyObjects(onceDom);
  const CSmartPtr<CElement> twiceRoot = CopyObjects(twiceDom);
  const std::vector<double> seconds = BestSeconds({
      Parsing(once),
      Parsing(twice),
      Timed([&] { LoadAndDrop(once); }),
      Timed([&] { LoadAndDrop(twice); }),
      Timed([&] { CopyObjects(onceDom); }),
      Timed([&] { CopyObjects(twiceDom); }),
      Timed([&] { bench::Keep(WriteText(*onceRoot)); }),
      Timed([&] { bench::Keep(WriteText(*twiceRoot)); }),
  });
  const std::string name = shape.name;
  table.Row(name + ", reference", seconds[1] / seconds[0]);
  table.Row(name + ", load", seconds[3] / seconds[2], Budget::AtMost, 2.2);
  table.Row(name + ", make and free objects", seconds[5] / seconds[4], Budget::AtMost, 2.2);
  table.Row(name + ", write", seconds[7] / seconds[6], Budget::AtMost, 2.2);
}

void MeasureLargeAgainstSmall(const bench::Table& table, const Kind& kind) {
  const std::string small = MakeDocument(kind.name, kMegabyte);
  const std::string large = MakeDocument(kind.name, 100 * kMegabyte);
  const CSmartPtr<CElement> smallRoot = ReadObjects(small);
  const CSmartPtr<CElement> largeRoot = ReadObjects(large);
  const auto rates = [](const auto& doSmall, const auto& doLarge) {
    const std::vector<double> seconds = BestSeconds({Timed(doSmall), Timed(doLarge)}, 3);
    return seconds[0] / seconds[1] * 100;
  };
  table.Heading(std::string(kind.name) + ", rate at 100 MB to that at 1 MB");
  table.Row("load and drop a document",
            rates([&] { LoadAndDrop(small); }, [&] { LoadAndDrop(large); }), Budget::AtLeast, 0.85);
  table.Row("read and free objects",
            rates([&] { ReadObjects(small); }, [&] { ReadObjects(large); }), Budget::AtLeast, 0.85);
  table.Row("write text", rates([&] { WriteText(*smallRoot); }, [&] { WriteText(*largeRoot); }),
            Budget::AtLeast, 0.85);
}

}  // namespace

int main(int argc, char** argv) {
  std::setlocale(LC_CTYPE, "C.UTF-8");
  const bool withLarge = argc > 1 && std::strcmp(argv[1], "--large") == 0;
  std::vector<Size> sizes = {
      {"10 KB", 10 * kKilobyte}, {"1 MB", kMegabyte}, {"10 MB", 10 * kMegabyte}};
  if (withLarge) sizes.push_back({"100 MB", 100 * kMegabyte});

  const bench::Table table("figure");
  // First, while nothing that was freed can be used again.
  MeasureMemory(table, std::vector<Size>(sizes.begin() + 1, sizes.end()));
  for (const Kind& kind : kKinds) {
    for (const Size& size : sizes) {
      MeasureDocument(table, kind, size);
    }
    if (withLarge) MeasureLargeAgainstSmall(table, kind);
  }
  table.Heading("time for twice as much, against once");
  for (const Shape& shape : kShapes) {
    MeasureShape(table, shape);
  }
  return 0;
}

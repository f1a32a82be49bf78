// What reading and writing Fast Infoset costs. Speeds are ratios to expat alone, with namespaces
// and handlers that do nothing, on the same document in compact XML: 1 is as fast as parsing that,
// more is faster. Sizes are ratios to that document, too.

#include <clocale>
#include <cstddef>
#include <string>
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

struct Size {
  const char* name;
  std::size_t bytes;
};

struct Kind {
  const char* name;
  double readBudget;
  double writeBudget;
  double sizeBudget;
};

constexpr std::size_t kWithBudgets = 1000000;
constexpr Size kSizes[] = {{"10 KB", 10000}, {"1 MB", kWithBudgets}, {"10 MB", 10000000}};
constexpr Kind kKinds[] = {{"orders", 0.75, 0.85, 0.42}, {"telemetry", 0.72, 0.65, 0.77}};

const CSerializationContext& Options() {
  return CSerializationContext::m_defaultContext;
}

CSmartPtr<CElement> Read(const CBinaryData& document) {
  CSmartPtr<CElement> root(new CElement("root"));
  root->FromXmlStream(document, Options());
  return root;
}

double ReadWithoutFreeing(const CBinaryData& document) {
  CSmartPtr<CElement> root(new CElement("root"));
  const double start = bench::NowInSeconds();
  root->FromXmlStream(document, Options());
  return bench::NowInSeconds() - start;
}

void LoadAndDrop(const CBinaryData& document) {
  CXmlDocument dom;
  dom.LoadXmlStream(document.GetData(), document.GetLength());
}

CBinaryData Write(const CElement& root) {
  return root.ToFastInfosetStream(FInfoDecl::None, Options(), CompressionType::None);
}

void MeasureDocument(const bench::Table& table, const Kind& kind, const Size& size) {
  bench::DocumentOptions options;
  options.sizeInBytes = size.bytes;
  const std::string xml = bench::MakeDocument(kind.name, options);
  const CSmartPtr<CElement> root = Read(CBinaryData(xml.c_str()));
  const CBinaryData document = Write(*root);
  bench::Require(IsSameTree(*root, *Read(document)), "objects written as Fast Infoset");
  const std::vector<double> seconds = BestSeconds({
      Parsing(xml),
      Timed([&] { LoadAndDrop(document); }),
      [&] { return ReadWithoutFreeing(document); },
      Timed([&] { bench::Keep(Write(*root)); }),
  });
  const double parsing = seconds[0];
  const bool hasBudgets = size.bytes == kWithBudgets;
  const Budget least = hasBudgets ? Budget::AtLeast : Budget::None;
  const Budget most = hasBudgets ? Budget::AtMost : Budget::None;
  table.Heading(std::string(kind.name) + ", " + size.name);
  table.Row("size", static_cast<double>(document.GetLength()) / static_cast<double>(xml.size()),
            most, kind.sizeBudget);
  table.Row("load and drop a document", parsing / seconds[1]);
  table.Row("read objects", parsing / seconds[2], least, kind.readBudget);
  table.Row("write", parsing / seconds[3], least, kind.writeBudget);
}

}  // namespace

int main() {
  std::setlocale(LC_CTYPE, "C.UTF-8");
  const bench::Table table("figure");
  for (const Kind& kind : kKinds) {
    for (const Size& size : kSizes) {
      MeasureDocument(table, kind, size);
    }
  }
  return 0;
}

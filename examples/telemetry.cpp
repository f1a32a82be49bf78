// Values in collections: builds a document of measurements, writes it, reads it back and sums up.

#include "examples/generated/Telemetry.h"

#include <iostream>
#include <string>

using namespace ZuXmlLib16;
using namespace telemetry;

namespace {

void AddSample(const CTelemetry& telemetry, const char* time, double first, long count) {
  const CSmartPtr<CSample> sample = telemetry.GetSample()->Add();
  sample->SetT(CDateTime(time));
  for (int i = 0; i < 4; ++i) {
    sample->GetV()->Add(first + 0.25 * i);
  }
  sample->GetN()->Add(count);
  sample->GetOk()->Add(count > 0);
}

/// begin() and end() of a collection of values span an array.
double MeanOf(const Cr8Col& values) {
  double sum = 0;
  for (const double value : values) {
    sum += value;
  }
  return sum / values.GetCount();
}

}  // namespace

int main() {
  CSerializationContext options;
  options.SetDefaultNamespaceURI(kNamespace);
  try {
    const CSmartPtr<CTelemetry> written(new CTelemetry);
    AddSample(*written, "2024-03-01T12:00:00Z", 20.5, 3);
    AddSample(*written, "2024-03-01T12:00:10Z", -1.25, 0);
    const std::string document = written->ToXml(true, true, EOLType::Lf, options);
    std::cout << document;

    const CSmartPtr<CTelemetry> read(new CTelemetry);
    read->FromXml(document.c_str(), options);
    for (const CSample* sample : *read->GetSample()) {
      std::cout << sample->GetT().ToString() << ": mean " << MeanOf(*sample->GetV()) << " of "
                << sample->GetV()->GetCount() << (sample->GetOk()->Item(0) ? "" : ", not ok")
                << '\n';
    }
  } catch (const CZuException& failure) {
    std::cerr << failure.GetFullMessage() << '\n';
    return 1;
  }
  return 0;
}

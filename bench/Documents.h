#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace bench {

struct DocumentOptions {
  /// At least this long, as XML; of no meaning for "deep" and "wide-ns". A JSON kind holds exactly
  /// the records of the XML kind with the same options.
  std::size_t sizeInBytes = 0;
  std::uint64_t seed = 1;
  /// Indented with tabs, a line for each element.
  bool isPretty = false;
  /// Share of the words of texts that are not in ASCII.
  unsigned nonAsciiPercent = 5;
};

/// Whether there are documents of this kind: orders, telemetry (see the schemas of these names),
/// orders-json, telemetry-json, deep and wide-ns.
bool IsDocumentKind(std::string_view kind);

/// A document in UTF-8, the same for the same options.
/// @param kind  one that IsDocumentKind knows.
std::string MakeDocument(std::string_view kind, const DocumentOptions& options);

}  // namespace bench

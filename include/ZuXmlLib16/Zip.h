#pragma once

#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/InstanceMonitor.h"
#include "ZuXmlLib16/Streams.h"

namespace ZuXmlLib16 {

/// Compression in the gzip (RFC 1952) and zlib (RFC 1950) framings.
class ZUXMLLIB16_API CZuZip : public CInstanceMonitor {
 public:
  CZuZip() : CInstanceMonitor("CZuZip") {}

  /// Replaces an array made by `new[]` and its length by the compressed form, which must not be
  /// longer: data that does not shrink fails.
  /// @throws CZuException  with zlib's code; the array is then left as it was.
  static void Compress(unsigned char** data, unsigned long* length, CompressionType type);
  /// Replaces an array made by `new[]` and its length by what it inflates to. Data that is not
  /// compressed, or is damaged, is left as it was, without an error.
  static void Decompress(unsigned char** data, unsigned long* length);
  /// @param limit  bytes the result may have, 0 for any number.
  /// @throws CZuException  the data inflates to more than the limit; it is then left as it was.
  static void Decompress(unsigned char** data, unsigned long* length, unsigned long limit);
  /// Compresses a value in place; empty data stays empty.
  /// @param mayGrow  also take a compressed form that is longer than the data, which small
  /// documents have; otherwise those fail.
  /// @throws CZuException  with zlib's code; the data is then unchanged.
  static void CompressData(CBinaryData& data, CompressionType type, bool mayGrow = false);
};

}  // namespace ZuXmlLib16

#include "ZuXmlLib16/FastInfosetBinaryData.h"

#include "ZuXmlLib16/TextRef.h"
#include "fastinfoset/EncodingAlgorithms.h"

namespace ZuXmlLib16 {

std::string CFastInfosetBinaryData::GetAsString(unsigned long algorithm) const {
  std::string text;
  detail::AppendDecoded(text, algorithm, GetData(), GetLength());
  return text;
}

void CFastInfosetBinaryData::SetAsEncodedString(unsigned long algorithm, const char* text) {
  // Encoded first: the text may lie in this buffer.
  std::string octets;
  try {
    detail::AppendEncoded(octets, algorithm, CTextRef(text));
  } catch (...) {
    Clear();
    throw;
  }
  SetBuffer(reinterpret_cast<const unsigned char*>(octets.data()), octets.size());
}

}  // namespace ZuXmlLib16

#pragma once

#include <cstddef>
#include <random>
#include <string>

#include "ZuXmlLib16/SmartPtr.h"
#include "ZuXmlLib16/UntypedContent.h"
#include "ZuXmlLib16/XmlDocument.h"

namespace ZuXmlLib16 {

/// Makes trees of untyped elements that every format can carry: names with and without namespaces,
/// attributes, texts with all kinds of special characters. No mixed content, no carriage returns,
/// no tabs in attributes, and no text that begins with the mark of a CDATA section. Texts are in
/// UTF-8.
class RandomTree {
 public:
  explicit RandomTree(std::mt19937::result_type seed) : m_generator(seed) {}

  /// @param size  number of elements.
  CSmartPtr<CElement> Make(int size);

 private:
  std::size_t Below(std::size_t bound);
  bool OneIn(std::size_t chances) { return Below(chances) == 0; }
  const char* Name();
  const char* Namespace();
  std::string Text(bool isAttribute);
  void AddAttributes(CElement& element);

  std::mt19937 m_generator;
};

/// A tree as text, to be compared: a line for each element, attribute and text.
std::string Outline(const CElement& root);
/// The same for the document's tree, without its layout.
std::string Outline(const CXmlDocument& document);

}  // namespace ZuXmlLib16

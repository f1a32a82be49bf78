#include "ZuXmlLib16/ElementInfoCollections.h"

#include "ZuXmlLib16/ClassCollections.h"
#include "ZuXmlLib16/PrimitiveCollections.h"
#include "ZuXmlLib16/UntypedCollections.h"
#include "ZuXmlLib16/Variant.h"
#include "core/ElementMatches.h"
#include "types/VariantAccess.h"

namespace ZuXmlLib16Data::detail {

using ZuXmlLib16::CElementCol;
using ZuXmlLib16::CXmlTypeCollection;
using ZuXmlLib16::detail::ClassCol;
using ZuXmlLib16::detail::VariantAccess;

namespace {

void RemoveItemsFrom(CXmlCollectionBase& collection, std::int32_t count) {
  while (collection.GetCount() > count) {
    collection.Remove(collection.GetCount() - 1);
  }
}

}  // namespace

ColEntry::ColEntry(CTextRef name, CTextRef namespaceUri, std::int32_t propertyIndex)
    : CElementInfo(name, namespaceUri, propertyIndex) {
  SetIsCollection();
}

void ColEntry::AddMatches(const CXmlGeneratedClass* object, ElementMatches& matches) const {
  ZuVariant value;
  ReadProperty(object, value);
  const CXmlCollectionBase* const collection = VariantAccess::Collection(value);
  const auto* const classes = dynamic_cast<const ClassCol*>(collection);
  if (classes != nullptr && !classes->IsAbstract()) {
    if (classes->GetElementType() != XmlElementType::Element) {
      return matches.AddEntriesOf(classes->NewItem().Get());
    }
  } else if (dynamic_cast<const CXmlTypeCollection*>(collection) == nullptr) {
    return matches.AddEverything();
  }
  matches.AddName(collection->GetName(), collection->GetNamespace());
}

bool ColEntry::Write(XmlElementGroupType group, const Writing& out) const {
  ZuVariant value;
  ReadProperty(out.object, value);
  const CXmlCollectionBase* const collection = VariantAccess::Collection(value);
  if (collection == nullptr) return false;
  // Meant to differ: the members of a choice are written whatever their number.
  if (group != XmlElementGroupType::Choice) collection->ValidateCount(out.context);
  return WriteItems(*collection, out);
}

bool ColEntry::Read(XmlElementGroupType group, const Reading& in, const Wildcard* wildcard) const {
  ZuVariant value;
  ReadProperty(in.object, value);
  CXmlCollectionBase* const collection = VariantAccess::Collection(value);
  if (collection == nullptr) return group == XmlElementGroupType::Sequence;
  const std::int32_t countBefore = collection->GetCount();
  CXmlElement* const start = in.current;
  in.current = ReadItems(*collection, in, wildcard);
  // In an all-group more items may follow later. The count is tested when it is written.
  if (group == XmlElementGroupType::All) return false;
  if (group == XmlElementGroupType::Choice && in.current == start) return false;
  if (in.parentType == XmlElementType::Element) {
    collection->ValidateCount(in.context);
    return true;
  }
  if (collection->IsValidCount(in.context)) return true;
  // Items whose elements stay unread are not to be written later.
  RemoveItemsFrom(*collection, countBefore);
  if (group == XmlElementGroupType::Choice) in.current = start;
  return false;
}

CXmlElement* ColEntry::ReadItems(CXmlCollectionBase& collection, const Reading& in,
                                 const Wildcard* wildcard) const {
  if (wildcard != nullptr && GetName() != "AnyElement") {
    if (auto* const elements = dynamic_cast<CElementCol*>(&collection)) {
      const std::string namespaceUri =
          GetAnyDefaultNamespace(wildcard->restriction, GetNamespace(), wildcard->targetNamespace);
      return elements->FromXmlLockElementName_Int(GetName(), namespaceUri, in.parent, in.current,
                                                  in.context);
    }
  }
  return FromXml_Int(&collection, in.parent, in.current, in.context, false);
}

void ColEntry::WriteAttributes(const Writing& out) const {
  ZuVariant value;
  ReadProperty(out.object, value);
  AttributesToXml_Int(VariantAccess::Collection(value), out.writer, out.context);
}

}  // namespace ZuXmlLib16Data::detail

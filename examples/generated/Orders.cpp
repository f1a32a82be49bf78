#include "examples/generated/Orders.h"

#include <cstddef>
#include <iterator>

namespace orders {

using namespace ZuXmlLib16Data;

namespace {

const CGeneratorVersion kGeneratorVersion(16, 1);

// What the metadata refers to

enum ClassIdentifier : int {
  kOrderClass,
  kAddressClass,
  kItemListClass,
  kItemClass,
  kOrderPaymentClass,
  kCardClass,
  kTransferClass,
};

CSmartPtr<CXmlObjectBase> MakeObject(int classIdentifier, const char* elementName) {
  switch (static_cast<ClassIdentifier>(classIdentifier)) {
    case kOrderClass:
      return new COrder(elementName);
    case kAddressClass:
      return new CAddress(elementName);
    case kItemListClass:
      return new CItemList(elementName);
    case kItemClass:
      return new CItem(elementName);
    case kOrderPaymentClass:
      return new COrderPayment(elementName);
    case kCardClass:
      return new CCard(elementName);
    case kTransferClass:
      return new CTransfer(elementName);
  }
  return nullptr;
}

/// The object that a property is to refer to; null when it is of another class.
template <class T>
CSmartPtr<T> ObjectIn(const ZuVariant& value) {
  return dynamic_cast<T*>(value.GetXmlObject().Get());
}

CPrimitiveRestrictions SkuFacets() {
  return {"\\d{3}-[A-Z]{2}", -1, -1, "", "", "", "", -1, -1, -1};
}

CPrimitiveRestrictions QuantityFacets() {
  return {"", -1, -1, "1", "", "", "100", -1, -1, -1};
}

CPrimitiveRestrictions MoneyFacets() {
  return {"", -1, -1, "", "", "", "", -1, -1, 2};
}

bool IsSet(const CDateTime& value) {
  return value.GetType() != CDateTime::DTType::dt_yearZero;
}

[[noreturn]] void ThrowUnknownProperty() {
  throw CZuInvalidParamException("Index out of range");
}

/// Collections are filled, never replaced.
void GetCollection(CXmlCollectionBase* collection, bool read, ZuVariant& value) {
  if (!read) ThrowUnknownProperty();
  value.SetXmlCollection(collection);
}

// In the order of the enumerators
constexpr const char* kCountries[] = {"US", "DE", "FR", "GB", "JP"};

[[noreturn]] void ThrowNoCountry(const std::string& text) {
  throw CZuInvalidValueException("The value [" + text + "] is not one of Country");
}

}  // namespace

std::string CountryToText(int value) {
  const auto index = static_cast<std::size_t>(value);
  if (index >= std::size(kCountries)) ThrowNoCountry(std::to_string(value));
  return kCountries[index];
}

int CountryFromText(const std::string& text) {
  int value = 0;
  for (const char* country : kCountries) {
    if (text == country) return value;
    ++value;
  }
  ThrowNoCountry(text);
}

// CAddress

void CAddress::Clear() {
  m_country = Country::US;
  m_name.clear();
  m_street.clear();
  m_city.clear();
  m_state.clear();
  m_zip.clear();
}

void CAddress::AccessProperty(int propertyIndex, bool read, ZuVariant& value) {
  switch (propertyIndex) {
    case kCountry:
      return read ? value.SetI4(static_cast<int>(m_country))
                  : SetCountry(static_cast<Country>(value.GetI4()));
    case kName:
      return read ? value.SetString(m_name) : SetName(value.GetString());
    case kStreet:
      return read ? value.SetString(m_street) : SetStreet(value.GetString());
    case kCity:
      return read ? value.SetString(m_city) : SetCity(value.GetString());
    case kState:
      return read ? value.SetString(m_state) : SetState(value.GetString());
    case kZip:
      return read ? value.SetString(m_zip) : SetZip(value.GetString());
    default:
      ThrowUnknownProperty();
  }
}

const CClassMetaData& CAddress::MetaData() {
  static const CClassMetaData metaData(
      new CParentElementInfo(XmlElementGroupType::Sequence, XmlElementType::Element, "Address",
                             kNamespace, true, false, -1, ItemType::Invalid, "", false),
      {new CElementInfoSeqPrimMnd("name", kNamespace, kName, false, ItemType::string, "",
                                  WhitespaceRule::None, {}, ""),
       new CElementInfoSeqPrimMnd("street", kNamespace, kStreet, false, ItemType::string, "",
                                  WhitespaceRule::None, {}, ""),
       new CElementInfoSeqPrimMnd("city", kNamespace, kCity, false, ItemType::string, "",
                                  WhitespaceRule::None, {}, ""),
       new CElementInfoSeqPrimMnd("state", kNamespace, kState, false, ItemType::string, "",
                                  WhitespaceRule::None, {}, ""),
       new CElementInfoSeqPrimMnd("zip", kNamespace, kZip, false, ItemType::string, "",
                                  WhitespaceRule::None, {}, "")},
      {new CAttributeInfoEnum("country", "", kCountry, false, CountryToText, CountryFromText, "")});
  return metaData;
}

// CItem

void CItem::Clear() {
  m_sku.clear();
  m_productName.clear();
  m_quantity = 0;
  m_price = CDecimal();
  m_shipDate.reset();
  m_thumbnail.reset();
}

void CItem::AccessProperty(int propertyIndex, bool read, ZuVariant& value) {
  switch (propertyIndex) {
    case kSku:
      return read ? value.SetString(m_sku) : SetSku(value.GetString());
    case kProductName:
      return read ? value.SetString(m_productName) : SetProductName(value.GetString());
    case kQuantity:
      return read ? value.SetUI4(m_quantity) : SetQuantity(value.GetUI4());
    case kPrice:
      return read ? value.SetDecimal(m_price) : SetPrice(value.GetDecimal());
    case kShipDate:
      if (!read) return SetShipDate(value.GetDateTime());
      if (m_shipDate) value.SetDateTime(*m_shipDate);
      return;
    case kThumbnail:
      if (!read) return SetThumbnail(value.GetBase64Binary());
      if (m_thumbnail) value.SetBase64Binary(*m_thumbnail);
      return;
    default:
      ThrowUnknownProperty();
  }
}

const CClassMetaData& CItem::MetaData() {
  static const CClassMetaData metaData(
      new CParentElementInfo(XmlElementGroupType::Sequence, XmlElementType::Element, "Item",
                             kNamespace, true, false, -1, ItemType::Invalid, "", false),
      {new CElementInfoSeqPrimMnd("productName", kNamespace, kProductName, false, ItemType::string,
                                  "", WhitespaceRule::None, {}, ""),
       new CElementInfoSeqPrimMnd("quantity", kNamespace, kQuantity, false, ItemType::ui4, "",
                                  WhitespaceRule::Collapse, QuantityFacets(), ""),
       new CElementInfoSeqPrimMnd("price", kNamespace, kPrice, false, ItemType::decimal, "",
                                  WhitespaceRule::Collapse, MoneyFacets(), ""),
       new CElementInfoSeqPrimOpt("shipDate", kNamespace, kShipDate, false, ItemType::datetime, "",
                                  WhitespaceRule::Collapse, {}, ""),
       new CElementInfoSeqPrimOpt("thumbnail", kNamespace, kThumbnail, false,
                                  ItemType::base64Binary, "", WhitespaceRule::Collapse, {}, "")},
      {new CAttributeInfoPrimitive("sku", "", kSku, false, ItemType::string, "",
                                   WhitespaceRule::None, SkuFacets(), "")});
  return metaData;
}

// CItemList

CItemList::CItemList(const char* elementName)
    : m_item(new CXmlClassCol<CItem>("item", kNamespace, 1, -1, XmlElementType::Element, MakeObject,
                                     kItemClass)) {
  SetElementName(elementName);
}

void CItemList::Clear() {
  m_item->Clear();
}

void CItemList::AccessProperty(int propertyIndex, bool read, ZuVariant& value) {
  if (propertyIndex != kItem) ThrowUnknownProperty();
  GetCollection(m_item.Get(), read, value);
}

const CClassMetaData& CItemList::MetaData() {
  static const CClassMetaData metaData(
      new CParentElementInfo(XmlElementGroupType::Sequence, XmlElementType::Element, "ItemList",
                             kNamespace, true, false, -1, ItemType::Invalid, "", false),
      {new CElementInfoSeqClsCol("item", kNamespace, kItem, XmlElementType::Element)}, {});
  return metaData;
}

// CCard

void CCard::Clear() {
  m_number.clear();
  m_holder.clear();
  m_expires.Clear();
}

void CCard::AccessProperty(int propertyIndex, bool read, ZuVariant& value) {
  switch (propertyIndex) {
    case kNumber:
      return read ? value.SetString(m_number) : SetNumber(value.GetString());
    case kHolder:
      return read ? value.SetString(m_holder) : SetHolder(value.GetString());
    case kExpires:
      if (!read) return SetExpires(value.GetYearMonth());
      if (IsSet(m_expires)) value.SetYearMonth(m_expires);
      return;
    default:
      ThrowUnknownProperty();
  }
}

const CClassMetaData& CCard::MetaData() {
  static const CClassMetaData metaData(
      new CParentElementInfo(XmlElementGroupType::Sequence, XmlElementType::Element, "Card",
                             kNamespace, true, false, -1, ItemType::Invalid, "", false),
      {new CElementInfoSeqPrimMnd("number", kNamespace, kNumber, false, ItemType::string, "",
                                  WhitespaceRule::None, {}, ""),
       new CElementInfoSeqPrimMnd("holder", kNamespace, kHolder, false, ItemType::string, "",
                                  WhitespaceRule::None, {}, ""),
       new CElementInfoSeqPrimMnd("expires", kNamespace, kExpires, false, ItemType::yearMonth, "",
                                  WhitespaceRule::Collapse, {}, "")},
      {});
  return metaData;
}

// CTransfer

void CTransfer::Clear() {
  m_iban.clear();
  m_amount = CDecimal();
}

void CTransfer::AccessProperty(int propertyIndex, bool read, ZuVariant& value) {
  switch (propertyIndex) {
    case kIban:
      return read ? value.SetString(m_iban) : SetIban(value.GetString());
    case kAmount:
      return read ? value.SetDecimal(m_amount) : SetAmount(value.GetDecimal());
    default:
      ThrowUnknownProperty();
  }
}

const CClassMetaData& CTransfer::MetaData() {
  static const CClassMetaData metaData(
      new CParentElementInfo(XmlElementGroupType::Sequence, XmlElementType::Element, "Transfer",
                             kNamespace, true, false, -1, ItemType::Invalid, "", false),
      {new CElementInfoSeqPrimMnd("iban", kNamespace, kIban, false, ItemType::string, "",
                                  WhitespaceRule::None, {}, ""),
       new CElementInfoSeqPrimMnd("amount", kNamespace, kAmount, false, ItemType::decimal, "",
                                  WhitespaceRule::Collapse, MoneyFacets(), "")},
      {});
  return metaData;
}

// COrderPayment

void COrderPayment::SetCard(CSmartPtr<CCard> value) {
  Throw_IfElementNameDiffers(value.Get(), "card");
  if (value || m_card) Choice_SelectElement("card", value.Get(), m_selected);
  m_card = std::move(value);
}

void COrderPayment::SetTransfer(CSmartPtr<CTransfer> value) {
  Throw_IfElementNameDiffers(value.Get(), "transfer");
  if (value || m_transfer) Choice_SelectElement("transfer", value.Get(), m_selected);
  m_transfer = std::move(value);
}

void COrderPayment::SetInvoice(std::string value) {
  if (m_selected.empty()) m_selected = "invoice";
  Choice_SetElementValid(true, "invoice", m_selected);
  m_invoice = std::move(value);
}

void COrderPayment::Clear() {
  m_selected.clear();
  m_card = nullptr;
  m_transfer = nullptr;
  m_invoice.clear();
}

void COrderPayment::AccessProperty(int propertyIndex, bool read, ZuVariant& value) {
  switch (propertyIndex) {
    case kCard:
      return read ? value.SetXmlObject(m_card.Get()) : SetCard(ObjectIn<CCard>(value));
    case kTransfer:
      return read ? value.SetXmlObject(m_transfer.Get()) : SetTransfer(ObjectIn<CTransfer>(value));
    case kInvoice:
      if (!read) return SetInvoice(value.GetString());
      if (HasInvoice()) value.SetString(m_invoice);
      return;
    default:
      ThrowUnknownProperty();
  }
}

const CClassMetaData& COrderPayment::MetaData() {
  static const CClassMetaData metaData(
      new CParentElementInfo(XmlElementGroupType::Choice, XmlElementType::Pseudo, "OrderPayment",
                             kNamespace, false, false, -1, ItemType::Invalid, "", false),
      {new CElementInfoChoiceClsOpt("card", kNamespace, kCard, XmlElementType::Element, MakeObject,
                                    kCardClass),
       new CElementInfoChoiceClsOpt("transfer", kNamespace, kTransfer, XmlElementType::Element,
                                    MakeObject, kTransferClass),
       new CElementInfoChoicePrimOpt("invoice", kNamespace, kInvoice, false, ItemType::string, "",
                                     WhitespaceRule::None, {}, "")},
      {});
  return metaData;
}

// COrder

COrder::COrder(const char* elementName)
    : m_shipTo(new CAddress("shipTo")),
      m_items(new CItemList("items")),
      m_payment(new COrderPayment("OrderPayment")) {
  SetElementName(elementName);
}

void COrder::SetShipTo(CSmartPtr<CAddress> value) {
  Throw_IfPropertyIsNull(value.Get(), "shipTo");
  Throw_IfElementNameDiffers(value.Get(), "shipTo");
  m_shipTo = std::move(value);
}

void COrder::SetReference(std::optional<std::string> value) {
  m_reference = std::move(value);
  m_isReferenceNil = false;
}

void COrder::SetReferenceNil() {
  m_reference.reset();
  m_isReferenceNil = true;
}

void COrder::SetItems(CSmartPtr<CItemList> value) {
  Throw_IfPropertyIsNull(value.Get(), "items");
  Throw_IfElementNameDiffers(value.Get(), "items");
  m_items = std::move(value);
}

void COrder::SetPayment(CSmartPtr<COrderPayment> value) {
  Throw_IfPropertyIsNull(value.Get(), "OrderPayment");
  m_payment = std::move(value);
}

void COrder::Clear() {
  m_id = 0;
  m_date.Clear();
  m_shipTo->Clear();
  m_comment.reset();
  SetReference(std::nullopt);
  m_items->Clear();
  m_payment->Clear();
}

void COrder::AccessProperty(int propertyIndex, bool read, ZuVariant& value) {
  switch (propertyIndex) {
    case kId:
      return read ? value.SetI4(m_id) : SetId(value.GetI4());
    case kDate:
      if (!read) return SetDate(value.GetDate());
      if (IsSet(m_date)) value.SetDate(m_date);
      return;
    case kShipTo:
      return read ? value.SetXmlObject(m_shipTo.Get()) : SetShipTo(ObjectIn<CAddress>(value));
    case kComment:
      if (!read) return SetComment(value.GetString());
      if (m_comment) value.SetString(*m_comment);
      return;
    case kReference:
      if (!read) return value.IsNil() ? SetReferenceNil() : SetReference(value.GetString());
      if (m_isReferenceNil) return value.SetNil();
      if (m_reference) value.SetString(*m_reference);
      return;
    case kItems:
      return read ? value.SetXmlObject(m_items.Get()) : SetItems(ObjectIn<CItemList>(value));
    case kPayment:
      return read ? value.SetXmlObject(m_payment.Get())
                  : SetPayment(ObjectIn<COrderPayment>(value));
    default:
      ThrowUnknownProperty();
  }
}

const CClassMetaData& COrder::MetaData() {
  static const CClassMetaData metaData(
      new CParentElementInfo(XmlElementGroupType::Sequence, XmlElementType::Element, "Order",
                             kNamespace, true, false, -1, ItemType::Invalid, "", false),
      {new CElementInfoSeqClsMnd("shipTo", kNamespace, kShipTo, XmlElementType::Element, MakeObject,
                                 kAddressClass, true),
       new CElementInfoSeqPrimOpt("comment", kNamespace, kComment, false, ItemType::string, "",
                                  WhitespaceRule::None, {}, ""),
       new CElementInfoSeqPrimMnd("reference", kNamespace, kReference, true, ItemType::string, "",
                                  WhitespaceRule::None, {}, ""),
       new CElementInfoSeqClsMnd("items", kNamespace, kItems, XmlElementType::Element, MakeObject,
                                 kItemListClass, true),
       new CElementInfoSeqClsMnd("OrderPayment", kNamespace, kPayment, XmlElementType::Pseudo,
                                 MakeObject, kOrderPaymentClass, true)},
      {new CAttributeInfoPrimitive("id", "", kId, false, ItemType::i4, "", WhitespaceRule::Collapse,
                                   {}, ""),
       new CAttributeInfoPrimitive("date", "", kDate, false, ItemType::date, "",
                                   WhitespaceRule::Collapse, {}, "")});
  return metaData;
}

// COrderFeed

COrderFeed::COrderFeed(const char* elementName)
    : m_order(new CXmlClassCol<COrder>("order", kNamespace, 0, -1, XmlElementType::Element,
                                       MakeObject, kOrderClass)) {
  SetElementName(elementName);
}

void COrderFeed::AccessProperty(int propertyIndex, bool read, ZuVariant& value) {
  if (propertyIndex != kOrder) ThrowUnknownProperty();
  GetCollection(m_order.Get(), read, value);
}

const CClassMetaData& COrderFeed::MetaData() {
  static const CClassMetaData metaData(
      new CParentElementInfo(XmlElementGroupType::Sequence, XmlElementType::Element, "OrderFeed",
                             kNamespace, true, false, -1, ItemType::Invalid, "", false),
      {new CElementInfoSeqClsCol("order", kNamespace, kOrder, XmlElementType::Element)}, {});
  return metaData;
}

}  // namespace orders

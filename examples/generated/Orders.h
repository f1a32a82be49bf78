#pragma once

#include <optional>
#include <string>
#include <utility>

#include "ZuXmlLib16.h"

/// The types of bench/orders.xsd. A feed holds orders; an order an address, items and a payment.
namespace orders {

using namespace ZuXmlLib16;

inline constexpr const char* kNamespace = "urn:bench:orders";

enum class Country { US, DE, FR, GB, JP };

/// @throws CZuInvalidValueException  no value of Country; CountryFromText alike.
std::string CountryToText(int value);
int CountryFromText(const std::string& text);

class CAddress : public CXmlDescribedClass<CAddress> {
 public:
  explicit CAddress(const char* elementName = "shipTo") { SetElementName(elementName); }

  Country GetCountry() const { return m_country; }
  void SetCountry(Country value) { m_country = value; }
  const std::string& GetName() const { return m_name; }
  void SetName(std::string value) { m_name = std::move(value); }
  const std::string& GetStreet() const { return m_street; }
  void SetStreet(std::string value) { m_street = std::move(value); }
  const std::string& GetCity() const { return m_city; }
  void SetCity(std::string value) { m_city = std::move(value); }
  const std::string& GetState() const { return m_state; }
  void SetState(std::string value) { m_state = std::move(value); }
  const std::string& GetZip() const { return m_zip; }
  void SetZip(std::string value) { m_zip = std::move(value); }
  void Clear();
  static const CClassMetaData& MetaData();

 private:
  enum Property : int { kCountry, kName, kStreet, kCity, kState, kZip };

  void AccessProperty(int propertyIndex, bool read, ZuVariant& value) override;

  Country m_country = Country::US;
  std::string m_name;
  std::string m_street;
  std::string m_city;
  std::string m_state;
  std::string m_zip;
};

class CItem : public CXmlDescribedClass<CItem> {
 public:
  explicit CItem(const char* elementName = "item") { SetElementName(elementName); }

  /// Three digits, a hyphen, two capital letters.
  const std::string& GetSku() const { return m_sku; }
  void SetSku(std::string value) { m_sku = std::move(value); }
  const std::string& GetProductName() const { return m_productName; }
  void SetProductName(std::string value) { m_productName = std::move(value); }
  /// 1 to 99.
  unsigned long GetQuantity() const { return m_quantity; }
  void SetQuantity(unsigned long value) { m_quantity = value; }
  /// At most two fraction digits.
  const CDecimal& GetPrice() const { return m_price; }
  void SetPrice(CDecimal value) { m_price = std::move(value); }
  const std::optional<CDateTime>& GetShipDate() const { return m_shipDate; }
  void SetShipDate(const std::optional<CDateTime>& value) { m_shipDate = value; }
  const std::optional<CBinaryData>& GetThumbnail() const { return m_thumbnail; }
  void SetThumbnail(std::optional<CBinaryData> value) { m_thumbnail = std::move(value); }
  void Clear();
  static const CClassMetaData& MetaData();

 private:
  enum Property : int { kSku, kProductName, kQuantity, kPrice, kShipDate, kThumbnail };

  void AccessProperty(int propertyIndex, bool read, ZuVariant& value) override;

  std::string m_sku;
  std::string m_productName;
  unsigned long m_quantity = 0;
  CDecimal m_price;
  std::optional<CDateTime> m_shipDate;
  std::optional<CBinaryData> m_thumbnail;
};

class CItemList : public CXmlDescribedClass<CItemList> {
 public:
  explicit CItemList(const char* elementName = "items");

  /// At least one.
  const CSmartPtr<CXmlClassCol<CItem>>& GetItem() const { return m_item; }
  void Clear();
  static const CClassMetaData& MetaData();

 private:
  enum Property : int { kItem };

  void AccessProperty(int propertyIndex, bool read, ZuVariant& value) override;

  CSmartPtr<CXmlClassCol<CItem>> m_item;
};

class CCard : public CXmlDescribedClass<CCard> {
 public:
  explicit CCard(const char* elementName = "card") { SetElementName(elementName); }

  const std::string& GetNumber() const { return m_number; }
  void SetNumber(std::string value) { m_number = std::move(value); }
  const std::string& GetHolder() const { return m_holder; }
  void SetHolder(std::string value) { m_holder = std::move(value); }
  /// A gYearMonth; without a type as long as nobody has set it.
  const CDateTime& GetExpires() const { return m_expires; }
  void SetExpires(const CDateTime& value) { m_expires = value; }
  void Clear();
  static const CClassMetaData& MetaData();

 private:
  enum Property : int { kNumber, kHolder, kExpires };

  void AccessProperty(int propertyIndex, bool read, ZuVariant& value) override;

  std::string m_number;
  std::string m_holder;
  CDateTime m_expires;
};

class CTransfer : public CXmlDescribedClass<CTransfer> {
 public:
  explicit CTransfer(const char* elementName = "transfer") { SetElementName(elementName); }

  const std::string& GetIban() const { return m_iban; }
  void SetIban(std::string value) { m_iban = std::move(value); }
  /// At most two fraction digits.
  const CDecimal& GetAmount() const { return m_amount; }
  void SetAmount(CDecimal value) { m_amount = std::move(value); }
  void Clear();
  static const CClassMetaData& MetaData();

 private:
  enum Property : int { kIban, kAmount };

  void AccessProperty(int propertyIndex, bool read, ZuVariant& value) override;

  std::string m_iban;
  CDecimal m_amount;
};

/// The choice inside an order: a model group, so it has no tag of its own. One member is set at a
/// time; to set another, clear the one there is first.
class COrderPayment : public CXmlDescribedClass<COrderPayment> {
 public:
  explicit COrderPayment(const char* elementName = "OrderPayment") { SetElementName(elementName); }

  /// The name of the member that is set, "" for none.
  const std::string& GetSelected() const { return m_selected; }
  /// Null unless selected.
  const CSmartPtr<CCard>& GetCard() const { return m_card; }
  /// Null takes the member away.
  /// @throws CZuInvalidStateException  another member is set; the other setters alike.
  void SetCard(CSmartPtr<CCard> value);
  /// As for the card.
  const CSmartPtr<CTransfer>& GetTransfer() const { return m_transfer; }
  void SetTransfer(CSmartPtr<CTransfer> value);
  /// "" unless selected.
  const std::string& GetInvoice() const { return m_invoice; }
  bool HasInvoice() const { return m_selected == "invoice"; }
  void SetInvoice(std::string value);
  void Clear();
  static const CClassMetaData& MetaData();

 private:
  enum Property : int { kCard, kTransfer, kInvoice };

  void AccessProperty(int propertyIndex, bool read, ZuVariant& value) override;

  std::string m_selected;
  CSmartPtr<CCard> m_card;
  CSmartPtr<CTransfer> m_transfer;
  std::string m_invoice;
};

class COrder : public CXmlDescribedClass<COrder> {
 public:
  explicit COrder(const char* elementName = "order");

  long GetId() const { return m_id; }
  void SetId(long value) { m_id = value; }
  /// Without a type as long as nobody has set it.
  const CDateTime& GetDate() const { return m_date; }
  void SetDate(const CDateTime& value) { m_date = value; }
  /// Never null, as the other mandatory children; @throws CZuInvalidParamException  for null.
  const CSmartPtr<CAddress>& GetShipTo() const { return m_shipTo; }
  void SetShipTo(CSmartPtr<CAddress> value);
  const std::optional<std::string>& GetComment() const { return m_comment; }
  void SetComment(std::optional<std::string> value) { m_comment = std::move(value); }
  /// Nothing when nil, or not set yet.
  const std::optional<std::string>& GetReference() const { return m_reference; }
  void SetReference(std::optional<std::string> value);
  bool IsReferenceNil() const { return m_isReferenceNil; }
  void SetReferenceNil();
  const CSmartPtr<CItemList>& GetItems() const { return m_items; }
  void SetItems(CSmartPtr<CItemList> value);
  const CSmartPtr<COrderPayment>& GetPayment() const { return m_payment; }
  void SetPayment(CSmartPtr<COrderPayment> value);
  void Clear();
  static const CClassMetaData& MetaData();

 private:
  enum Property : int { kId, kDate, kShipTo, kComment, kReference, kItems, kPayment };

  void AccessProperty(int propertyIndex, bool read, ZuVariant& value) override;

  long m_id = 0;
  CDateTime m_date;
  CSmartPtr<CAddress> m_shipTo;
  std::optional<std::string> m_comment;
  std::optional<std::string> m_reference;
  bool m_isReferenceNil = false;
  CSmartPtr<CItemList> m_items;
  CSmartPtr<COrderPayment> m_payment;
};

/// The document element.
class COrderFeed : public CXmlDescribedClass<COrderFeed> {
 public:
  explicit COrderFeed(const char* elementName = "orders");

  const CSmartPtr<CXmlClassCol<COrder>>& GetOrder() const { return m_order; }
  void Clear() { m_order->Clear(); }
  static const CClassMetaData& MetaData();

 private:
  enum Property : int { kOrder };

  void AccessProperty(int propertyIndex, bool read, ZuVariant& value) override;

  CSmartPtr<CXmlClassCol<COrder>> m_order;
};

}  // namespace orders

// Reads a feed of orders into typed objects, prints it, changes it, writes it in two forms, and
// shows what errors look like.
// usage: example_orders [FILE]

#include "examples/generated/Orders.h"

#include <clocale>
#include <cstdio>
#include <iostream>
#include <string>

using namespace ZuXmlLib16;
using namespace orders;

namespace {

CSmartPtr<COrderFeed> ReadFeed(const char* file) {
  CSmartPtr<COrderFeed> feed(new COrderFeed);
  feed->FromXmlFile(file, CSerializationContext::m_defaultContext);
  return feed;
}

CSerializationContext Options() {
  CSerializationContext options;
  options.SetDefaultNamespaceURI(kNamespace);
  options.SetIndentChars("  ");
  return options;
}

std::string TextOf(const COrderFeed& feed) {
  return feed.ToXml(false, false, EOLType::Lf, Options());
}

CDecimal TotalOf(const COrder& order) {
  CDecimal total;
  for (const CItem* item : *order.GetItems()->GetItem()) {
    total += item->GetPrice() * CDecimal(item->GetQuantity());
  }
  return total;
}

std::string PaymentOf(const COrder& order) {
  const COrderPayment& payment = *order.GetPayment();
  if (payment.GetCard()) return "card, expires " + payment.GetCard()->GetExpires().ToString();
  if (payment.GetTransfer()) return "transfer from " + payment.GetTransfer()->GetIban();
  return "invoice " + payment.GetInvoice();
}

/// Text filled up with blanks; every character of UTF-8 counts as one.
std::string Padded(const std::string& text, std::size_t width) {
  std::size_t characters = 0;
  for (const char c : text) {
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++characters;
  }
  return text + std::string(characters < width ? width - characters : 1, ' ');
}

void Print(const COrderFeed& feed) {
  std::cout << "id      date        customer            country  items  total     payment\n";
  for (const COrder* order : *feed.GetOrder()) {
    const CAddress& customer = *order->GetShipTo();
    std::cout << Padded(std::to_string(order->GetId()), 8)
              << Padded(order->GetDate().ToString(), 12) << Padded(customer.GetName(), 20)
              << Padded(CountryToText(static_cast<int>(customer.GetCountry())), 9)
              << Padded(std::to_string(order->GetItems()->GetItem()->GetCount()), 7)
              << Padded(TotalOf(*order).ToString(2), 10) << PaymentOf(*order) << '\n';
  }
}

void AddOrder(const COrderFeed& feed) {
  const CSmartPtr<COrder> order = feed.GetOrder()->Add();
  order->SetId(10486);
  order->SetDate(CDateTime(2024, 3, 4));
  order->SetReferenceNil();
  CAddress& customer = *order->GetShipTo();
  customer.SetCountry(Country::GB);
  customer.SetName("A. Mirror & Sons");
  customer.SetStreet("3 Candle Lane");
  customer.SetCity("York");
  customer.SetState("NY");
  customer.SetZip("YO1 7HU");
  const CSmartPtr<CItem> item = order->GetItems()->GetItem()->Add();
  item->SetSku("551-LP");
  item->SetProductName("Desk lamp \"North\"");
  item->SetQuantity(4);
  item->SetPrice("129.00");
  order->GetPayment()->SetInvoice("INV-000873");
}

/// A choice holds one member at a time, so the old one goes first.
void PayByCard(const COrder& order) {
  const CSmartPtr<CCard> card(new CCard);
  card->SetNumber("4024007198964305");
  card->SetHolder("J KOEHLER");
  CDateTime expires;
  expires.SetGYearMonth(2026, 4);
  card->SetExpires(expires);
  order.GetPayment()->Clear();
  order.GetPayment()->SetCard(card);
}

void WriteAndCompare(const COrderFeed& feed) {
  feed.ToXmlFile("orders-changed.xml", true, true, XmlEncoding::Utf8, EOLType::Lf, Options(),
                 CompressionType::None);
  feed.ToXmlFile("orders-changed.xml.gz", true, false, XmlEncoding::Utf8, EOLType::Lf, Options(),
                 CompressionType::Gzip);
  const bool isSame = TextOf(*ReadFeed("orders-changed.xml")) == TextOf(feed) &&
                      TextOf(*ReadFeed("orders-changed.xml.gz")) == TextOf(feed);
  std::cout << "\nWrote orders-changed.xml and orders-changed.xml.gz. Read back, they are "
            << (isSame ? "equal to what was written.\n" : "DIFFERENT.\n");
  if (!isSame) throw CZuException("What was read back is not what was written.");
}

/// Facets are checked when a value is written.
void ShowErrorOfWriting(const COrderFeed& feed) {
  const CSmartPtr<CItem> item = feed.GetOrder()->Item(0)->GetItems()->GetItem()->Item(0);
  const unsigned long quantity = item->GetQuantity();
  item->SetQuantity(100);
  try {
    TextOf(feed);
  } catch (const CZuException& failure) {
    std::cout << "\nA quantity above 99 is refused when it is written:\n"
              << failure.GetFullMessage() << '\n';
  }
  item->SetQuantity(quantity);
}

/// The structure is checked when a document is read.
void ShowErrorOfReading(const COrderFeed& feed) {
  std::string document = TextOf(feed);
  const std::size_t begin = document.rfind("<shipTo");
  const std::string endTag = "</shipTo>";
  document.erase(begin, document.rfind(endTag) + endTag.size() - begin);
  try {
    const CSmartPtr<COrderFeed> unread(new COrderFeed);
    unread->FromXml(document.c_str(), CSerializationContext::m_defaultContext);
  } catch (const CZuException& failure) {
    std::cout << "\nAn order without its address is refused when it is read:\n"
              << failure.GetFullMessage() << '\n';
  }
}

}  // namespace

int main(int argumentCount, char** arguments) {
  // Text is in the character set of the locale. The "C" locale, in which every program starts, has
  // ASCII only.
  std::setlocale(LC_CTYPE, "C.UTF-8");
  try {
    const CSmartPtr<COrderFeed> feed =
        ReadFeed(argumentCount > 1 ? arguments[1] : EXAMPLE_DATA "/orders.xml");
    Print(*feed);
    AddOrder(*feed);
    PayByCard(*feed->GetOrder()->Item(0));
    std::cout << "\nChanged:\n";
    Print(*feed);
    WriteAndCompare(*feed);
    ShowErrorOfWriting(*feed);
    ShowErrorOfReading(*feed);
  } catch (const CZuException& failure) {
    std::cerr << failure.GetFullMessage() << '\n';
    return 1;
  }
  return 0;
}

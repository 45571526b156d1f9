// The invoice document and its line type (also the lines of delivery notes and receipts).
#pragma once

#include <string>

#include "foundation/collection.hpp"

namespace quorvel {

// One line of goods or of other expenses; every field is host-formatted text.
struct ClassInvoiceItem {
  std::string ItemName, Quantity, UnitPrice, Total, Description, Unit, PKG;
};

class ClassInvoice {
 public:
  std::string printType;
  std::string printTitle;
  std::string BillToTitle = "Bill to:";
  std::string CustomerShortName;
  std::string Change;
  std::string Received;
  std::string NumberTitle;
  std::string CustomerSign = "Customer's Sign";
  std::string CashierSign = "Cashier's Sign";
  std::string TotalOtherExpenses;
  bool PrintFooter = false;
  std::string LPONumberTitle = " PO No.";  // the leading blank is part of the caption
  std::string Store;
  std::string PaymentMethod;
  std::string LPONumber;
  std::string SumOfTotal;
  std::string Shipping1, Shipping2, Shipping3, Shipping4, Shipping5;
  std::string Billing1, Billing2, Billing3, Billing4, Billing5;
  bool hasShipping = false;
  bool hasBilling = false;
  std::string InvoiceDate;
  std::string currencySign;
  std::string InvoiceNumber;
  std::string EmployeeName;
  bool HasDiscount = false;
  std::string DiscountPercent;
  std::string DiscountTitle = "Discount:";
  std::string InvoiceDiscount;
  std::string CustomerNote1, CustomerNote2, CustomerNote3;
  std::string subTotal;
  std::string Total;
  // A QR code's payload, printed on the invoice's last page and on the receipt; empty: none.
  std::string QRCode;

  // Appends the object itself, so later changes by the host show in the printout.
  void AddItem(std::shared_ptr<ClassInvoiceItem> item) { LazyCollection(items_)->Add(std::move(item)); }
  void AddExpense(std::shared_ptr<ClassInvoiceItem> item) { LazyCollection(expenses_)->Add(std::move(item)); }
  // The goods lines; an empty collection on a new invoice, never nothing.
  const CollectionRef<ClassInvoiceItem>& InvoiceItems() { return LazyCollection(items_); }
  const CollectionRef<ClassInvoiceItem>& OtherExpenses() { return LazyCollection(expenses_); }
  void OtherExpenses(CollectionRef<ClassInvoiceItem> expenses) { expenses_ = std::move(expenses); }
  // QRCode = the Saudi tax authority's phase-1 record of the five values (Base64 of its TLV).
  void SetZatcaQR(std::string SellerName, std::string VATNumber, std::string Timestamp,
                  std::string TotalWithVAT, std::string VATTotal);

 private:
  CollectionRef<ClassInvoiceItem> items_;
  CollectionRef<ClassInvoiceItem> expenses_;
};

}  // namespace quorvel

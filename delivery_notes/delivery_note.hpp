// The delivery-note document: header texts, the delivery address and the goods lines.
#pragma once

#include <memory>
#include <string>

#include "foundation/collection.hpp"
#include "invoices/invoice.hpp"

namespace quorvel {

class ClassDeliveryNote {
 public:
  // The lines of the note, in insertion order; created empty on first read. The host may also
  // hand over a collection of its own.
  const CollectionRef<ClassInvoiceItem>& items() { return LazyCollection(items_); }
  void items(CollectionRef<ClassInvoiceItem> lines) { items_ = std::move(lines); }

  std::string NoteNumber;
  std::string NoteDate;
  std::string InvoiceNumber;
  std::string PackageNumber;
  std::string Billing1, Billing2, Billing3, Billing4, Billing5;
  bool PrintFooter = false;
  // Unlike the invoice's, the address block of a delivery note is shown unless switched off.
  bool hasBilling = true;
  std::string CustomerNote1, CustomerNote2, CustomerNote3;
  std::string NumberTitle;
  std::string printTitle;
  std::string Employee;

  // Stores the host's object itself, so later changes to it show in the printout.
  void AddItem(std::shared_ptr<ClassInvoiceItem> item) { LazyCollection(items_)->Add(std::move(item)); }

 private:
  CollectionRef<ClassInvoiceItem> items_;
};

}  // namespace quorvel

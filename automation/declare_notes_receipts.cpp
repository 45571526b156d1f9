// Interfaces of the delivery-note classes and of the point-of-sale receipt printer.
#include "automation/class_builder.hpp"
#include "automation/declarations.hpp"
#include "delivery_notes/delivery_note.hpp"
#include "delivery_notes/delivery_note_printer.hpp"
#include "receipts/receipt_printer.hpp"

namespace quorvel {

void DeclareDeliveryNoteClasses(TypeLibrary& library) {
  using N = ClassDeliveryNote;
  using Items = CollectionRef<ClassInvoiceItem>;
  ClassBuilder<N>(library, "ClassDeliveryNote")
      .Get<Items>("items", [](N& n) { return n.items(); })
      .Put<Items>("items", [](N& n, Items lines) { n.items(std::move(lines)); })
      .Field("NoteNumber", &N::NoteNumber)
      .Field("NoteDate", &N::NoteDate)
      .Field("InvoiceNumber", &N::InvoiceNumber)
      .Field("PackageNumber", &N::PackageNumber)
      .Field("Billing1", &N::Billing1)
      .Field("Billing2", &N::Billing2)
      .Field("Billing3", &N::Billing3)
      .Field("Billing4", &N::Billing4)
      .Field("Billing5", &N::Billing5)
      .Field("PrintFooter", &N::PrintFooter)
      .Field("hasBilling", &N::hasBilling)
      .Field("CustomerNote1", &N::CustomerNote1)
      .Field("CustomerNote2", &N::CustomerNote2)
      .Field("CustomerNote3", &N::CustomerNote3)
      .Field("NumberTitle", &N::NumberTitle)
      .Field("printTitle", &N::printTitle)
      .Field("Employee", &N::Employee)
      .Method("AddItem", &N::AddItem, {"item"});

  using P = ClassDeliveryNotePrinter;
  ClassBuilder<P>(library, "ClassDeliveryNotePrinter")
      .Field("printItemsTable", &P::printItemsTable)
      .Method("PrintDelNoteHeader", &P::PrintDelNoteHeader, {"obj", "delNote", "printHeader"})
      .Method("PrintDeliveryNote", &P::PrintDeliveryNote, {"obj", "delNote", "printHeader"})
      .Method("PrintItemsHeader", &P::PrintItemsHeader, {"obj"})
      .Method("printTable", &P::printTable, {"obj", "top"})
      .Method("PrintItem", &P::PrintItem, {"obj", "It", "serialNumber"})
      .Method("AdjustedText", &P::AdjustedText, {"obj", "text", "length"})
      .Returns(TypeKind::Variant)
      .Method("AdjustedText2", &P::AdjustedText2, {"obj", "text", "length"})
      .Returns(TypeKind::Variant)
      .Method("PrintIt", &P::PrintIt, {"delNote", "printHeader"});
}

void DeclareReceiptClasses(TypeLibrary& library) {
  using R = ReceiptPrinter;
  ClassBuilder<R>(library, "ReceiptPrinter")
      .Field("POS_Right_Margin", &R::POS_Right_Margin)
      .Field("POS_Left_Margin", &R::POS_Left_Margin)
      .Method("PrintIt", &R::PrintIt, {"receipt"})
      .Method("PrintReceipt", &R::PrintReceipt, {"obj", "receipt"})
      .Method("SetCustomerMessage1", &R::SetCustomerMessage1, {"message"})
      .Method("SetCustomerMessage2", &R::SetCustomerMessage2, {"message"})
      .Method("AdjustedText", &R::AdjustedText, {"obj", "text", "length"})
      .Returns(TypeKind::Variant);
}

}  // namespace quorvel

// Interfaces of the invoice classes.
#include "automation/class_builder.hpp"
#include "automation/declarations.hpp"
#include <any>

#include "invoices/invoice.hpp"
#include "invoices/invoice_printer.hpp"

namespace quorvel {

void DeclareInvoiceClasses(TypeLibrary& library) {
  using Inv = ClassInvoice;
  using Item = ClassInvoiceItem;
  using Items = CollectionRef<Item>;
  ClassBuilder<Inv>(library, "ClassInvoice")
      .Field("printType", &Inv::printType)
      .Field("printTitle", &Inv::printTitle)
      .Field("BillToTitle", &Inv::BillToTitle)
      .Field("CustomerShortName", &Inv::CustomerShortName)
      .Field("Change", &Inv::Change)
      .Field("Received", &Inv::Received)
      .Field("NumberTitle", &Inv::NumberTitle)
      .Field("CustomerSign", &Inv::CustomerSign)
      .Field("CashierSign", &Inv::CashierSign)
      .Field("TotalOtherExpenses", &Inv::TotalOtherExpenses)
      .Field("PrintFooter", &Inv::PrintFooter)
      .Field("LPONumberTitle", &Inv::LPONumberTitle)
      .Field("Store", &Inv::Store)
      .Field("PaymentMethod", &Inv::PaymentMethod)
      .Field("LPONumber", &Inv::LPONumber)
      .Field("SumOfTotal", &Inv::SumOfTotal)
      .Field("Shipping1", &Inv::Shipping1)
      .Field("Shipping2", &Inv::Shipping2)
      .Field("Shipping3", &Inv::Shipping3)
      .Field("Shipping4", &Inv::Shipping4)
      .Field("Shipping5", &Inv::Shipping5)
      .Field("Billing1", &Inv::Billing1)
      .Field("Billing2", &Inv::Billing2)
      .Field("Billing3", &Inv::Billing3)
      .Field("Billing4", &Inv::Billing4)
      .Field("Billing5", &Inv::Billing5)
      .Field("hasShipping", &Inv::hasShipping)
      .Field("hasBilling", &Inv::hasBilling)
      .Field("InvoiceDate", &Inv::InvoiceDate)
      .Field("currencySign", &Inv::currencySign)
      .Field("InvoiceNumber", &Inv::InvoiceNumber)
      .Field("EmployeeName", &Inv::EmployeeName)
      .Field("HasDiscount", &Inv::HasDiscount)
      .Field("DiscountPercent", &Inv::DiscountPercent)
      .Field("DiscountTitle", &Inv::DiscountTitle)
      .Field("InvoiceDiscount", &Inv::InvoiceDiscount)
      .Field("CustomerNote1", &Inv::CustomerNote1)
      .Field("CustomerNote2", &Inv::CustomerNote2)
      .Field("CustomerNote3", &Inv::CustomerNote3)
      .Get<Items>("OtherExpenses", [](Inv& i) { return i.OtherExpenses(); })
      .Put<Items>("OtherExpenses", [](Inv& i, Items c) { i.OtherExpenses(std::move(c)); })
      .Field("subTotal", &Inv::subTotal)
      .Field("Total", &Inv::Total)
      .Method("AddItem", &Inv::AddItem, {"item"})
      .Method("AddExpense", &Inv::AddExpense, {"item"})
      .Get<Items>("InvoiceItems", [](Inv& i) { return i.InvoiceItems(); })
      // Added after every earlier member, so hosts bound to the earlier interface see no change.
      .Field("QRCode", &Inv::QRCode)
      .Method("SetZatcaQR", &Inv::SetZatcaQR,
              {"SellerName", "VATNumber", "Timestamp", "TotalWithVAT", "VATTotal"});

  ClassBuilder<Item>(library, "ClassInvoiceItem")
      .Field("ItemName", &Item::ItemName)
      .Field("Quantity", &Item::Quantity)
      .Field("UnitPrice", &Item::UnitPrice)
      .Field("Total", &Item::Total)
      .Field("Description", &Item::Description)
      .Field("Unit", &Item::Unit)
      .Field("PKG", &Item::PKG);
  DeclareCollection<Item>(library);

  DeclareCollection<std::any>(library);  // the hosts' preview pages, held and never read
  using P = ClassInvoicePrinter;
  ClassBuilder<P>(library, "ClassInvoicePrinter")
      .Field("printItemsTable", &P::printItemsTable)
      .Field("printLPONumber", &P::printLPONumber)
      .Field("PreviewCollection", &P::PreviewCollection)
      .Method("PrintSalesReceipt", &P::PrintSalesReceipt, {})
      .Method("PrintInvoiceHeader", &P::PrintInvoiceHeader, {"obj", "invoice", "printHeader"})
      .Method("PrintInvoice", &P::PrintInvoice, {"obj", "invoice", "printHeader"})
      .Method("PrintItemsHeader", &P::PrintItemsHeader, {"obj"})
      .Method("printTable", &P::printTable, {"obj", "top", "hasBilling", "hasShipping", "hasLPO"})
      .Method("PrintIt", &P::PrintIt, {"invoice", "printHeader"})
      .Method("PrintItem", &P::PrintItem, {"obj", "It"})
      .Method("AdjustedText", &P::AdjustedText, {"obj", "text", "length"})
      .Returns(TypeKind::Variant);
}

}  // namespace quorvel

// The invoice document and its lines: defaults, lazily made collections, shared line objects.
#include <gtest/gtest.h>

#include "invoices/invoice.hpp"
#include "invoices/invoice_printer.hpp"

namespace quorvel {
namespace {

TEST(InvoiceModel, NewInvoiceHasTheCaptionDefaultsAndNothingElse) {
  ClassInvoice invoice;
  EXPECT_EQ(invoice.BillToTitle, "Bill to:");
  EXPECT_EQ(invoice.CustomerSign, "Customer's Sign");
  EXPECT_EQ(invoice.CashierSign, "Cashier's Sign");
  EXPECT_EQ(invoice.LPONumberTitle, " PO No.");  // the only caption with a leading blank
  EXPECT_EQ(invoice.DiscountTitle, "Discount:");
  EXPECT_FALSE(invoice.PrintFooter);
  EXPECT_FALSE(invoice.hasShipping);
  EXPECT_FALSE(invoice.hasBilling);
  EXPECT_FALSE(invoice.HasDiscount);
  for (const std::string* field :
       {&invoice.printType, &invoice.printTitle, &invoice.CustomerShortName, &invoice.Change,
        &invoice.Received, &invoice.NumberTitle, &invoice.TotalOtherExpenses, &invoice.Store,
        &invoice.PaymentMethod, &invoice.LPONumber, &invoice.SumOfTotal, &invoice.Shipping1,
        &invoice.Shipping5, &invoice.Billing1, &invoice.Billing5, &invoice.InvoiceDate,
        &invoice.currencySign, &invoice.InvoiceNumber, &invoice.EmployeeName,
        &invoice.DiscountPercent, &invoice.InvoiceDiscount, &invoice.CustomerNote1,
        &invoice.CustomerNote3, &invoice.subTotal, &invoice.Total})
    EXPECT_EQ(*field, "");
  const ClassInvoiceItem item;
  for (const std::string* field : {&item.ItemName, &item.Quantity, &item.UnitPrice, &item.Total,
                                   &item.Description, &item.Unit, &item.PKG})
    EXPECT_EQ(*field, "");
}

TEST(InvoiceModel, ItemListIsMadeOnFirstUseAndStaysTheSameObject) {
  ClassInvoice invoice;
  const auto items = invoice.InvoiceItems();
  ASSERT_NE(items, nullptr);
  EXPECT_EQ(items->Count(), 0);
  auto item = std::make_shared<ClassInvoiceItem>();
  invoice.AddItem(item);
  invoice.AddItem(item);  // the same object twice is listed twice
  EXPECT_EQ(invoice.InvoiceItems(), items);
  ASSERT_EQ(items->Count(), 2);
  EXPECT_EQ(items->Item(1), item);
  EXPECT_EQ(items->Item(2), item);
  item->ItemName = "changed later";  // held by reference: the host's change shows
  EXPECT_EQ(invoice.InvoiceItems()->Item(1)->ItemName, "changed later");
  EXPECT_EQ(invoice.OtherExpenses()->Count(), 0);  // goods and expenses are separate lists
}

TEST(InvoiceModel, ExpensesGoIntoTheCollectionTheHostAssigned) {
  ClassInvoice invoice;
  auto own = std::make_shared<Collection<ClassInvoiceItem>>();
  own->Add(std::make_shared<ClassInvoiceItem>());
  invoice.OtherExpenses(own);
  invoice.AddExpense(std::make_shared<ClassInvoiceItem>());
  EXPECT_EQ(invoice.OtherExpenses(), own);
  EXPECT_EQ(own->Count(), 2);
  EXPECT_EQ(invoice.InvoiceItems()->Count(), 0);
}

TEST(InvoicePrinterModel, SwitchesAreOnWhenCreated) {
  ClassInvoicePrinter printer;
  EXPECT_TRUE(printer.printItemsTable);
  EXPECT_TRUE(printer.printLPONumber);
  EXPECT_EQ(printer.PreviewCollection, nullptr);
}

}  // namespace
}  // namespace quorvel

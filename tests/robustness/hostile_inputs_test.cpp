// Hostile values handed to the library itself: invalid UTF-8 by name, margins of any text or
// size (a margin off any page is refused in nothing_lost_test), and a font that is not there.
// Each gives a clear error or a correct document.
#include <gtest/gtest.h>

#include "automation/type_library.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/runtime.hpp"
#include "invoices/invoice_printer.hpp"
#include "receipts/receipt_printer.hpp"
#include "robustness/robustness_helpers.hpp"
#include "support/documents_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {
namespace {

TEST(HostileInputs, InvalidUtf8ThroughPutPropertyIsRefusedAndLeavesTheValue) {
  const ObjectRef invoice = CreateObject("Quorvel.ClassInvoice");
  PutProperty(invoice, "InvoiceNumber", Variant("INV-1"));
  for (const std::string bad : {"\xff", "ab\xc3", "\xed\xa0\x80", "\xc0\xaf", "\xf4\x90\x80\x80"}) {
    std::string context;
    EXPECT_EQ(ErrorNumberOf([&] { PutProperty(invoice, "InvoiceNumber", Variant(bad)); }, &context),
              err::kInvalidArgument);
    EXPECT_NE(context.find("InvoiceNumber"), std::string::npos) << context;
    EXPECT_NE(context.find("UTF-8"), std::string::npos) << context;
    EXPECT_EQ(GetProperty(invoice, "InvoiceNumber").AsString(), "INV-1");
  }
  // Valid text of any script goes through as it stands.
  PutProperty(invoice, "InvoiceNumber", Variant("N\xc2\xba 7 \xe2\x82\xac"));
  EXPECT_EQ(GetProperty(invoice, "InvoiceNumber").AsString(), "N\xc2\xba 7 \xe2\x82\xac");
}

// The slip's amounts end at 4176 - num(POS_Right_Margin), whatever text the margins hold;
// one that puts them off any page is refused (Refusals in nothing_lost_test).
TEST(HostileInputs, ReceiptMarginsOfAnyTextPrintTheWholeSlip) {
  ResetProfileWithCompany();
  ClassInvoice sale = SampleInvoice();
  sale.Total = "77.77";
  sale.CustomerNote2 = "Come Again";  // the last line of the slip
  const std::pair<std::string, std::string> margins[] = {
      {"abc", "xyz"}, {"-5000", "-5000"}, {"", ""}, {"99999", "-99999"}, {" 80", "300abc"}};
  for (const auto& [left, right] : margins) {
    ReceiptPrinter printer;
    printer.POS_Left_Margin = left;
    printer.POS_Right_Margin = right;
    PreviewSurface slip(4535, 16838);
    printer.PrintReceipt(slip, sale);
    PreviewSurface at8;
    at8.Font().Size(8);
    const TextOp total = FindText(slip.Ops(), "77.77");
    EXPECT_DOUBLE_EQ(total.x, (4176 - Num(right)) - at8.TextWidth("77.77")) << left << " / " << right;
    EXPECT_TRUE(HasText(slip.Ops(), "Come Again")) << "the slip ended early";
  }
}

// SetTopMargin moves the body and the page-break line together, so any margin gives the same
// pages; a margin past the page (or far above it) just puts the text off the paper.
TEST(HostileInputs, NegativeHugeAndPastThePageTopMarginsKeepThePagination) {
  const std::string dir = TempDir("rob-topmargin");
  ClassInvoice invoice = SampleInvoice();
  for (int i = 0; i < 40; ++i) invoice.AddItem(MakeItem("I" + std::to_string(i), "a line of goods"));
  int pages_at_zero = 0;
  for (const int32_t margin : {0, -5000, -2000000000, 20000, 2000000000}) {
    ResetProfileWithCompany();
    ClassCompanyInfo().SetTopMargin(margin);
    PreviewSurface preview;
    ClassInvoicePrinter().PrintInvoice(preview, invoice, false);
    // The title follows the twelve blank lines that stand for a pre-printed letterhead.
    EXPECT_DOUBLE_EQ(FindText(preview.Ops(), "Invoice").y, margin + 12 * LineAt(10)) << margin;

    SystemPrinter().SetOutput(PrinterOutput::ForPath(dir + "/invoice.pdf"));
    ClassInvoicePrinter().PrintIt(invoice, false);
    const int pages = SystemPrinter().LastPageCount();
    if (margin == 0) pages_at_zero = pages;
    EXPECT_EQ(pages, pages_at_zero) << margin;
    EXPECT_EQ(PdfPages(dir + "/invoice.pdf"), pages);
  }
  EXPECT_GE(pages_at_zero, 2);
}

TEST(HostileInputs, AFontThatIsNotInstalledRaisesAnErrorNamingIt) {
  PreviewSurface surface;
  std::string context;
  EXPECT_EQ(ErrorNumberOf([&] { surface.Font().Name("No Such Font"); }, &context), err::kInvalidArgument);
  EXPECT_NE(context.find("\"No Such Font\""), std::string::npos) << context;
  EXPECT_NE(context.find("is not installed"), std::string::npos) << context;
  // The surface keeps the font it had and goes on printing with it.
  EXPECT_EQ(surface.Font().Name(), "Arial");
  surface.Font().Bold(true);
  surface.Print("still printing");
  const TextOp op = FindText(surface.Ops(), "still printing");
  EXPECT_EQ(op.font, "Arial");
  EXPECT_TRUE(op.bold);
}

}  // namespace
}  // namespace quorvel::testing

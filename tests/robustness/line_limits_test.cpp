// Every collection of lines: 32767 lines print, 32768 are refused with the overflow error naming
// the collection before anything is drawn.
#include <gtest/gtest.h>

#include <functional>

#include "cheque_lists/check_printer.hpp"
#include "delivery_notes/delivery_note_printer.hpp"
#include "foundation/preview_surface.hpp"
#include "invoices/invoice_printer.hpp"
#include "receipts/receipt_printer.hpp"
#include "statements/statement_printer.hpp"
#include "support/documents_helpers.hpp"
#include "support/ops_helpers.hpp"
#include "vouchers/voucher_printer.hpp"

namespace quorvel {
namespace {

using testing::AllTexts;
using testing::HasText;

// One collection of one document type: fills it with `lines` copies of one line (the same host
// object, as a host may add it again) and prints the document on `surface`.
struct LimitCase {
  const char* collection;
  std::function<void(Surface& surface, int lines)> print;
  // The text every printed line draws once, and a text only the document's end draws.
  const char* line_text;
  const char* end_text;
  // The serial number the last line prints, for a collection that numbers its lines: 16-bit
  // like the count, so the last one must not wrap to -32768.
  const char* last_serial = nullptr;
};

template <class Line>
void AddCopies(int lines, const std::shared_ptr<Line>& line, const std::function<void(std::shared_ptr<Line>)>& add) {
  for (int i = 0; i < lines; ++i) add(line);
}

// An invoice whose goods or expenses (`add`) hold the lines; each prints its item name once.
LimitCase InvoiceCase(const char* collection, void (ClassInvoice::*add)(std::shared_ptr<ClassInvoiceItem>),
                      std::shared_ptr<ClassInvoiceItem> goods) {
  return {collection,
          [add, goods](Surface& surface, int lines) {
            ClassInvoice invoice = testing::SampleInvoice();
            for (int i = 0; i < lines; ++i) (invoice.*add)(goods);
            ClassInvoicePrinter().PrintInvoice(surface, invoice, false);
          },
          "LIM-1", " Total:"};
}

std::vector<LimitCase> Cases() {
  const auto goods = testing::MakeItem("LIM-1", "", "7.77");
  return {
      InvoiceCase("InvoiceItems", &ClassInvoice::AddItem, goods),
      InvoiceCase("OtherExpenses", &ClassInvoice::AddExpense, goods),
      {"items",
       [goods](Surface& surface, int lines) {
         ClassDeliveryNote note;
         note.printTitle = "Delivery Note";
         AddCopies<ClassInvoiceItem>(lines, goods, [&](auto line) { note.AddItem(line); });
         ClassDeliveryNotePrinter().PrintDeliveryNote(surface, note, false);
       },
       "LIM-1", "Notes:", "32767"},
      {"InvoiceItems",
       [goods](Surface& surface, int lines) {
         ClassInvoice receipt = testing::SampleInvoice();
         receipt.Change = "0.25";
         AddCopies<ClassInvoiceItem>(lines, goods, [&](auto line) { receipt.AddItem(line); });
         ReceiptPrinter().PrintReceipt(surface, receipt);
       },
       "7.77", "0.25"},
      {"StatementItems",
       [](Surface& surface, int lines) {
         auto statement = testing::SampleStatement(0, 0);
         AddCopies<ClassStatementItem>(lines, testing::LedgerLine(1), [&](auto line) { statement->AddItem(line); });
         ClassStatementPrinter().PrintStatement(surface, *statement, false);
       },
       " Line 1", "Total:"},
      {"PDCChecks",
       [](Surface& surface, int lines) {
         auto statement = testing::SampleStatement(0, 0);
         AddCopies<ClassCheck>(lines, testing::Cheque(1), [&](auto line) { statement->AddChecks(line); });
         int16_t page = 1;
         ClassCheckPrinter().PrintChecks(surface, *statement, false, true, page);
       },
       "CHQ-1", "9,999.00 "},
  };
}

class LineLimits : public ::testing::Test {
 protected:
  void SetUp() override { testing::ResetProfile(); }
};

TEST_F(LineLimits, EveryCollectionPrintsItsLast16BitLineAndRefusesOneMoreBeforeDrawing) {
  for (const LimitCase& c : Cases()) {
    SCOPED_TRACE(c.collection);
    PreviewSurface full;
    ASSERT_EQ(testing::ErrorNumberOf([&] { c.print(full, 32767); }), 0);
    EXPECT_EQ(AllTexts(full.Ops(), c.line_text).size(), 32767u);
    EXPECT_TRUE(HasText(full.Ops(), c.end_text));
    if (c.last_serial) {
      EXPECT_TRUE(HasText(full.Ops(), c.last_serial));
      EXPECT_FALSE(HasText(full.Ops(), "-32768"));
    }

    PreviewSurface over;
    std::string context;
    EXPECT_EQ(testing::ErrorNumberOf([&] { c.print(over, 32768); }, &context), err::kOverflow);
    EXPECT_NE(context.find(c.collection), std::string::npos) << context;
    EXPECT_TRUE(over.Ops().empty());
  }
}

TEST_F(LineLimits, TheVoucherRefusesAPaymentListPastSixteenBitsBeforeDrawing) {
  // The voucher prints its payments on its one page; its count follows the same rule.
  ClassVoucher voucher;
  testing::FillChequeVoucher(voucher);
  const auto payment = voucher.Payments()->Item(1);
  while (voucher.Payments()->Count() < 32767) voucher.AddItem(payment);
  ClassVoucherPrinter printer;
  printer.PrintDetails = false;
  PreviewSurface counted;
  EXPECT_EQ(testing::ErrorNumberOf([&] { printer.PrintReceiptVoucher(counted, voucher, false, true); }), 0);
  voucher.AddItem(payment);
  PreviewSurface over;
  std::string context;
  EXPECT_EQ(testing::ErrorNumberOf([&] { printer.PrintReceiptVoucher(over, voucher, false, true); }, &context),
            err::kOverflow);
  EXPECT_NE(context.find("Payments"), std::string::npos) << context;
  EXPECT_TRUE(over.Ops().empty());
}

}  // namespace
}  // namespace quorvel

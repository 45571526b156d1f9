// The invoice's body: goods and expense lines through the page flow, one item line, and the last
// page's totals, notes, amount in words and signatures.
#include "invoices/invoice_printer.hpp"

#include <vector>

#include "foundation/company_info.hpp"
#include "foundation/font_state.hpp"
#include "foundation/page_footer.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/runtime.hpp"
#include "foundation/qr_code.hpp"
#include "foundation/text_fitting.hpp"
#include "invoices/invoice_qr.hpp"

namespace quorvel {

namespace {
constexpr double kSignatureOverhang = 500;  // a signing line reaches this far past each end of its caption
constexpr double kSignatureGap = 60;        // between a signing line and its caption

// "Amount in Dollars:" from the company's currency name, or its sign when no name is set.
std::string AmountInWordsCaption() {
  const CompanyProfile& p = ModuleCompanyInfo::Profile();
  const std::string& currency = p.DefaultCurrencyName.empty() ? p.DefaultCurrencySign : p.DefaultCurrencyName;
  return currency.empty() ? "Amount in words:" : "Amount in " + currency + "s:";
}

// A line to sign on, with its caption centred under it, starting at x.
void SignatureLine(Surface& surface, double x, double y, const std::string& caption) {
  const double length = surface.TextWidth(caption) + 2 * kSignatureOverhang;
  DrawRule(surface, x, y, x + length, y);
  surface.CurrentY(y + kSignatureGap);
  surface.CurrentX(x + kSignatureOverhang);
  surface.Print(caption);
}
}  // namespace

void ClassInvoicePrinter::PrintIt(ClassInvoice& invoice, bool printHeader) {
  PrintOnSystemPrinter([&](Surface& printer) { PrintInvoice(printer, invoice, printHeader); });
}

void ClassInvoicePrinter::PrintInvoice(Surface& surface, ClassInvoice& invoice, bool printHeader) {
  const CollectionRef<ClassInvoiceItem> items = invoice.InvoiceItems();
  const CollectionRef<ClassInvoiceItem> expenses = invoice.OtherExpenses();
  // Counted first, so a document too long to index fails before anything is drawn.
  const int16_t item_count = Count16(*items, "InvoiceItems");
  const int16_t expense_count = Count16(*expenses, "OtherExpenses");
  // A code that cannot be encoded fails the document before anything is drawn, not half of it.
  if (!invoice.QRCode.empty()) QrSideModules(invoice.QRCode);
  // The code is placed last, where nothing was printed: the surface notes what this document inks.
  surface.TrackInk(!invoice.QRCode.empty());
  surface.Font().Size(10);
  surface.Font().Name("Arial");

  HeaderMarks marks;
  PageFlow flow;
  flow.head = [&] { marks = PrintHead(surface, invoice, printHeader); };
  flow.captions = [&] {
    if (item_count >= 1) PrintItemsHeader(surface);
  };
  flow.sections.push_back(LinesOf(surface, *items, item_count));
  LineSection expense_lines = LinesOf(surface, *expenses, expense_count);
  // A full page starts no expenses heading; but once this printer object has printed the
  // heading (perhaps for an earlier invoice) expenses are walked on a full page too, and one
  // that fits there is printed before goods still waiting for the next page.
  expense_lines.enter = [&](bool page_full) {
    if (expense_count < 1 || (page_full && !expense_heading_printed_)) return false;
    if (!expense_heading_printed_) PrintExpenseHeading(surface);
    return true;
  };
  flow.sections.push_back(std::move(expense_lines));
  if (printItemsTable)
    flow.frame = [&](double top) { DrawFrame(surface, top, marks, invoice.hasBilling, invoice.hasShipping, printLPONumber); };
  RunPageFlow(surface, flow);

  PrintTotals(surface, invoice);
  PrintNotesAndWords(surface, invoice);
  if (invoice.PrintFooter) PrintSignatures(surface, invoice);
  // Last, when every text of the page is down: the code goes only where nothing was printed.
  if (!invoice.QRCode.empty())
    PrintInvoiceQr(surface, invoice.QRCode, surface.Width() - Int(surface.Width() / 3) - 300, PageLimit(surface));
  IgnoreErrors([&] { surface.EndDoc(); });
}

LineSection ClassInvoicePrinter::LinesOf(Surface& surface, const Collection<ClassInvoiceItem>& lines, int16_t count) {
  LineSection section;
  section.count = count;
  section.estimated_height = [&surface, &lines](int32_t index) {
    const std::shared_ptr<ClassInvoiceItem>& item = lines.Item(index);
    if (!item) Raise(err::kObjectNotSet, "invoice line " + std::to_string(index));
    // A rough height: one line per 4300 units of description, whatever the wrap makes of it.
    return surface.TextHeight("W") * (surface.TextWidth(item->Description) / 4300);
  };
  section.print = [this, &surface, &lines](int32_t index) { PrintItem(surface, *lines.Item(index)); };
  return section;
}

void ClassInvoicePrinter::PrintExpenseHeading(Surface& surface) {
  surface.Print(" ");
  ClassInvoiceItem heading;
  heading.Description = kOtherExpensesHeading;
  PrintItem(surface, heading);
  expense_heading_printed_ = true;
}

void ClassInvoicePrinter::PrintItem(Surface& surface, ClassInvoiceItem& item) {
  namespace col = invoice_columns;
  const double y = surface.CurrentY();
  // Each field is fitted on a copy: printing never changes the host's item.
  auto fitted = [&](const std::string& value, double width) {
    std::string text = value;
    int16_t length = static_cast<int16_t>(width);
    return AdjustedText(surface, text, length);
  };
  auto print_at = [&](double x, const std::string& text) {
    surface.CurrentY(y);
    surface.CurrentX(x);
    surface.Print(text);
  };
  print_at(col::kItem, fitted(item.ItemName, col::kItemWidth));
  const std::string quantity = fitted(item.Quantity, col::kQuantityWidth);
  print_at(col::kPrice - surface.TextWidth(quantity), quantity);
  const std::string price = fitted(item.UnitPrice, col::kPriceWidth);
  print_at(col::kAmount - surface.TextWidth(price), price);
  const std::string total = fitted(item.Total, col::kAmountWidth);
  print_at(surface.Width() - 1000 - surface.TextWidth(total), total);

  ScopedFont font(surface);
  if (item.Description == kOtherExpensesHeading) surface.Font().Bold(true);
  std::string description = item.Description;
  int16_t width = static_cast<int16_t>(col::kDescriptionWidth);
  std::vector<std::string> lines;
  WrapText(surface, description, width, lines);
  surface.CurrentY(y);
  for (const std::string& line : lines) {
    surface.CurrentX(col::kDescription);
    surface.Print(line);
  }
}

void ClassInvoicePrinter::PrintTotals(Surface& surface, ClassInvoice& invoice) {
  const double label_x = surface.Width() - Int(surface.Width() / 3);
  const double top = PageLimit(surface);
  const bool has_expenses = invoice.OtherExpenses()->Count() >= 1;
  surface.CurrentX(label_x);
  surface.CurrentY(top);
  auto label = [&](const std::string& text) {
    surface.CurrentX(label_x);
    surface.Print(text);
  };
  label(" Subtotal:");
  if (invoice.HasDiscount) label(invoice.DiscountTitle);
  if (has_expenses) label(" Other Expenses:");
  surface.Font().Bold(true);
  label(" Total:");
  surface.Font().Bold(false);

  const double right = surface.Width() - 1000;
  surface.CurrentY(top);
  PrintRightAligned(surface, right, invoice.subTotal);
  if (invoice.HasDiscount) PrintRightAligned(surface, right, invoice.InvoiceDiscount);
  if (has_expenses) PrintRightAligned(surface, right, invoice.TotalOtherExpenses);
  surface.Font().Bold(true);
  PrintRightAligned(surface, right, invoice.Total);
  surface.Font().Bold(false);
}

void ClassInvoicePrinter::PrintNotesAndWords(Surface& surface, ClassInvoice& invoice) {
  surface.Print("");
  surface.Print("");
  surface.CurrentX(1000);
  surface.Print("Notes:");
  for (const std::string* note : {&invoice.CustomerNote1, &invoice.CustomerNote2, &invoice.CustomerNote3}) {
    surface.CurrentX(1000);
    surface.Print(*note);
  }
  if (invoice.SumOfTotal.empty()) return;
  surface.Print("");
  surface.CurrentX(1000);
  surface.Print(AmountInWordsCaption());
  std::string words = invoice.SumOfTotal;
  int16_t width = ToInt16(surface.Width() - 2000, "amount-in-words width");
  std::vector<std::string> lines;
  WrapText(surface, words, width, lines);
  for (const std::string& line : lines) {
    surface.CurrentX(1000);
    surface.Print(line);
  }
}

void ClassInvoicePrinter::PrintSignatures(Surface& surface, ClassInvoice& invoice) {
  // Three lines of room to sign in, then both lines on one row: the customer's at the left
  // margin, the cashier's ending at the right margin.
  for (int i = 0; i < 3; ++i) surface.Print("");
  const double y = surface.CurrentY();
  SignatureLine(surface, 1000, y, invoice.CustomerSign);
  const double cashier_length = surface.TextWidth(invoice.CashierSign) + 2 * kSignatureOverhang;
  SignatureLine(surface, surface.Width() - 1000 - cashier_length, y, invoice.CashierSign);
}

}  // namespace quorvel

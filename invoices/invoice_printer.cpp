// The invoice's body: the page loop over goods and expense lines, one item line, and the last
// page's totals, notes, amount in words and signatures.
#include "invoices/invoice_printer.hpp"

#include <vector>

#include "foundation/company_info.hpp"
#include "foundation/page_footer.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/runtime.hpp"
#include "foundation/qr_code.hpp"
#include "foundation/text_fitting.hpp"
#include "invoices/invoice_qr.hpp"

namespace quorvel {

namespace {
constexpr double kAfterItem = 100;  // extra room under every item line
constexpr double kSignatureOverhang = 500;  // a signing line reaches this far past each end of its caption
constexpr double kSignatureGap = 60;        // between a signing line and its caption

// "Amount in Dollars:" from the company's currency name, or its sign when no name is set.
std::string AmountInWordsCaption() {
  const CompanyProfile& p = ModuleCompanyInfo::Profile();
  const std::string& currency = p.DefaultCurrencyName.empty() ? p.DefaultCurrencySign : p.DefaultCurrencyName;
  return currency.empty() ? "Amount in words:" : "Amount in " + currency + "s:";
}

// A line to sign on, with its caption centred under it, starting at x.
void SignatureLine(Surface& obj, double x, double y, const std::string& caption) {
  const double length = obj.TextWidth(caption) + 2 * kSignatureOverhang;
  obj.Line(4, x, y, x + length, y, 0);
  obj.CurrentY(y + kSignatureGap);
  obj.CurrentX(x + kSignatureOverhang);
  obj.Print(caption);
}
}  // namespace

void ClassInvoicePrinter::PrintIt(ClassInvoice& invoice, bool printHeader) {
  PrintOnSystemPrinter([&](Surface& printer) { PrintInvoice(printer, invoice, printHeader); });
}

void ClassInvoicePrinter::PrintInvoice(Surface& obj, ClassInvoice& invoice, bool printHeader) {
  const CollectionRef<ClassInvoiceItem> items = invoice.InvoiceItems();
  const CollectionRef<ClassInvoiceItem> expenses = invoice.OtherExpenses();
  // Counted first, so a document too long to index fails before anything is drawn.
  const int16_t item_count = Count16(*items, "InvoiceItems");
  const int16_t expense_count = Count16(*expenses, "OtherExpenses");
  // A code that cannot be encoded fails the document before anything is drawn, not half of it.
  if (!invoice.QRCode.empty()) QrSideModules(invoice.QRCode);
  obj.Font().Size(10);
  obj.Font().Name("Arial");

  bool page_full = true;
  int32_t next_item = 1, next_expense = 1;
  int16_t page = 1;
  while (page_full) {
    page_full = false;
    PrintInvoiceHeader(obj, invoice, printHeader);
    const double table_top = obj.CurrentY();
    int lines_on_page = 0;
    if (item_count >= 1) PrintItemsHeader(obj);
    page_full = !PrintLines(obj, *items, item_count, next_item, lines_on_page);
    // A full page starts no expenses heading; but once this printer object has printed the
    // heading (perhaps for an earlier invoice) expenses are walked on a full page too, and one
    // that fits there is printed before goods still waiting for the next page.
    if (expense_count >= 1 && !(page_full && !expense_heading_printed_)) {
      if (!expense_heading_printed_) PrintExpenseHeading(obj);
      if (!PrintLines(obj, *expenses, expense_count, next_expense, lines_on_page)) page_full = true;
    }
    if (printItemsTable) printTable(obj, table_top, invoice.hasBilling, invoice.hasShipping, printLPONumber);
    if (page_full || page >= 2) PrintPageNumber(obj, 4, "Page " + std::to_string(page));
    if (page_full) {
      page = AddInt16(page, 1, "page number");
      if (IsSystemPrinter(obj)) obj.NewPage();  // a preview draws the next page over this one
    }
  }
  PrintTotals(obj, invoice);
  PrintNotesAndWords(obj, invoice);
  if (invoice.PrintFooter) PrintSignatures(obj, invoice);
  // Last, when every text of the page is down: the code goes only where nothing was printed.
  if (!invoice.QRCode.empty())
    PrintInvoiceQr(obj, invoice.QRCode, obj.Width() - Int(obj.Width() / 3) - 300, PageLimit(obj));
  IgnoreErrors([&] { obj.EndDoc(); });
}

bool ClassInvoicePrinter::PrintLines(Surface& obj, const Collection<ClassInvoiceItem>& lines,
                                     int16_t count, int32_t& next, int& lines_on_page) {
  while (next <= count) {
    const std::shared_ptr<ClassInvoiceItem>& item = lines.Item(next);
    if (!item) Raise(err::kObjectNotSet, "invoice line " + std::to_string(next));
    // A rough height: one line per 4300 units of description, whatever the wrap makes of it.
    const double height = obj.TextHeight("W") * (obj.TextWidth(item->Description) / 4300);
    // A line that does not fit even on a page that has printed none yet is printed there,
    // running past the foot: another empty page would not make it fit, and the loop must end.
    if (PageLimit(obj) < obj.CurrentY() + height && lines_on_page > 0) return false;
    PrintItem(obj, *item);
    obj.CurrentY(obj.CurrentY() + kAfterItem);
    ++next;
    ++lines_on_page;
  }
  return true;
}

void ClassInvoicePrinter::PrintExpenseHeading(Surface& obj) {
  obj.Print(" ");
  ClassInvoiceItem heading;
  heading.Description = kOtherExpensesHeading;
  PrintItem(obj, heading);
  expense_heading_printed_ = true;
}

void ClassInvoicePrinter::PrintItem(Surface& obj, ClassInvoiceItem& It) {
  namespace col = invoice_columns;
  const double y = obj.CurrentY();
  // Each field is fitted on a copy: printing never changes the host's item.
  auto fitted = [&](const std::string& value, double width) {
    std::string text = value;
    int16_t length = static_cast<int16_t>(width);
    return AdjustedText(obj, text, length);
  };
  auto print_at = [&](double x, const std::string& text) {
    obj.CurrentY(y);
    obj.CurrentX(x);
    obj.Print(text);
  };
  print_at(col::kItem, fitted(It.ItemName, col::kItemWidth));
  const std::string quantity = fitted(It.Quantity, col::kQuantityWidth);
  print_at(col::kPrice - obj.TextWidth(quantity), quantity);
  const std::string price = fitted(It.UnitPrice, col::kPriceWidth);
  print_at(col::kAmount - obj.TextWidth(price), price);
  const std::string total = fitted(It.Total, col::kAmountWidth);
  print_at(obj.Width() - 1000 - obj.TextWidth(total), total);

  const bool heading = It.Description == kOtherExpensesHeading;
  if (heading) obj.Font().Bold(true);
  std::string description = It.Description;
  int16_t width = static_cast<int16_t>(col::kDescriptionWidth);
  std::vector<std::string> lines;
  WrapText(obj, description, width, lines);
  obj.CurrentY(y);
  for (const std::string& line : lines) {
    obj.CurrentX(col::kDescription);
    obj.Print(line);
  }
  if (heading) obj.Font().Bold(false);
}

void ClassInvoicePrinter::PrintTotals(Surface& obj, ClassInvoice& invoice) {
  const double label_x = obj.Width() - Int(obj.Width() / 3);
  const double top = PageLimit(obj);
  const bool has_expenses = invoice.OtherExpenses()->Count() >= 1;
  obj.CurrentX(label_x);
  obj.CurrentY(top);
  auto label = [&](const std::string& text) {
    obj.CurrentX(label_x);
    obj.Print(text);
  };
  label(" Subtotal:");
  if (invoice.HasDiscount) label(invoice.DiscountTitle);
  if (has_expenses) label(" Other Expenses:");
  obj.Font().Bold(true);
  label(" Total:");
  obj.Font().Bold(false);

  const double right = obj.Width() - 1000;
  obj.CurrentY(top);
  PrintRightAligned(obj, right, invoice.subTotal);
  if (invoice.HasDiscount) PrintRightAligned(obj, right, invoice.InvoiceDiscount);
  if (has_expenses) PrintRightAligned(obj, right, invoice.TotalOtherExpenses);
  obj.Font().Bold(true);
  PrintRightAligned(obj, right, invoice.Total);
  obj.Font().Bold(false);
}

void ClassInvoicePrinter::PrintNotesAndWords(Surface& obj, ClassInvoice& invoice) {
  obj.Print("");
  obj.Print("");
  obj.CurrentX(1000);
  obj.Print("Notes:");
  for (const std::string* note : {&invoice.CustomerNote1, &invoice.CustomerNote2, &invoice.CustomerNote3}) {
    obj.CurrentX(1000);
    obj.Print(*note);
  }
  if (invoice.SumOfTotal.empty()) return;
  obj.Print("");
  obj.CurrentX(1000);
  obj.Print(AmountInWordsCaption());
  std::string words = invoice.SumOfTotal;
  int16_t width = ToInt16(obj.Width() - 2000, "amount-in-words width");
  std::vector<std::string> lines;
  WrapText(obj, words, width, lines);
  for (const std::string& line : lines) {
    obj.CurrentX(1000);
    obj.Print(line);
  }
}

void ClassInvoicePrinter::PrintSignatures(Surface& obj, ClassInvoice& invoice) {
  // Three lines of room to sign in, then both lines on one row: the customer's at the left
  // margin, the cashier's ending at the right margin.
  for (int i = 0; i < 3; ++i) obj.Print("");
  const double y = obj.CurrentY();
  SignatureLine(obj, 1000, y, invoice.CustomerSign);
  const double cashier_length = obj.TextWidth(invoice.CashierSign) + 2 * kSignatureOverhang;
  SignatureLine(obj, obj.Width() - 1000 - cashier_length, y, invoice.CashierSign);
}

}  // namespace quorvel

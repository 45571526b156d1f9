// Receipt slip layout: head, item lines, totals and the tear-off feed, each step on its own.
#include "receipts/receipt_printer.hpp"

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/qr_code.hpp"
#include "foundation/text_fitting.hpp"
#include "invoices/invoice_qr.hpp"
#include "receipts/margin_value.hpp"
#include "receipts/receipt_clock.hpp"

namespace quorvel {

namespace {
constexpr double kSlipWidth = 4176;
constexpr double kSlipCentre = kSlipWidth / 2;
// The first character printed: code 133 of the Windows-1252 code page, the horizontal ellipsis.
const std::string kCode133 = "\xE2\x80\xA6";

// 43 dashes with single blanks between them: the slip's rules are text, not lines.
std::string Rule() {
  std::string rule = "-";
  for (int i = 1; i < 43; ++i) rule += " -";
  return rule;
}

// One slip being printed. Every statement runs on its own under IgnoreErrors, so a failing
// surface member, an unconvertible margin or an overflow skips only that statement.
class Slip {
 public:
  Slip(Surface& surface, const ReceiptPrinter& printer)
      : surface_(surface),
        left_text_(printer.POS_Left_Margin),
        left_(Num(printer.POS_Left_Margin)),
        right_(kSlipWidth - Num(printer.POS_Right_Margin)) {}

  void Head(ClassInvoice& receipt);
  void Items(ClassInvoice& receipt);
  void Totals(ClassInvoice& receipt);

 private:
  template <class Statement>
  void Do(Statement&& statement) { IgnoreErrors(statement); }
  void PrintLine(const std::string& text) { Do([&] { surface_.Print(text); }); }
  // The margin string itself goes to the surface, which converts it or fails.
  void ToLeftMargin() { Do([&] { surface_.CurrentX(SurfaceNumber(left_text_)); }); }
  void AtLeftMarginIfAny(const std::string& text) {
    if (text.empty()) return;
    ToLeftMargin();
    PrintLine(text);
  }
  void RightAligned(const std::string& text) {
    Do([&] { surface_.CurrentX(right_ - surface_.TextWidth(text)); });
    PrintLine(text);
  }
  // Prints and goes back up, so that the next text lands on the same line.
  template <class Statement>
  void KeepingLine(Statement&& print) {
    double y = 0;
    Do([&] { y = surface_.CurrentY(); });
    Do(print);
    Do([&] { surface_.CurrentY(y); });
  }
  void LabelAndAmount(const std::string& label, const std::string& amount) {
    KeepingLine([&] { surface_.Print(label); });
    RightAligned(amount);
  }
  void PrintDescription(const ClassInvoiceItem& item) {
    Do([&] {
      std::string description = item.Description;  // the document itself is never changed
      int16_t width = ToInt16(right_ - left_, "receipt description width");
      surface_.Print(AdjustedText(surface_, description, width));
    });
  }
  void PrintQuantityLine(const ClassInvoiceItem& item);

  Surface& surface_;
  const std::string left_text_;
  const double left_;
  const double right_;  // where every amount ends
};

void Slip::Head(ClassInvoice& receipt) {
  const CompanyProfile& company = ModuleCompanyInfo::Profile();
  PrintLine(kCode133);  // starts the page; the next step moves back up over it
  Do([&] { surface_.CurrentY(10); });
  Do([&] { surface_.Font().Bold(true); });
  Do([&] { surface_.Font().Size(10); });
  const std::string& name = company.CompanyName;
  if (!name.empty()) {
    Do([&] { if (surface_.TextWidth(name) > kSlipWidth) surface_.Font().Size(8.25); });
    Do([&] { surface_.CurrentX(kSlipCentre - surface_.TextWidth(name) / 2); });
    Do([&] { if (surface_.TextWidth(name) > kSlipWidth) surface_.CurrentX(SurfaceNumber(left_text_)); });
    PrintLine(name);
  }
  Do([&] { surface_.Font().Bold(false); });
  Do([&] { surface_.Font().Size(8); });
  PrintLine("");
  AtLeftMarginIfAny(receipt.Store);
  AtLeftMarginIfAny(company.Address1);
  AtLeftMarginIfAny(company.Address2);
  PrintLine(Rule());
  ToLeftMargin();
  PrintLine("Receipt# " + receipt.InvoiceNumber);
  AtLeftMarginIfAny(receipt.EmployeeName);
  ToLeftMargin();
  PrintLine(ReceiptDateTimeText(ReceiptNow()));
  Do([&] { surface_.Font().Bold(true); });
  RightAligned(company.DefaultCurrencySign);
  Do([&] { surface_.Font().Bold(false); });
  PrintLine(Rule());
}

// Quantity, "@" and unit price on the line under the description. The unit price's x adds to
// the pen's x after "@" ended its line, which is the left edge: so the price ends 20.7 widths
// of "A" from the left edge.
void Slip::PrintQuantityLine(const ClassInvoiceItem& item) {
  KeepingLine([&] {
    Do([&] { surface_.CurrentX(left_ * 1.5); });
    Do([&] { surface_.Print(item.Quantity); });
  });
  KeepingLine([&] {
    Do([&] { surface_.CurrentX(left_ + 9 * surface_.TextWidth("A")); });
    Do([&] { surface_.Print("@"); });
  });
  KeepingLine([&] {
    Do([&] { surface_.CurrentX(surface_.CurrentX() + 20.7 * surface_.TextWidth("A") - surface_.TextWidth(item.UnitPrice)); });
    Do([&] { surface_.Print(item.UnitPrice); });
  });
  RightAligned(item.Total);
}

void Slip::Items(ClassInvoice& receipt) {
  for (const auto& line : *receipt.InvoiceItems()) {
    if (!line) continue;  // a missing line has nothing to print
    const ClassInvoiceItem& item = *line;
    ToLeftMargin();
    if (Int(Num(item.Quantity)) != 1) {
      PrintDescription(item);
      PrintQuantityLine(item);
    } else {
      KeepingLine([&] { PrintDescription(item); });
      RightAligned(item.Total);
    }
  }
}

void Slip::Totals(ClassInvoice& receipt) {
  PrintLine(Rule());
  LabelAndAmount("         Subtotal ", receipt.subTotal);
  if (receipt.HasDiscount) {
    const std::string label = Num(receipt.DiscountPercent) > 0
                                  ? "         Discount (" + receipt.DiscountPercent + "%)"
                                  : "         Discount";
    LabelAndAmount(label, receipt.InvoiceDiscount);
  }
  PrintLine(Rule());
  LabelAndAmount("         Total      ", receipt.Total);
  LabelAndAmount("         " + receipt.PaymentMethod, receipt.Received);
  LabelAndAmount("         Change", receipt.Change);
  PrintLine("");
  PrintLine("");
  // The messages start at the left edge, where the previous line left the pen.
  if (!receipt.CustomerNote1.empty()) PrintLine(receipt.CustomerNote1);
  if (!receipt.CustomerNote2.empty()) PrintLine(receipt.CustomerNote2);
  if (!receipt.QRCode.empty()) Do([&] { PrintReceiptQr(surface_, receipt.QRCode, kSlipWidth); });
  PrintLine("\r\n");  // feed before the tear-off
  PrintLine("");
  PrintLine("");
  Do([&] { surface_.EndDoc(); });
}

void CheckMessageLength(const std::string& message) {
  size_t characters = 0;
  for (char c : message)
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++characters;  // UTF-8 lead bytes
  // The limit is 40 although the message says 30; hosts may match on either, so both stay.
  if (characters > 40) throw AutomationError(err::kComponent, "Message len must be less than 30");
}
}  // namespace

void ReceiptPrinter::PrintIt(ClassInvoice& receipt) {
  PrinterSurface& printer = SystemPrinter();
  const Paper previous = printer.GetPaper();
  printer.SetPaper(Paper::Roll80());
  // The slip's paper is put back whatever happened; a document still open keeps its paper.
  struct RestorePaper {
    PrinterSurface& printer;
    const Paper& paper;
    ~RestorePaper() {
      if (!printer.InDocument()) printer.SetPaper(paper);
    }
  } restore{printer, previous};
  PrintOnSystemPrinter([&](Surface& surface) { PrintReceipt(surface, receipt); });
}

void ReceiptPrinter::PrintReceipt(Surface& surface, ClassInvoice& receipt) {
  // Checked before the first statement, outside the ignored errors: a slip too long to index is
  // refused whole rather than printed without its lines.
  Count16(*receipt.InvoiceItems(), "InvoiceItems");
  // Likewise a tax code that cannot be printed: refused before the slip starts, not skipped.
  if (!receipt.QRCode.empty()) QrSideModules(receipt.QRCode);
  Slip slip(surface, *this);
  slip.Head(receipt);
  slip.Items(receipt);
  slip.Totals(receipt);
}

void ReceiptPrinter::SetCustomerMessage1(const std::string& message) { CheckMessageLength(message); }
void ReceiptPrinter::SetCustomerMessage2(const std::string& message) { CheckMessageLength(message); }

std::string ReceiptPrinter::AdjustedText(Surface& surface, std::string& text, int16_t& length) {
  return quorvel::AdjustedText(surface, text, length);
}

}  // namespace quorvel

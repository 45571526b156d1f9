// The voucher page: title, date/number/amount block, payee, amount in words, means of payment,
// note, the optional payments table and the three signature places.
#include "vouchers/voucher_printer.hpp"

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/text_fitting.hpp"

namespace quorvel {

namespace {

constexpr double kMargin = 1000;
constexpr double kRightBlockWidth = 1920;  // the date/number/amount block: 1600 × 1.2
constexpr double kAmountBoxHeight = 350;
const std::string kSignatureRule = "........................................";

std::string LowerAscii(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

}  // namespace

void ClassVoucherPrinter::PrintIt(ClassVoucher& voucherData, bool printHeader, bool isReceipt) {
  PrintOnSystemPrinter([&](Surface& printer) { PrintReceiptVoucher(printer, voucherData, printHeader, isReceipt); });
}

void ClassVoucherPrinter::PrintReceiptVoucher(Surface& surface, ClassVoucher& receiptData, bool printHeader,
                                              bool isReceipt) {
  const bool has_payments = receiptData.Count() > 0;  // a list past 32767 fails before drawing
  // Words left from an earlier voucher must never show on this one.
  amount_lines_.clear();
  StartDocumentHead(surface, printHeader, 12);
  PrintTitle(surface, isReceipt);
  surface.Font().Size(10);
  PrintDateNumberAmount(surface, receiptData);
  PrintPayee(surface, receiptData, isReceipt);
  PrintAmountInWords(surface, receiptData);
  PrintMeansOfPayment(surface, receiptData);
  surface.CurrentX(kMargin);
  surface.Print("Note:  " + receiptData.Notes);
  surface.Print("");
  if (PrintDetails && has_payments) PrintPaymentDetails(surface, receiptData.Payments(), isReceipt);
  surface.Print("");
  surface.Print("");
  PrintSignatures(surface);
  IgnoreErrors([&] { surface.EndDoc(); });
}

void ClassVoucherPrinter::PrintTitle(Surface& surface, bool isReceipt) {
  std::string title = isReceipt ? "RECEIPT VOUCHER" : "PAYMENT VOUCHER";
  if (!Title.empty()) title = Title;
  surface.Font().Size(16);
  surface.CurrentX(surface.Width() / 2 - surface.TextWidth(title) / 2);
  surface.Print(title);
}

// The block at the right, from the line under the title: date, number, and the boxed amount.
void ClassVoucherPrinter::PrintDateNumberAmount(Surface& surface, const ClassVoucher& voucher) {
  const double x = surface.Width() - kMargin - kRightBlockWidth;
  surface.CurrentX(x);
  surface.Print("Date: " + voucher.ReceiptDate);
  surface.Print("");
  surface.CurrentX(x);
  surface.Print("NO.  " + voucher.Number);
  surface.Print("");
  surface.CurrentX(x);
  const double y1 = surface.CurrentY();
  surface.PrintSameLine("Amount " + ModuleCompanyInfo::Profile().DefaultCurrencySign);
  // The box starts where the label ended.
  surface.Line(20, surface.CurrentX(), y1, surface.Width() - kMargin, y1 + kAmountBoxHeight, 0);
  surface.Font().Bold(true);
  // Half a label line below the box top, the y before the label line plus half the way to the
  // y after it: the amount's line then sits inside the box, a little below its middle.
  const double y_after_label = y1 + surface.TextHeight("Amount");
  const std::string amount = " " + voucher.Amount;
  surface.CurrentY(y1 + (y_after_label - y1) / 2);
  surface.CurrentX(surface.Width() - kMargin - surface.TextWidth(amount));
  surface.Print(amount);
  surface.Font().Bold(false);
  surface.Print("");
}

void ClassVoucherPrinter::PrintPayee(Surface& surface, const ClassVoucher& voucher, bool isReceipt) {
  const std::string label = isReceipt ? "Received From : " : "Pay To : ";
  surface.CurrentX(kMargin);
  const double y2 = surface.CurrentY();
  surface.Print(label);
  // The name follows the label as measured in bold, which is in force by then.
  surface.Font().Bold(true);
  surface.CurrentY(y2);
  surface.CurrentX(kMargin + surface.TextWidth(label));
  surface.Print(voucher.PayeeName);
  surface.Font().Bold(false);
  surface.Print("");
}

void ClassVoucherPrinter::PrintAmountInWords(Surface& surface, const ClassVoucher& voucher) {
  const CompanyProfile& profile = ModuleCompanyInfo::Profile();
  const std::string currency =
      profile.DefaultCurrencyName.empty() ? profile.DefaultCurrencySign : profile.DefaultCurrencyName + "s   ";
  surface.CurrentX(kMargin);
  const double y = surface.CurrentY();
  surface.PrintSameLine(currency);
  surface.CurrentY(y);
  SplitInTwo(surface, voucher.SumofAmount, surface.Width() - kMargin - kMargin - 1500, amount_lines_);
  const double x = kMargin + surface.TextWidth(currency);
  for (const std::string& line : amount_lines_) {
    surface.CurrentX(x);
    surface.Print(line);
  }
  surface.Print("");
}

// "BY <method>  NO. <cheque number>" always; the bank and cheque date only for a cheque.
void ClassVoucherPrinter::PrintMeansOfPayment(Surface& surface, const ClassVoucher& voucher) {
  surface.CurrentX(kMargin);
  surface.Print("BY   " + voucher.PaymentMethod + "  NO.   " + voucher.ChequeNumber);
  surface.Print("");
  if (LowerAscii(voucher.PaymentMethod) != "cheque") return;
  surface.CurrentX(kMargin);
  const double y3 = surface.CurrentY();
  surface.Print("Bank :  " + voucher.Bank);
  surface.CurrentY(y3);
  surface.CurrentX(surface.Width() - kMargin - 3000);
  surface.Print("Cheque Date:  " + voucher.ChequeDate);
  surface.Print("");
}

// Three dotted rules on one line, 1000 apart, each with its caption centred under it.
void ClassVoucherPrinter::PrintSignatures(Surface& surface) {
  const double y = surface.CurrentY();
  const double rule_width = surface.TextWidth(kSignatureRule);
  double start = kMargin;
  for (const char* caption : {"Manager", "Accountant", "Receiver's Sign"}) {
    surface.CurrentY(y);
    surface.CurrentX(start);
    surface.Print(kSignatureRule);
    surface.CurrentX(start + rule_width / 2 - surface.TextWidth(caption) / 2);
    surface.Print(caption);
    start += rule_width + 1000;
  }
}

std::string ClassVoucherPrinter::AdjustedText(Surface& surface, std::string& text, int16_t& length) {
  return quorvel::AdjustedText(surface, text, length);
}

}  // namespace quorvel

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

void ClassVoucherPrinter::PrintReceiptVoucher(Surface& obj, ClassVoucher& receiptData, bool printHeader,
                                              bool isReceipt) {
  const bool has_payments = receiptData.Count() > 0;  // a list past 32767 fails before drawing
  // Words left from an earlier voucher must never show on this one.
  amount_lines_.clear();
  StartDocumentHead(obj, printHeader, 12);
  PrintTitle(obj, isReceipt);
  obj.Font().Size(10);
  PrintDateNumberAmount(obj, receiptData);
  PrintPayee(obj, receiptData, isReceipt);
  PrintAmountInWords(obj, receiptData);
  PrintMeansOfPayment(obj, receiptData);
  obj.CurrentX(kMargin);
  obj.Print("Note:  " + receiptData.Notes);
  obj.Print("");
  if (PrintDetails && has_payments) PrintPaymentDetails(obj, receiptData.Payments(), isReceipt);
  obj.Print("");
  obj.Print("");
  PrintSignatures(obj);
  IgnoreErrors([&] { obj.EndDoc(); });
}

void ClassVoucherPrinter::PrintTitle(Surface& obj, bool isReceipt) {
  std::string title = isReceipt ? "RECEIPT VOUCHER" : "PAYMENT VOUCHER";
  if (!Title.empty()) title = Title;
  obj.Font().Size(16);
  obj.CurrentX(obj.Width() / 2 - obj.TextWidth(title) / 2);
  obj.Print(title);
}

// The block at the right, from the line under the title: date, number, and the boxed amount.
void ClassVoucherPrinter::PrintDateNumberAmount(Surface& obj, const ClassVoucher& voucher) {
  const double x = obj.Width() - kMargin - kRightBlockWidth;
  obj.CurrentX(x);
  obj.Print("Date: " + voucher.ReceiptDate);
  obj.Print("");
  obj.CurrentX(x);
  obj.Print("NO.  " + voucher.Number);
  obj.Print("");
  obj.CurrentX(x);
  const double y1 = obj.CurrentY();
  obj.PrintSameLine("Amount " + ModuleCompanyInfo::Profile().DefaultCurrencySign);
  // The box starts where the label ended.
  obj.Line(20, obj.CurrentX(), y1, obj.Width() - kMargin, y1 + kAmountBoxHeight, 0);
  obj.Font().Bold(true);
  // Half a label line below the box top, the y before the label line plus half the way to the
  // y after it: the amount's line then sits inside the box, a little below its middle.
  const double y_after_label = y1 + obj.TextHeight("Amount");
  const std::string amount = " " + voucher.Amount;
  obj.CurrentY(y1 + (y_after_label - y1) / 2);
  obj.CurrentX(obj.Width() - kMargin - obj.TextWidth(amount));
  obj.Print(amount);
  obj.Font().Bold(false);
  obj.Print("");
}

void ClassVoucherPrinter::PrintPayee(Surface& obj, const ClassVoucher& voucher, bool isReceipt) {
  const std::string label = isReceipt ? "Received From : " : "Pay To : ";
  obj.CurrentX(kMargin);
  const double y2 = obj.CurrentY();
  obj.Print(label);
  // The name follows the label as measured in bold, which is in force by then.
  obj.Font().Bold(true);
  obj.CurrentY(y2);
  obj.CurrentX(kMargin + obj.TextWidth(label));
  obj.Print(voucher.PayeeName);
  obj.Font().Bold(false);
  obj.Print("");
}

void ClassVoucherPrinter::PrintAmountInWords(Surface& obj, const ClassVoucher& voucher) {
  const CompanyProfile& profile = ModuleCompanyInfo::Profile();
  const std::string currency =
      profile.DefaultCurrencyName.empty() ? profile.DefaultCurrencySign : profile.DefaultCurrencyName + "s   ";
  obj.CurrentX(kMargin);
  const double y = obj.CurrentY();
  obj.PrintSameLine(currency);
  obj.CurrentY(y);
  SplitInTwo(obj, voucher.SumofAmount, obj.Width() - kMargin - kMargin - 1500, amount_lines_);
  const double x = kMargin + obj.TextWidth(currency);
  for (const std::string& line : amount_lines_) {
    obj.CurrentX(x);
    obj.Print(line);
  }
  obj.Print("");
}

// "BY <method>  NO. <cheque number>" always; the bank and cheque date only for a cheque.
void ClassVoucherPrinter::PrintMeansOfPayment(Surface& obj, const ClassVoucher& voucher) {
  obj.CurrentX(kMargin);
  obj.Print("BY   " + voucher.PaymentMethod + "  NO.   " + voucher.ChequeNumber);
  obj.Print("");
  if (LowerAscii(voucher.PaymentMethod) != "cheque") return;
  obj.CurrentX(kMargin);
  const double y3 = obj.CurrentY();
  obj.Print("Bank :  " + voucher.Bank);
  obj.CurrentY(y3);
  obj.CurrentX(obj.Width() - kMargin - 3000);
  obj.Print("Cheque Date:  " + voucher.ChequeDate);
  obj.Print("");
}

// Three dotted rules on one line, 1000 apart, each with its caption centred under it.
void ClassVoucherPrinter::PrintSignatures(Surface& obj) {
  const double y = obj.CurrentY();
  const double rule_width = obj.TextWidth(kSignatureRule);
  double start = kMargin;
  for (const char* caption : {"Manager", "Accountant", "Receiver's Sign"}) {
    obj.CurrentY(y);
    obj.CurrentX(start);
    obj.Print(kSignatureRule);
    obj.CurrentX(start + rule_width / 2 - obj.TextWidth(caption) / 2);
    obj.Print(caption);
    start += rule_width + 1000;
  }
}

std::string ClassVoucherPrinter::AdjustedText(Surface& obj, std::string& text, int16_t& length) {
  return quorvel::AdjustedText(obj, text, length);
}

}  // namespace quorvel

// The voucher's payment-details table: heading row, one row per payment, and the ruled frame.
#include <array>

#include "foundation/errors.hpp"
#include "foundation/runtime.hpp"
#include "foundation/text_fitting.hpp"
#include "vouchers/voucher_printer.hpp"

namespace quorvel {

namespace {

constexpr double kTableLeft = 1000;
constexpr double kRuleLength = 3000;  // the frame's height, however many rows there are

// Heading X for columns 1 and 2: the centre less half the whole-twip width.
int16_t CentredOnWholeWidth(Surface& surface, const std::string& heading, double centre) {
  return ToInt16(centre - Int(surface.TextWidth(heading)) / 2, "heading position");
}

// Heading X for columns 3 to 6: the centre less the whole-twip half width.
int16_t CentredOnWholeHalf(Surface& surface, const std::string& heading, double centre) {
  return ToInt16(centre - Int(surface.TextWidth(heading) / 2), "heading position");
}

// One value right-aligned against `right_end` with one blank after it, fitted to `width` first.
void PrintRightAligned(ClassVoucherPrinter& printer, Surface& surface, std::string value, int16_t width,
                       double right_end, double row) {
  const std::string text = printer.AdjustedText(surface, value, width) + " ";
  surface.CurrentX(right_end - surface.TextWidth(text));
  surface.CurrentY(row);
  surface.Print(text);
}

}  // namespace

void ClassVoucherPrinter::PrintPaymentDetails(Surface& surface, const CollectionRef<ClassPayment>& Payments,
                                              bool isReceipt) {
  if (!Payments) Raise(err::kObjectNotSet, "PrintPaymentDetails: Payments");
  surface.Print("");
  PrintPaymentDetailsHeader(surface, isReceipt);
  const double top = surface.CurrentY();
  // The count is read again before each row; all rows go on this page.
  for (int i = 1; i <= Count16(*Payments, "the voucher's Payments"); ++i) {
    const std::shared_ptr<ClassPayment>& payment = Payments->Item(i);
    // A host may have added nothing: reaching its fields is the object-not-set error.
    if (!payment) Raise(err::kObjectNotSet, "Payments item " + std::to_string(i) + " is not set");
    PrintPaymentDetailsInfo(surface, *payment);
  }
  printTable(surface, top);
  surface.CurrentX(1009);
  surface.CurrentY(ToInt16(surface.CurrentY(), "table bottom"));
  surface.Print();
}

void ClassVoucherPrinter::PrintPaymentDetailsHeader(Surface& surface, bool isReceipt) {
  const double saved_size = surface.Font().Size();
  surface.Font().Size(10);
  const int16_t row = ToInt16(surface.CurrentY(), "heading row");
  // Centres from the column widths 1400, 1500, 1600, 1600, 1470, 1470; the last two use
  // 1470 / 2 = 735 whatever the page width.
  const std::string first = isReceipt ? "Invoice#" : "Bill#";
  const std::array<int16_t, 6> xs = {
      CentredOnWholeWidth(surface, first, 1000 + 1400 / 2),       CentredOnWholeWidth(surface, "Date", 2400 + 1500 / 2),
      CentredOnWholeHalf(surface, "Org.Amount", 3900 + 1600 / 2), CentredOnWholeHalf(surface, "AmountDue", 5500 + 1600 / 2),
      CentredOnWholeHalf(surface, "Credits", 7100 + 1470 / 2),    CentredOnWholeHalf(surface, "Payment", 8700 + 1470 / 2)};
  const std::array<std::string, 6> headings = {first, "Date", "Org.Amount", "AmountDue", "Credits", "Payment"};
  for (size_t k = 0; k < headings.size(); ++k) {
    surface.CurrentX(xs[k]);
    surface.CurrentY(row);
    surface.Print(headings[k]);
  }
  surface.CurrentX(kTableLeft);
  surface.Line(4, kTableLeft, surface.CurrentY(), surface.Width() - 1000, surface.CurrentY(), 0);
  surface.Font().Size(saved_size);
}

void ClassVoucherPrinter::PrintPaymentDetailsInfo(Surface& surface, const ClassPayment& payment) {
  const double row = surface.CurrentY();
  // The host's texts are fitted as copies: printing never changes the payment.
  std::string number = payment.Number;
  int16_t number_width = 1400;
  const std::string fitted_number = AdjustedText(surface, number, number_width);
  surface.CurrentX(kTableLeft);
  surface.Print(" " + fitted_number);

  const std::string date = payment.InvoiceDate + " ";
  surface.CurrentX(3900 - surface.TextWidth(date));
  surface.CurrentY(row);
  surface.Print(date);

  PrintRightAligned(*this, surface, payment.OriginalAmount, 1600, 5500, row);
  PrintRightAligned(*this, surface, payment.AmountDue, 1600, 7100, row);
  PrintRightAligned(*this, surface, payment.Credits, 1600, 8700, row);
  PrintRightAligned(*this, surface, payment.Payments, 1470, surface.Width() - 1000, row);
}

void ClassVoucherPrinter::printTable(Surface& surface, double top) {
  // Each Line leaves the pen at its end point, so the last row's y is taken first.
  const double bottom = surface.CurrentY();
  for (double x : {1000.0, 2400.0, 3900.0, 5500.0, 7100.0, 8700.0, surface.Width() - 1000})
    surface.Line(4, x, top, x, top + kRuleLength, 0);
  surface.Line(4, kTableLeft, bottom, surface.Width() - 1000, bottom, 0);
}

}  // namespace quorvel

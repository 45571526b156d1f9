// The invoice's page head (title, number/date block, addresses, purchase order), the column
// captions and the ruled frame drawn around what the head printed.
#include <array>

#include "foundation/company_info.hpp"
#include "foundation/page_footer.hpp"
#include "foundation/runtime.hpp"
#include "foundation/text_fitting.hpp"
#include "invoices/invoice_printer.hpp"

namespace quorvel {

namespace {
constexpr double kRightMargin = 1000;
constexpr double kNumberWidth = 1400;    // number column of the number/date block
constexpr double kDateWidth = 1500 + 15;  // date column, left of the number column
constexpr double kAddressWidth = 3500;    // billing and shipping blocks
constexpr double kAddressBoxHeight = 1300;
constexpr double kHeaderBoxHeight = 500;  // number/date and purchase-order boxes
// The totals area under the table: four label rows, amounts right-aligned in a column this wide.
constexpr int kTotalsRows = 4;
constexpr double kTotalsAmountWidth = 1300;
// The totals area starts this far left of the labels, so that a discount caption without a
// leading blank stays clear of its edge.
constexpr double kTotalsLeftPadding = 100;

double RightEdge(const Surface& obj) { return obj.Width() - kRightMargin; }
}  // namespace

void ClassInvoicePrinter::PrintInvoiceHeader(Surface& obj, ClassInvoice& invoice, bool printHeader) {
  StartDocumentHead(obj, printHeader, 12);
  const double y0 = obj.CurrentY();
  obj.CurrentX(1000);
  obj.Font().Size(24);
  obj.Print(invoice.printTitle);
  obj.Font().Size(10);

  const double xn = RightEdge(obj) - kNumberWidth;
  obj.CurrentY(y0);
  obj.CurrentX(xn);
  obj.Print(" " + invoice.NumberTitle);
  obj.CurrentX(xn);
  obj.Print(" " + invoice.InvoiceNumber);
  number_x_ = xn;

  obj.CurrentY(y0);
  const double xd = xn - kDateWidth;
  obj.CurrentX(xd);
  date_x_ = xd;
  block_top_ = y0;
  obj.Print(" Date");
  caption_bottom_ = obj.CurrentY();
  obj.CurrentX(xd);
  obj.Print(" " + invoice.InvoiceDate);
  value_bottom_ = obj.CurrentY();
  obj.Print("");

  const double yb = obj.CurrentY();
  if (invoice.hasBilling) PrintBilling(obj, invoice);
  if (invoice.hasShipping) PrintShipping(obj, invoice, yb);
  obj.Print("");
  if (printLPONumber) PrintPurchaseOrder(obj, invoice);
  obj.Print("");
}

void ClassInvoicePrinter::PrintBilling(Surface& obj, ClassInvoice& invoice) {
  obj.CurrentX(1000);
  obj.Font().Bold(true);
  obj.Print(invoice.BillToTitle);
  billing_box_bottom_ = obj.CurrentY();
  obj.Font().Bold(false);
  for (const std::string* source : {&invoice.Billing1, &invoice.Billing2, &invoice.Billing3,
                                    &invoice.Billing4, &invoice.Billing5}) {
    std::string line = *source;  // fitted on a copy: printing never changes the invoice
    int16_t length = static_cast<int16_t>(kAddressWidth);
    AdjustedText(obj, line, length);
    obj.CurrentX(1000);
    obj.Print(" " + line);
  }
}

void ClassInvoicePrinter::PrintShipping(Surface& obj, ClassInvoice& invoice, double top) {
  obj.CurrentY(top);
  const double xs = RightEdge(obj) - kAddressWidth;
  obj.CurrentX(xs);
  obj.Font().Bold(true);
  shipping_x_ = xs;
  // The caption is fixed on purpose: only the billing caption is the host's to change.
  obj.Print("Ship to:");
  // The shipping box hangs from the billing caption; without a billing block the shipping
  // caption, which stands on the same line, gives that height instead of a stale one.
  if (!invoice.hasBilling) billing_box_bottom_ = obj.CurrentY();
  obj.Font().Bold(false);
  for (const std::string* line : {&invoice.Shipping1, &invoice.Shipping2, &invoice.Shipping3,
                                  &invoice.Shipping4, &invoice.Shipping5}) {
    obj.CurrentX(xs);
    obj.Print(" " + *line);
  }
}

void ClassInvoicePrinter::PrintPurchaseOrder(Surface& obj, ClassInvoice& invoice) {
  const double xp = RightEdge(obj) - kNumberWidth;
  po_top_ = obj.CurrentY();
  po_x_ = xp;
  // Centred in the box, which is as wide as the number column above it.
  obj.CurrentX(RightEdge(obj) - kNumberWidth / 2 - obj.TextWidth(invoice.LPONumberTitle) / 2);
  obj.Print(invoice.LPONumberTitle);
  po_caption_bottom_ = obj.CurrentY();
  obj.CurrentX(xp);
  obj.Print(" " + invoice.LPONumber);
  po_value_bottom_ = obj.CurrentY();
}

void ClassInvoicePrinter::PrintItemsHeader(Surface& obj) {
  struct Caption {
    double start, width;
    const char* measured;  // the last three measure only a leading part, so they straddle the middle
    const char* printed;
  };
  namespace col = invoice_columns;
  static constexpr std::array<Caption, 5> kCaptions{{
      {col::kItem, col::kItemWidth, "Item #", "Item #"},
      {col::kDescription, col::kDescriptionWidth, "Description", "Description"},
      {col::kQuantity, col::kQuantityWidth, "Q", "Qty"},
      {col::kPrice, col::kPriceWidth, "Price", "Unit Price"},
      {col::kAmount, col::kAmountWidth, "Am", "Amount"},
  }};
  const double saved_size = obj.Font().Size();
  obj.Font().Size(10);
  const double y = ToInt32(obj.CurrentY(), "caption row");
  for (const Caption& c : kCaptions) {
    const double anchor = Int(c.width / 2) + c.start;
    obj.CurrentY(y);
    obj.CurrentX(ToInt32(anchor - Int(obj.TextWidth(c.measured)), "caption position"));
    obj.Print(c.printed);
  }
  obj.CurrentX(1000);
  obj.Line(4, 1000, obj.CurrentY(), RightEdge(obj), obj.CurrentY(), 0);
  obj.Font().Size(saved_size);
}

void ClassInvoicePrinter::printTable(Surface& obj, double top, bool hasBilling, bool hasShipping,
                                     bool hasLPO) {
  namespace col = invoice_columns;
  const double right = RightEdge(obj);
  const double bottom = PageLimit(obj);
  obj.Line(4, 1000, top, right, top, 0);
  for (double x : {col::kItem, col::kDescription, col::kQuantity, col::kPrice, col::kAmount, right})
    obj.Line(4, x, top, x, bottom, 0);
  obj.Line(4, 1000, bottom, right, bottom, 0);
  DrawHeaderBoxes(obj, hasBilling, hasShipping, hasLPO);
  DrawTotalsArea(obj);
}

void ClassInvoicePrinter::DrawHeaderBoxes(Surface& obj, bool hasBilling, bool hasShipping, bool hasLPO) {
  const double right = RightEdge(obj);
  if (hasBilling)
    obj.Line(20, 1000, billing_box_bottom_, 1000 + kAddressWidth, billing_box_bottom_ + kAddressBoxHeight, 0);
  if (hasShipping)
    obj.Line(20, shipping_x_, billing_box_bottom_, shipping_x_ + kAddressWidth,
             billing_box_bottom_ + kAddressBoxHeight, 0);
  // Number/date block: its outline from the date column's left edge, the rule between the
  // columns and the rule under the captions.
  const double block_bottom = block_top_ + kHeaderBoxHeight;
  obj.Line(20, date_x_, block_top_, right, block_bottom, 0);
  obj.Line(4, number_x_, block_top_, number_x_, block_bottom, 0);
  obj.Line(4, date_x_, caption_bottom_, right, caption_bottom_, 0);
  if (hasLPO) {
    obj.Line(20, po_x_, po_top_, right, po_top_ + kHeaderBoxHeight, 0);
    obj.Line(4, po_x_, po_caption_bottom_, right, po_caption_bottom_, 0);
  }
}

void ClassInvoicePrinter::DrawTotalsArea(Surface& obj) {
  // Hangs under the table's foot, as tall as the four label rows the last page can print
  // (subtotal, discount, other expenses, total), from just left of the labels to the right
  // margin; the page number, four rows below the foot, stays outside it.
  const double right = RightEdge(obj);
  const double top = PageLimit(obj);
  const double bottom = top + kTotalsRows * obj.TextHeight("W");
  const double label_x = obj.Width() - Int(obj.Width() / 3);
  obj.Line(20, label_x - kTotalsLeftPadding, top, right, bottom, 0);
  obj.Line(4, right - kTotalsAmountWidth, top, right - kTotalsAmountWidth, bottom, 0);
}

std::string ClassInvoicePrinter::AdjustedText(Surface& obj, std::string& text, int16_t& length) {
  return quorvel::AdjustedText(obj, text, length);
}

std::string ClassInvoicePrinter::AppendBlanks(std::string text, int n) {
  for (int i = 0; i < n; ++i) text += ' ';
  return text;
}

}  // namespace quorvel

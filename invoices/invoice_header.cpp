// The invoice's page head (title, number/date block, addresses, purchase order), the column
// captions and the ruled frame drawn around what the head printed.
#include <array>

#include "foundation/company_info.hpp"
#include "foundation/font_state.hpp"
#include "foundation/number_date_block.hpp"
#include "foundation/page_footer.hpp"
#include "foundation/runtime.hpp"
#include "foundation/text_fitting.hpp"
#include "invoices/invoice_printer.hpp"

namespace quorvel {

namespace {
constexpr double kRightMargin = 1000;
constexpr double kNumberWidth = 1400;    // number column of the number/date block
constexpr double kAddressWidth = 3500;    // billing and shipping blocks
constexpr double kAddressBoxHeight = 1300;
constexpr double kHeaderBoxHeight = 500;  // number/date and purchase-order boxes
// The totals area under the table: four label rows, amounts right-aligned in a column this wide.
constexpr int kTotalsRows = 4;
constexpr double kTotalsAmountWidth = 1300;
// The totals area starts this far left of the labels, so that a discount caption without a
// leading blank stays clear of its edge.
constexpr double kTotalsLeftPadding = 100;

double RightEdge(const Surface& surface) { return surface.Width() - kRightMargin; }
}  // namespace

void ClassInvoicePrinter::PrintInvoiceHeader(Surface& surface, ClassInvoice& invoice, bool printHeader) {
  PrintHead(surface, invoice, printHeader);
}

ClassInvoicePrinter::HeaderMarks ClassInvoicePrinter::PrintHead(Surface& surface, ClassInvoice& invoice,
                                                                bool printHeader) {
  // A block left out of this header keeps the position an earlier header gave it, as the frame
  // of a host that draws it anyway has always found it.
  HeaderMarks marks = last_marks_;
  StartDocumentHead(surface, printHeader, 12);
  const double y0 = PrintDocumentTitle(surface, invoice.printTitle);

  marks.block = PrintNumberDateBlock(surface, y0, invoice.NumberTitle, invoice.InvoiceNumber, invoice.InvoiceDate);

  const double address_top = surface.CurrentY();
  if (invoice.hasBilling) PrintBilling(surface, invoice, marks);
  if (invoice.hasShipping) PrintShipping(surface, invoice, address_top, marks);
  surface.Print("");
  if (printLPONumber) PrintPurchaseOrder(surface, invoice, marks);
  surface.Print("");
  last_marks_ = marks;
  return marks;
}

void ClassInvoicePrinter::PrintBilling(Surface& surface, ClassInvoice& invoice, HeaderMarks& marks) {
  surface.CurrentX(1000);
  surface.Font().Bold(true);
  surface.Print(invoice.BillToTitle);
  marks.billing_box_bottom = surface.CurrentY();
  surface.Font().Bold(false);
  for (const std::string* source : {&invoice.Billing1, &invoice.Billing2, &invoice.Billing3,
                                    &invoice.Billing4, &invoice.Billing5}) {
    std::string line = *source;  // fitted on a copy: printing never changes the invoice
    int16_t length = static_cast<int16_t>(kAddressWidth);
    AdjustedText(surface, line, length);
    surface.CurrentX(1000);
    surface.Print(" " + line);
  }
}

void ClassInvoicePrinter::PrintShipping(Surface& surface, ClassInvoice& invoice, double top, HeaderMarks& marks) {
  surface.CurrentY(top);
  marks.shipping_x = RightEdge(surface) - kAddressWidth;
  surface.CurrentX(marks.shipping_x);
  surface.Font().Bold(true);
  // The caption is fixed on purpose: only the billing caption is the host's to change.
  surface.Print("Ship to:");
  // The shipping box hangs from the billing caption; without a billing block the shipping
  // caption, which stands on the same line, gives that height instead of a stale one.
  if (!invoice.hasBilling) marks.billing_box_bottom = surface.CurrentY();
  surface.Font().Bold(false);
  for (const std::string* line : {&invoice.Shipping1, &invoice.Shipping2, &invoice.Shipping3,
                                  &invoice.Shipping4, &invoice.Shipping5}) {
    surface.CurrentX(marks.shipping_x);
    surface.Print(" " + *line);
  }
}

void ClassInvoicePrinter::PrintPurchaseOrder(Surface& surface, ClassInvoice& invoice, HeaderMarks& marks) {
  marks.po_x = RightEdge(surface) - kNumberWidth;
  marks.po_top = surface.CurrentY();
  // Centred in the box, which is as wide as the number column above it.
  surface.CurrentX(RightEdge(surface) - kNumberWidth / 2 - surface.TextWidth(invoice.LPONumberTitle) / 2);
  surface.Print(invoice.LPONumberTitle);
  marks.po_caption_bottom = surface.CurrentY();
  surface.CurrentX(marks.po_x);
  surface.Print(" " + invoice.LPONumber);
  marks.po_value_bottom = surface.CurrentY();
}

void ClassInvoicePrinter::PrintItemsHeader(Surface& surface) {
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
  ScopedFont font(surface);
  surface.Font().Size(10);
  const double y = ToInt32(surface.CurrentY(), "caption row");
  for (const Caption& c : kCaptions) {
    const double anchor = Int(c.width / 2) + c.start;
    surface.CurrentY(y);
    surface.CurrentX(ToInt32(anchor - Int(surface.TextWidth(c.measured)), "caption position"));
    surface.Print(c.printed);
  }
  DrawCaptionRule(surface);
}

void ClassInvoicePrinter::printTable(Surface& surface, double top, bool hasBilling, bool hasShipping,
                                     bool hasLPO) {
  DrawFrame(surface, top, last_marks_, hasBilling, hasShipping, hasLPO);
}

void ClassInvoicePrinter::DrawFrame(Surface& surface, double top, const HeaderMarks& marks, bool hasBilling,
                                    bool hasShipping, bool hasLPO) {
  namespace col = invoice_columns;
  const double right = RightEdge(surface);
  const double bottom = PageLimit(surface);
  DrawRule(surface, 1000, top, right, top);
  for (double x : {col::kItem, col::kDescription, col::kQuantity, col::kPrice, col::kAmount, right})
    DrawRule(surface, x, top, x, bottom);
  DrawRule(surface, 1000, bottom, right, bottom);
  DrawHeaderBoxes(surface, marks, hasBilling, hasShipping, hasLPO);
  DrawTotalsArea(surface);
}

void ClassInvoicePrinter::DrawHeaderBoxes(Surface& surface, const HeaderMarks& marks, bool hasBilling,
                                          bool hasShipping, bool hasLPO) {
  const double right = RightEdge(surface);
  const double address_bottom = marks.billing_box_bottom + kAddressBoxHeight;
  if (hasBilling) DrawBox(surface, 1000, marks.billing_box_bottom, 1000 + kAddressWidth, address_bottom);
  if (hasShipping)
    DrawBox(surface, marks.shipping_x, marks.billing_box_bottom, marks.shipping_x + kAddressWidth, address_bottom);
  // Number/date block: its outline from the date column's left edge, the rule between the
  // columns and the rule under the captions.
  const double block_bottom = marks.block.top + kHeaderBoxHeight;
  DrawBox(surface, marks.block.date_x, marks.block.top, right, block_bottom);
  DrawRule(surface, marks.block.number_x, marks.block.top, marks.block.number_x, block_bottom);
  DrawRule(surface, marks.block.date_x, marks.block.caption_bottom, right, marks.block.caption_bottom);
  if (hasLPO) {
    DrawBox(surface, marks.po_x, marks.po_top, right, marks.po_top + kHeaderBoxHeight);
    DrawRule(surface, marks.po_x, marks.po_caption_bottom, right, marks.po_caption_bottom);
  }
}

void ClassInvoicePrinter::DrawTotalsArea(Surface& surface) {
  // Hangs under the table's foot, as tall as the four label rows the last page can print
  // (subtotal, discount, other expenses, total), from just left of the labels to the right
  // margin; the page number, four rows below the foot, stays outside it.
  const double right = RightEdge(surface);
  const double top = PageLimit(surface);
  const double bottom = top + kTotalsRows * surface.TextHeight("W");
  const double label_x = surface.Width() - Int(surface.Width() / 3);
  DrawBox(surface, label_x - kTotalsLeftPadding, top, right, bottom);
  DrawRule(surface, right - kTotalsAmountWidth, top, right - kTotalsAmountWidth, bottom);
}

std::string ClassInvoicePrinter::AdjustedText(Surface& surface, std::string& text, int16_t& length) {
  return quorvel::AdjustedText(surface, text, length);
}

std::string ClassInvoicePrinter::AppendBlanks(std::string text, int n) {
  for (int i = 0; i < n; ++i) text += ' ';
  return text;
}

}  // namespace quorvel

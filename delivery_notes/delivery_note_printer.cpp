// Delivery-note layout: the header blocks, the numbered item table page by page, and the footer.
#include "delivery_notes/delivery_note_printer.hpp"

#include <algorithm>
#include <vector>

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/font_state.hpp"
#include "foundation/number_date_block.hpp"
#include "foundation/page_flow.hpp"
#include "foundation/page_footer.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/runtime.hpp"
#include "foundation/text_fitting.hpp"

namespace quorvel {

namespace {
// Left edges of the item columns: serial number, item, description, package, unit, quantity.
constexpr double kSerialX = 1000, kItemX = 1650, kDescriptionX = 3050, kPackageX = 7450,
                 kUnitX = 8750, kQuantityX = 9750;
constexpr int16_t kDescriptionWidth = 4400;
constexpr double kNumberWidth = 1400;
// Height of the boxes drawn round the header blocks: 250 per line of 10 pt text.
constexpr double kBoxRowHeight = 250;
const char* const kInvoiceCaption = "Invoice No.";

std::string Fitted(Surface& surface, const std::string& value, int16_t length) {
  std::string text = value;  // the document keeps its own text; only the printout is shortened
  return AdjustedText(surface, text, length);
}

// Prints `caption` centred on a column: anchor = Int(width / 2) + start.
void PrintCentredCaption(Surface& surface, double y, const std::string& caption, double start, double width) {
  const double anchor = Int(width / 2) + start;
  surface.CurrentY(y);
  surface.CurrentX(anchor - Int(surface.TextWidth(caption) / 2));
  surface.Print(caption);
}

// Where the invoice number starts: in the number column when it fits there; a longer one starts
// further left so that it still ends at the right margin, but never over its caption. A number
// too long even for that runs on past the margin: it is printed whole, never cut.
double InvoiceNumberX(const Surface& surface, const std::string& number, double number_x, double caption_x) {
  const double right = surface.Width() - 1000;
  const double width = surface.TextWidth(number);
  if (number_x + width <= right) return number_x;
  return std::max(right - width, caption_x + surface.TextWidth(kInvoiceCaption));
}
}  // namespace

void ClassDeliveryNotePrinter::PrintDelNoteHeader(Surface& surface, ClassDeliveryNote& note, bool printHeader) {
  PrintHead(surface, note, printHeader);
}

ClassDeliveryNotePrinter::HeaderMarks ClassDeliveryNotePrinter::PrintHead(Surface& surface, ClassDeliveryNote& note,
                                                                          bool printHeader) {
  HeaderMarks marks;
  StartDocumentHead(surface, printHeader);
  const double y0 = PrintDocumentTitle(surface, note.printTitle);

  // Number and date block at the right, level with the title: caption line over value line.
  marks.block = PrintNumberDateBlock(surface, y0, note.NumberTitle, note.NoteNumber, note.NoteDate);

  surface.Print("");
  if (note.hasBilling) {
    surface.CurrentX(1000);
    surface.Font().Bold(true);
    surface.Print("Deliver To:");
    surface.Font().Bold(false);
    for (const std::string* line : {&note.Billing1, &note.Billing2, &note.Billing3, &note.Billing4, &note.Billing5}) {
      surface.CurrentX(1000);
      surface.Print(*line);
    }
  }

  // The invoice row sits under the address block, so no address line can run into it: the
  // caption in the date column, the number in the number column, boxed like the block above.
  marks.invoice_top = surface.CurrentY();
  const double caption_x = surface.Width() - 1000 - 1500 - kNumberWidth;
  surface.CurrentX(caption_x);
  surface.Print(kInvoiceCaption);
  const std::string number = " " + note.InvoiceNumber;
  marks.invoice_number_x = InvoiceNumberX(surface, number, marks.block.number_x, caption_x);
  surface.CurrentY(marks.invoice_top);
  surface.CurrentX(marks.invoice_number_x);
  surface.Print(number);
  surface.Print("");
  surface.Print("");
  last_marks_ = marks;
  return marks;
}

void ClassDeliveryNotePrinter::PrintItemsHeader(Surface& surface) {
  ScopedFont font(surface);
  surface.Font().Size(10);
  const double y = surface.CurrentY();
  const double right = surface.Width() - 1000;
  PrintCentredCaption(surface, y, "S.No", kSerialX, 650);
  PrintCentredCaption(surface, y, "Item", kItemX, 1400);
  // Centred over a column from the item column's start, while the descriptions print from 3050.
  PrintCentredCaption(surface, y, "Description", kItemX, 4400);
  PrintCentredCaption(surface, y, "Package", kPackageX, 1300);
  PrintCentredCaption(surface, y, "Unit", kUnitX, 1000);
  PrintCentredCaption(surface, y, "Qty", kQuantityX, right - kQuantityX);
  DrawCaptionRule(surface);
}

void ClassDeliveryNotePrinter::PrintItem(Surface& surface, ClassInvoiceItem& item, int16_t serialNumber) {
  const double y = surface.CurrentY();
  auto print_at = [&](double x, const std::string& text) {
    surface.CurrentY(y);
    surface.CurrentX(x);
    surface.Print(text);
  };
  print_at(kSerialX, Fitted(surface, std::to_string(serialNumber), 650));
  print_at(kItemX, Fitted(surface, item.ItemName, 1400));
  print_at(kPackageX, Fitted(surface, item.PKG, 1300));
  print_at(kUnitX, Fitted(surface, item.Unit, 1000));
  surface.CurrentY(y);
  PrintRightAligned(surface, surface.Width() - 1000, Fitted(surface, item.Quantity, 1470));

  surface.CurrentY(y);
  std::string description = item.Description;
  int16_t width = kDescriptionWidth;
  std::vector<std::string> lines;
  WrapText(surface, description, width, lines);
  for (const std::string& line : lines) {
    surface.CurrentX(kDescriptionX);
    surface.Print(line);
  }
}

void ClassDeliveryNotePrinter::printTable(Surface& surface, double top) { DrawFrame(surface, top, last_marks_); }

void ClassDeliveryNotePrinter::DrawFrame(Surface& surface, double top, const HeaderMarks& marks) {
  const double right = surface.Width() - 1000;
  const double bottom = PageLimit(surface);
  DrawRule(surface, 1000, top, right, top);
  for (double x : {kSerialX, kItemX, kDescriptionX, kPackageX, kUnitX, kQuantityX, right})
    DrawRule(surface, x, top, x, bottom);
  DrawRule(surface, 1000, bottom, right, bottom);

  // Number/date box: two rows, split into its date and number columns, ruled under the captions.
  const double block_bottom = marks.block.top + 2 * kBoxRowHeight;
  DrawBox(surface, marks.block.date_x, marks.block.top, right, block_bottom);
  DrawRule(surface, marks.block.number_x, marks.block.top, marks.block.number_x, block_bottom);
  DrawRule(surface, marks.block.date_x, marks.block.caption_bottom, right, marks.block.caption_bottom);

  // Invoice row: one row over the same two columns; the divider gives way to a long number.
  const double invoice_bottom = marks.invoice_top + kBoxRowHeight;
  DrawBox(surface, marks.block.date_x, marks.invoice_top, right, invoice_bottom);
  DrawRule(surface, marks.invoice_number_x, marks.invoice_top, marks.invoice_number_x, invoice_bottom);
}

void ClassDeliveryNotePrinter::PrintDeliveryNote(Surface& surface, ClassDeliveryNote& note, bool printHeader) {
  const Collection<ClassInvoiceItem>& items = *note.items();
  const int16_t count = Count16(items, "items");  // before anything is drawn
  surface.Font().Size(10);
  surface.Font().Name("Arial");

  HeaderMarks marks;
  PageFlow flow;
  flow.head = [&] { marks = PrintHead(surface, note, printHeader); };
  flow.captions = [&] {
    if (count >= 1) PrintItemsHeader(surface);
  };
  LineSection lines;
  lines.count = count;
  lines.estimated_height = [&](int32_t index) {
    return surface.TextHeight("W") * (surface.TextWidth(items.Item(index)->Description) / kDescriptionWidth);
  };
  lines.print = [&](int32_t index) { PrintItem(surface, *items.Item(index), static_cast<int16_t>(index)); };
  flow.sections.push_back(std::move(lines));
  if (printItemsTable) flow.frame = [&](double top) { DrawFrame(surface, top, marks); };
  RunPageFlow(surface, flow);

  PrintFooter(surface, note);
  IgnoreErrors([&] { surface.EndDoc(); });
}

void ClassDeliveryNotePrinter::PrintFooter(Surface& surface, ClassDeliveryNote& note) {
  surface.CurrentY(PageLimit(surface));
  surface.Print("");
  surface.CurrentX(1000);
  surface.Font().Bold(true);
  surface.Print("Notes:");
  surface.Font().Bold(false);
  for (const std::string* line : {&note.CustomerNote1, &note.CustomerNote2, &note.CustomerNote3}) {
    surface.CurrentX(1000);
    surface.Print(*line);
  }
  surface.Print("");
  surface.Print("");
  if (!note.PrintFooter) return;
  const double y = surface.CurrentY();
  PrintSignature(surface, 1000, y, "Delivered By", note.Employee);
  // "Received By" and its line end at the right margin.
  const double received = surface.TextWidth("Received By");
  PrintSignature(surface, surface.Width() - 1000 - (3 * received + 100), y, "Received By", "");
}

// The caption, then 100 further on a line twice the caption's width at the foot of its text
// line; `name` (the person signing) is printed under that line, fitted to its length.
void ClassDeliveryNotePrinter::PrintSignature(Surface& surface, double x, double y, const std::string& caption,
                                              const std::string& name) {
  const double caption_width = surface.TextWidth(caption);
  surface.CurrentY(y);
  surface.CurrentX(x);
  surface.Print(caption);
  const double line_y = surface.CurrentY();
  const double line_x = x + caption_width + 100;
  DrawRule(surface, line_x, line_y, line_x + 2 * caption_width, line_y);
  if (name.empty()) return;
  surface.CurrentY(line_y);
  surface.CurrentX(line_x);
  surface.Print(Fitted(surface, name, ToInt16(2 * caption_width, "signature line")));
}

std::string ClassDeliveryNotePrinter::AdjustedText(Surface& surface, std::string& text, int16_t& length) {
  return quorvel::AdjustedText(surface, text, length);
}

std::string ClassDeliveryNotePrinter::AdjustedText2(Surface& surface, std::string& text, int16_t& length) {
  return quorvel::AdjustedText2(surface, text, length);
}

void ClassDeliveryNotePrinter::PrintIt(ClassDeliveryNote& note, bool printHeader) {
  PrintOnSystemPrinter([&](Surface& printer) { PrintDeliveryNote(printer, note, printHeader); });
}

}  // namespace quorvel

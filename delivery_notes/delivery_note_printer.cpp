// Delivery-note layout: the header blocks, the numbered item table page by page, and the footer.
#include "delivery_notes/delivery_note_printer.hpp"

#include <vector>

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
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
// Height of the boxes drawn round the header blocks: 250 per line of 10 pt text.
constexpr double kBoxRowHeight = 250;

std::string Fitted(Surface& obj, const std::string& value, int16_t length) {
  std::string text = value;  // the document keeps its own text; only the printout is shortened
  return AdjustedText(obj, text, length);
}

// Prints `caption` centred on a column: anchor = Int(width / 2) + start.
void PrintCentredCaption(Surface& obj, double y, const std::string& caption, double start, double width) {
  const double anchor = Int(width / 2) + start;
  obj.CurrentY(y);
  obj.CurrentX(anchor - Int(obj.TextWidth(caption) / 2));
  obj.Print(caption);
}
}  // namespace

void ClassDeliveryNotePrinter::PrintDelNoteHeader(Surface& obj, ClassDeliveryNote& delNote, bool printHeader) {
  StartDocumentHead(obj, printHeader);
  const double y0 = obj.CurrentY();
  obj.CurrentX(1000);
  obj.Font().Size(24);
  obj.Print(delNote.printTitle);
  obj.Font().Size(10);

  // Number and date block at the right, level with the title: caption line over value line.
  const double xn = obj.Width() - 1000 - 1400;
  obj.CurrentY(y0);
  obj.CurrentX(xn);
  obj.Print(" " + delNote.NumberTitle);
  obj.CurrentX(xn);
  obj.Print(" " + delNote.NoteNumber);
  marks_.number_x = xn;
  obj.CurrentY(y0);
  const double xd = xn - 1500 - 15;
  obj.CurrentX(xd);
  marks_.date_x = xd;
  marks_.block_top = y0;
  obj.Print(" Date");
  marks_.caption_bottom = obj.CurrentY();
  obj.CurrentX(xd);
  obj.Print(" " + delNote.NoteDate);
  obj.Print("");

  obj.Print("");
  if (delNote.hasBilling) {
    obj.CurrentX(1000);
    obj.Font().Bold(true);
    obj.Print("Deliver To:");
    obj.Font().Bold(false);
    for (const std::string* line : {&delNote.Billing1, &delNote.Billing2, &delNote.Billing3,
                                    &delNote.Billing4, &delNote.Billing5}) {
      obj.CurrentX(1000);
      obj.Print(*line);
    }
  }

  // The invoice row sits under the address block, so no address line can run into it: the
  // caption in the date column, the number in the number column, boxed like the block above
  // and fitted to its 1400 so that the box always holds it.
  marks_.invoice_top = obj.CurrentY();
  obj.CurrentX(obj.Width() - 1000 - 1500 - 1400);
  obj.Print("Invoice No.");
  obj.CurrentY(marks_.invoice_top);
  obj.CurrentX(marks_.number_x);
  obj.Print(Fitted(obj, " " + delNote.InvoiceNumber, 1400));
  obj.Print("");
  obj.Print("");
}

void ClassDeliveryNotePrinter::PrintItemsHeader(Surface& obj) {
  const double saved_size = obj.Font().Size();
  obj.Font().Size(10);
  const double y = obj.CurrentY();
  const double right = obj.Width() - 1000;
  PrintCentredCaption(obj, y, "S.No", kSerialX, 650);
  PrintCentredCaption(obj, y, "Item", kItemX, 1400);
  // Centred over a column from the item column's start, while the descriptions print from 3050.
  PrintCentredCaption(obj, y, "Description", kItemX, 4400);
  PrintCentredCaption(obj, y, "Package", kPackageX, 1300);
  PrintCentredCaption(obj, y, "Unit", kUnitX, 1000);
  PrintCentredCaption(obj, y, "Qty", kQuantityX, right - kQuantityX);
  obj.CurrentX(1000);
  obj.Line(4, 1000, obj.CurrentY(), right, obj.CurrentY(), 0);
  obj.Font().Size(saved_size);
}

void ClassDeliveryNotePrinter::PrintItem(Surface& obj, ClassInvoiceItem& It, int16_t serialNumber) {
  const double y = obj.CurrentY();
  obj.CurrentX(kSerialX);
  obj.Print(Fitted(obj, std::to_string(serialNumber), 650));
  obj.CurrentY(y);
  obj.CurrentX(kItemX);
  obj.Print(Fitted(obj, It.ItemName, 1400));
  obj.CurrentY(y);
  obj.CurrentX(kPackageX);
  obj.Print(Fitted(obj, It.PKG, 1300));
  obj.CurrentY(y);
  obj.CurrentX(kUnitX);
  obj.Print(Fitted(obj, It.Unit, 1000));
  obj.CurrentY(y);
  PrintRightAligned(obj, obj.Width() - 1000, Fitted(obj, It.Quantity, 1470));

  obj.CurrentY(y);
  std::string description = It.Description;
  int16_t width = kDescriptionWidth;
  std::vector<std::string> lines;
  WrapText(obj, description, width, lines);
  for (const std::string& line : lines) {
    obj.CurrentX(kDescriptionX);
    obj.Print(line);
  }
}

void ClassDeliveryNotePrinter::printTable(Surface& obj, double top) {
  const double right = obj.Width() - 1000;
  const double bottom = PageLimit(obj);
  obj.Line(4, 1000, top, right, top, 0);
  for (double x : {kSerialX, kItemX, kDescriptionX, kPackageX, kUnitX, kQuantityX, right})
    obj.Line(4, x, top, x, bottom, 0);
  obj.Line(4, 1000, bottom, right, bottom, 0);

  // Number/date box: two rows, split into its date and number columns, ruled under the captions.
  const double block_bottom = marks_.block_top + 2 * kBoxRowHeight;
  obj.Line(20, marks_.date_x, marks_.block_top, right, block_bottom, 0);
  obj.Line(4, marks_.number_x, marks_.block_top, marks_.number_x, block_bottom, 0);
  obj.Line(4, marks_.date_x, marks_.caption_bottom, right, marks_.caption_bottom, 0);

  // Invoice row: one row over the same two columns.
  const double invoice_bottom = marks_.invoice_top + kBoxRowHeight;
  obj.Line(20, marks_.date_x, marks_.invoice_top, right, invoice_bottom, 0);
  obj.Line(4, marks_.number_x, marks_.invoice_top, marks_.number_x, invoice_bottom, 0);
}

void ClassDeliveryNotePrinter::PrintDeliveryNote(Surface& obj, ClassDeliveryNote& delNote, bool printHeader) {
  const Collection<ClassInvoiceItem>& items = *delNote.items();
  const int16_t count = Count16(items, "items");
  obj.Font().Size(10);
  obj.Font().Name("Arial");

  bool page_full = true;
  int16_t next = 1;
  int page = 1;
  while (page_full) {
    page_full = false;
    PrintDelNoteHeader(obj, delNote, printHeader);
    const double table_top = obj.CurrentY();
    if (count >= 1) PrintItemsHeader(obj);
    bool printed_on_page = false;
    while (next <= count) {
      ClassInvoiceItem& item = *items.Item(next);
      const double height = obj.TextHeight("W") * (obj.TextWidth(item.Description) / kDescriptionWidth);
      // A line that does not fit goes to the next page, unless this page has none yet: then it is
      // printed here, past the foot, since a fresh page would not give it more room.
      if (PageLimit(obj) < obj.CurrentY() + height && printed_on_page) {
        page_full = true;
        break;
      }
      PrintItem(obj, item, next);
      obj.CurrentY(obj.CurrentY() + 100);
      ++next;
      printed_on_page = true;
    }
    if (printItemsTable) printTable(obj, table_top);
    if (page_full || page >= 2) PrintPageNumber(obj, 4, "Page " + std::to_string(page));
    if (page_full) {
      ++page;
      if (IsSystemPrinter(obj)) obj.NewPage();
    }
  }
  PrintFooter(obj, delNote);
  IgnoreErrors([&] { obj.EndDoc(); });
}

void ClassDeliveryNotePrinter::PrintFooter(Surface& obj, ClassDeliveryNote& delNote) {
  obj.CurrentY(PageLimit(obj));
  obj.Print("");
  obj.CurrentX(1000);
  obj.Font().Bold(true);
  obj.Print("Notes:");
  obj.Font().Bold(false);
  for (const std::string* note : {&delNote.CustomerNote1, &delNote.CustomerNote2, &delNote.CustomerNote3}) {
    obj.CurrentX(1000);
    obj.Print(*note);
  }
  obj.Print("");
  obj.Print("");
  if (!delNote.PrintFooter) return;
  const double y = obj.CurrentY();
  PrintSignature(obj, 1000, y, "Delivered By", delNote.Employee);
  // "Received By" and its line end at the right margin.
  const double received = obj.TextWidth("Received By");
  PrintSignature(obj, obj.Width() - 1000 - (3 * received + 100), y, "Received By", "");
}

// The caption, then 100 further on a line twice the caption's width at the foot of its text
// line; `name` (the person signing) is printed under that line, fitted to its length.
void ClassDeliveryNotePrinter::PrintSignature(Surface& obj, double x, double y, const std::string& caption,
                                              const std::string& name) {
  const double caption_width = obj.TextWidth(caption);
  obj.CurrentY(y);
  obj.CurrentX(x);
  obj.Print(caption);
  const double line_y = obj.CurrentY();
  const double line_x = x + caption_width + 100;
  obj.Line(4, line_x, line_y, line_x + 2 * caption_width, line_y, 0);
  if (name.empty()) return;
  obj.CurrentY(line_y);
  obj.CurrentX(line_x);
  obj.Print(Fitted(obj, name, ToInt16(2 * caption_width, "signature line")));
}

std::string ClassDeliveryNotePrinter::AdjustedText(Surface& obj, std::string& text, int16_t& length) {
  return quorvel::AdjustedText(obj, text, length);
}

std::string ClassDeliveryNotePrinter::AdjustedText2(Surface& obj, std::string& text, int16_t& length) {
  return quorvel::AdjustedText2(obj, text, length);
}

void ClassDeliveryNotePrinter::PrintIt(ClassDeliveryNote& delNote, bool printHeader) {
  PrintOnSystemPrinter([&](Surface& printer) { PrintDeliveryNote(printer, delNote, printHeader); });
}

}  // namespace quorvel

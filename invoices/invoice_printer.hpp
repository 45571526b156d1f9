// The invoice printer: header, column captions, ruled frame, item lines, pages and totals.
#pragma once

#include <any>
#include <cstdint>
#include <string>

#include "foundation/collection.hpp"
#include "foundation/number_date_block.hpp"
#include "foundation/page_flow.hpp"
#include "foundation/surface.hpp"
#include "invoices/invoice.hpp"

namespace quorvel {

class ClassInvoicePrinter {
 public:
  // Where the header put its blocks: the frame is drawn around them.
  struct HeaderMarks {
    double billing_box_bottom = 0;  // the address boxes hang from the billing caption
    double shipping_x = 0;
    NumberDateBlock block;
    double po_top = 0, po_x = 0, po_caption_bottom = 0, po_value_bottom = 0;
  };

  bool printItemsTable = true;  // draw the ruled item table
  bool printLPONumber = true;   // print the purchase-order box in the header
  CollectionRef<std::any> PreviewCollection;  // held for the host; no routine reads it

  // Kept in the interface for hosts that call it; sales receipts have their own printer.
  void PrintSalesReceipt() {}
  // Title, number/date block, bill-to and ship-to blocks, purchase-order box; leaves CurrentY
  // below them.
  void PrintInvoiceHeader(Surface& surface, ClassInvoice& invoice, bool printHeader);
  // The whole document, page by page, ending with EndDoc.
  void PrintInvoice(Surface& surface, ClassInvoice& invoice, bool printHeader);
  // The five column captions and the rule under them.
  void PrintItemsHeader(Surface& surface);
  // The item table's frame from `top` to the page foot, the boxes around the header the last
  // PrintInvoiceHeader printed, and the totals area.
  void printTable(Surface& surface, double top, bool hasBilling, bool hasShipping, bool hasLPO);
  void PrintIt(ClassInvoice& invoice, bool printHeader);
  // One goods or expense line: fields fitted to their columns, the description wrapped.
  void PrintItem(Surface& surface, ClassInvoiceItem& item);
  std::string AdjustedText(Surface& surface, std::string& text, int16_t& length);

 private:
  HeaderMarks PrintHead(Surface& surface, ClassInvoice& invoice, bool printHeader);
  void PrintBilling(Surface& surface, ClassInvoice& invoice, HeaderMarks& marks);
  void PrintShipping(Surface& surface, ClassInvoice& invoice, double top, HeaderMarks& marks);
  void PrintPurchaseOrder(Surface& surface, ClassInvoice& invoice, HeaderMarks& marks);
  void DrawFrame(Surface& surface, double top, const HeaderMarks& marks, bool hasBilling, bool hasShipping,
                 bool hasLPO);
  static void DrawHeaderBoxes(Surface& surface, const HeaderMarks& marks, bool hasBilling, bool hasShipping,
                              bool hasLPO);
  static void DrawTotalsArea(Surface& surface);
  // The goods and expense lines as the page flow walks them.
  LineSection LinesOf(Surface& surface, const Collection<ClassInvoiceItem>& lines, int16_t count);
  void PrintExpenseHeading(Surface& surface);
  void PrintTotals(Surface& surface, ClassInvoice& invoice);
  void PrintNotesAndWords(Surface& surface, ClassInvoice& invoice);
  void PrintSignatures(Surface& surface, ClassInvoice& invoice);
  static std::string AppendBlanks(std::string text, int n);

  // Set the first time the other-expenses heading is printed and never cleared: one printer
  // object heads the expenses of its first document only.
  bool expense_heading_printed_ = false;
  // The last header's marks, for a host that calls printTable after PrintInvoiceHeader.
  HeaderMarks last_marks_;
};

// The description of the line that heads the other expenses; printed in bold.
inline constexpr const char* kOtherExpensesHeading = "   ---Other Expenses---";

// Column starts of the item table, shared by the captions, the item lines and the frame; the
// last column ends at Width - 1000.
namespace invoice_columns {
inline constexpr double kItem = 1000, kItemWidth = 1500;
inline constexpr double kDescription = 2500, kDescriptionWidth = 4300;
inline constexpr double kQuantity = 6800, kQuantityWidth = 1160;
inline constexpr double kPrice = 7960, kPriceWidth = 1470;
inline constexpr double kAmount = 9430, kAmountWidth = 1470;
}  // namespace invoice_columns

}  // namespace quorvel

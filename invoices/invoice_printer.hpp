// The invoice printer: header, column captions, ruled frame, item lines, pages and totals.
#pragma once

#include <any>
#include <cstdint>
#include <string>

#include "foundation/collection.hpp"
#include "foundation/surface.hpp"
#include "invoices/invoice.hpp"

namespace quorvel {

class ClassInvoicePrinter {
 public:
  bool printItemsTable = true;  // draw the ruled item table
  bool printLPONumber = true;   // print the purchase-order box in the header
  CollectionRef<std::any> PreviewCollection;  // held for the host; no routine reads it

  // Kept in the interface for hosts that call it; sales receipts have their own printer.
  void PrintSalesReceipt() {}
  // Title, number/date block, bill-to and ship-to blocks, purchase-order box; leaves CurrentY
  // below them. Remembers the positions the frame is drawn around.
  void PrintInvoiceHeader(Surface& obj, ClassInvoice& invoice, bool printHeader);
  // The whole document, page by page, ending with EndDoc.
  void PrintInvoice(Surface& obj, ClassInvoice& invoice, bool printHeader);
  // The five column captions and the rule under them.
  void PrintItemsHeader(Surface& obj);
  // The item table's frame from `top` to the page foot, the header boxes and the totals area.
  void printTable(Surface& obj, double top, bool hasBilling, bool hasShipping, bool hasLPO);
  void PrintIt(ClassInvoice& invoice, bool printHeader);
  // One goods or expense line: fields fitted to their columns, the description wrapped.
  void PrintItem(Surface& obj, ClassInvoiceItem& It);
  std::string AdjustedText(Surface& obj, std::string& text, int16_t& length);

 private:
  // Walks `lines` from `next` while each fits above the page foot; returns false when the page
  // is full. `lines_on_page` counts what this page has printed so far.
  bool PrintLines(Surface& obj, const Collection<ClassInvoiceItem>& lines, int16_t count,
                  int32_t& next, int& lines_on_page);
  void PrintBilling(Surface& obj, ClassInvoice& invoice);
  void PrintShipping(Surface& obj, ClassInvoice& invoice, double top);
  void PrintPurchaseOrder(Surface& obj, ClassInvoice& invoice);
  void DrawHeaderBoxes(Surface& obj, bool hasBilling, bool hasShipping, bool hasLPO);
  static void DrawTotalsArea(Surface& obj);
  void PrintExpenseHeading(Surface& obj);
  void PrintTotals(Surface& obj, ClassInvoice& invoice);
  void PrintNotesAndWords(Surface& obj, ClassInvoice& invoice);
  void PrintSignatures(Surface& obj, ClassInvoice& invoice);
  static std::string AppendBlanks(std::string text, int n);

  // Set the first time the other-expenses heading is printed and never cleared: one printer
  // object heads the expenses of its first document only.
  bool expense_heading_printed_ = false;

  // Written by PrintInvoiceHeader, read by printTable.
  double billing_box_bottom_ = 0;
  double shipping_x_ = 0;
  double date_x_ = 0;
  double number_x_ = 0;
  double block_top_ = 0;
  double caption_bottom_ = 0;
  double value_bottom_ = 0;
  double po_top_ = 0;
  double po_x_ = 0;
  double po_caption_bottom_ = 0;
  double po_value_bottom_ = 0;
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

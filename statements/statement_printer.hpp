// The statement printer: header, ledger pages, totals, aging, notes, signatures and cheque list.
#pragma once

#include <any>
#include <cstdint>
#include <string>

#include "foundation/collection.hpp"
#include "foundation/page_flow.hpp"
#include "foundation/surface.hpp"
#include "statements/statement.hpp"

namespace quorvel {

class ClassStatementPrinter {
 public:
  // Where the header put its blocks: the frame is drawn around them.
  struct HeaderMarks {
    double bill_to_title_bottom = 0;  // the billing box hangs from here
    double date_box_left = 0, date_box_top = 0;
    double date_label_bottom = 0, date_value_bottom = 0;
  };

  bool printItemsTable = true;  // the frame on every page; also the cheque list's frame switch
  bool printLPONumber = true;   // handed to printTable as hasLPO
  // Held for the host's preview; no printing routine reads it.
  CollectionRef<std::any> PreviewCollection;

  void PrintSalesReceipt() {}
  void PrintStatementHeader(Surface& surface, ClassStatement& statement, bool printHeader);
  // The whole document, ended with EndDoc. May write CustomerSign/CashierSign back (see notes).
  void PrintStatement(Surface& surface, ClassStatement& statement, bool printHeader);
  void PrintStandardAging(Surface& surface, double curY, ClassStatement& statement);
  void PrintByMonthAging(Surface& surface, double curY, ClassStatement& statement);
  void PrintItemsHeader(Surface& surface);
  void printTable(Surface& surface, double top, bool hasBilling, bool hasShipping, bool hasLPO,
                  bool showByMonth);
  void PrintIt(ClassStatement& statement, bool printHeader);
  void PrintPDCChecks(Surface& surface);
  void PrintChecksHeader(Surface& surface);
  void PrintItem(Surface& surface, const ClassStatementItem& item);
  std::string AdjustedText(Surface& surface, std::string& text, int16_t& length);

 private:
  HeaderMarks PrintHead(Surface& surface, ClassStatement& statement, bool printHeader);
  void DrawFrame(Surface& surface, double top, const HeaderMarks& marks, bool hasBilling, bool showByMonth);
  void PrintTotalsRow(Surface& surface, const ClassStatement& statement);
  void PrintNotes(Surface& surface, const ClassStatement& statement);
  void PrintSignatures(Surface& surface, ClassStatement& statement);
  void PrintChequeList(Surface& surface, ClassStatement& statement, bool printHeader, int16_t pageNumber);
  // 2500 + descriptionWidth + offset, in 16-bit arithmetic: the edges right of the Description.
  double GridEdge(int16_t offset) const;

  int16_t descriptionWidth = 4800;
  double agingColumnWidth = 0;
  // The last header's marks, for a host that calls printTable after PrintStatementHeader.
  HeaderMarks last_marks_;
};

}  // namespace quorvel

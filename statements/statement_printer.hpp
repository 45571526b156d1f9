// The statement printer: header, ledger pages, totals, aging, notes, signatures and cheque list.
#pragma once

#include <any>
#include <cstdint>
#include <string>

#include "foundation/collection.hpp"
#include "foundation/surface.hpp"
#include "statements/statement.hpp"

namespace quorvel {

class ClassStatementPrinter {
 public:
  bool printItemsTable = true;  // the frame on every page; also the cheque list's frame switch
  bool printLPONumber = true;   // handed to printTable as hasLPO
  // Held for the host's preview; no printing routine reads it.
  CollectionRef<std::any> PreviewCollection;

  void PrintSalesReceipt() {}
  void PrintStatementHeader(Surface& obj, ClassStatement& statement, bool printHeader);
  // The whole document, ended with EndDoc. May write CustomerSign/CashierSign back (see notes).
  void PrintStatement(Surface& obj, ClassStatement& statement, bool printHeader);
  void PrintStandardAging(Surface& obj, double curY, ClassStatement& statement);
  void PrintByMonthAging(Surface& obj, double curY, ClassStatement& statement);
  void PrintItemsHeader(Surface& obj);
  void printTable(Surface& obj, double top, bool hasBilling, bool hasShipping, bool hasLPO,
                  bool showByMonth);
  void PrintIt(ClassStatement& statement, bool printHeader);
  void PrintPDCChecks(Surface& obj);
  void PrintChecksHeader(Surface& obj);
  void PrintItem(Surface& obj, const ClassStatementItem& It);
  std::string AdjustedText(Surface& obj, std::string& text, int16_t& length);

 private:
  // One page's ledger lines from `next` on; returns true when lines are left for another page.
  bool PrintPageLines(Surface& obj, ClassStatement& statement, int16_t& next);
  void PrintTotalsRow(Surface& obj, const ClassStatement& statement);
  void PrintNotes(Surface& obj, const ClassStatement& statement);
  void PrintSignatures(Surface& obj, ClassStatement& statement);
  void PrintChequeList(Surface& obj, ClassStatement& statement, bool printHeader, int16_t pageNumber);
  // 2500 + descriptionWidth + offset, in 16-bit arithmetic: the edges right of the Description.
  double GridEdge(int16_t offset) const;

  int16_t descriptionWidth = 4800;
  double agingColumnWidth = 0;
  double billToTitleBottom = 0;
  double dateBoxLeft = 0;
  double dateBoxTop = 0;
  double dateLabelBottom = 0;
  double dateValueBottom = 0;
  double totalsTop = 0;
};

}  // namespace quorvel

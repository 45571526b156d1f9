// Statement document routine: page loop over the ledger, then totals, aging, notes, signatures.
#include "statements/statement_printer.hpp"

#include "cheque_lists/check_printer.hpp"
#include "foundation/company_info.hpp"
#include "foundation/page_footer.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/runtime.hpp"
#include "foundation/text_fitting.hpp"

namespace quorvel {

namespace {

// Fits a copy of `text`: the statement's own values are never changed by fitting.
std::string Fitted(ClassStatementPrinter& printer, Surface& obj, std::string text, int16_t length) {
  return printer.AdjustedText(obj, text, length);
}

}  // namespace

void ClassStatementPrinter::PrintIt(ClassStatement& statement, bool printHeader) {
  PrintOnSystemPrinter([&](Surface& printer) { PrintStatement(printer, statement, printHeader); });
}

void ClassStatementPrinter::PrintStatement(Surface& obj, ClassStatement& statement, bool printHeader) {
  // A count past 16 bits fails here, before anything is drawn.
  Count16(*statement.StatementItems(), "StatementItems");
  Count16(*statement.PDCChecks(), "PDCChecks");
  const double table_width = obj.Width() - 1000 - 1000;
  agingColumnWidth = statement.showByMonth ? Int(table_width / 8) : Int(table_width / 6);
  obj.Font().Size(10);
  obj.Font().Name("Arial");
  bool more = true;
  int16_t next = 1;
  int16_t page = 1;
  while (more) {
    PrintStatementHeader(obj, statement, printHeader);
    const double page_top = obj.CurrentY();
    PrintItemsHeader(obj);
    more = PrintPageLines(obj, statement, next);
    if (printItemsTable)
      printTable(obj, page_top, statement.hasBilling, statement.hasShipping, printLPONumber,
                 statement.showByMonth);
    const double after_table = obj.CurrentY();
    if (statement.PrintPDCChecks || more || page >= 2)
      PrintPageNumber(obj, 6, "Page " + std::to_string(page));
    obj.CurrentY(after_table);
    if (more) {
      page = AddInt16(page, 1, "page number");
      if (IsSystemPrinter(obj)) obj.NewPage();
    }
  }
  PrintTotalsRow(obj, statement);
  obj.Print("");
  const double curY = obj.CurrentY();
  if (statement.showByMonth) {
    PrintByMonthAging(obj, curY, statement);
  } else {
    PrintStandardAging(obj, curY, statement);
  }
  PrintNotes(obj, statement);
  PrintSignatures(obj, statement);
  if (statement.PrintPDCChecks && statement.PDCChecks()->Count() >= 1)
    PrintChequeList(obj, statement, printHeader, AddInt16(page, 1, "page number"));
  IgnoreErrors([&] { obj.EndDoc(); });
}

bool ClassStatementPrinter::PrintPageLines(Surface& obj, ClassStatement& statement, int16_t& next) {
  const Collection<ClassStatementItem>& items = *statement.StatementItems();
  const double limit = PageLimit(obj);
  // With no line left to print there is no further page to make: a statement without lines
  // gets its one page and ends.
  bool more = false;
  int lines_on_page = 0;
  while (next <= Count16(items, "StatementItems")) {
    more = false;
    // A line goes to the next page once it would reach the limit. A line that does not fit even
    // on a page with no line yet is printed anyway, past the foot: another page could not take it.
    if (!(obj.CurrentY() + obj.TextHeight("W") < limit) && lines_on_page > 0) {
      more = true;
      break;
    }
    PrintItem(obj, *items.Item(next));
    obj.CurrentY(obj.CurrentY() + 100);
    ++lines_on_page;
    next = AddInt16(next, 1, "line index");
  }
  return more;
}

void ClassStatementPrinter::PrintStatementHeader(Surface& obj, ClassStatement& statement,
                                                 bool printHeader) {
  StartDocumentHead(obj, printHeader);
  const double header_top = obj.CurrentY();
  obj.CurrentX(1000);
  obj.Font().Size(24);
  obj.Print(statement.printTitle);
  // The date box stands level with the title at the right margin.
  obj.Font().Size(10);
  obj.CurrentY(header_top);
  obj.CurrentX(obj.Width() - 1000 - 1500);
  dateBoxLeft = obj.CurrentX();
  dateBoxTop = obj.CurrentY();
  obj.CurrentX(dateBoxLeft + 750 - obj.TextWidth("Date") / 2);
  obj.Print("Date");
  dateLabelBottom = obj.CurrentY();
  obj.CurrentX(dateBoxLeft + 750 - obj.TextWidth(statement.StatementDate) / 2);
  obj.Print(statement.StatementDate);
  dateValueBottom = obj.CurrentY();
  obj.Print("");
  if (statement.hasBilling) {
    obj.CurrentX(1000);
    obj.Font().Bold(true);
    obj.Print(statement.BillToTitle);
    billToTitleBottom = obj.CurrentY();
    obj.Font().Bold(false);
    for (const std::string* line : {&statement.Billing1, &statement.Billing2, &statement.Billing3,
                                    &statement.Billing4, &statement.Billing5}) {
      obj.CurrentX(1000);
      obj.Print(" " + Fitted(*this, obj, *line, 3500));
    }
  }
  obj.Print("");
  obj.Print("");
}

void ClassStatementPrinter::PrintItemsHeader(Surface& obj) {
  const double saved_size = obj.Font().Size();
  obj.Font().Size(10);
  const double y = obj.CurrentY();
  // The Balance label is centred on a nominal 1470-wide column although the lines and the
  // frame run to the right margin.
  const struct {
    const char* label;
    double centre;
  } labels[] = {{"Date", 1750},
                {"Description", 2500 + Int(descriptionWidth / 2.0)},
                {"Debit", 7300 + 580},
                {"Credit", 8460 + 580},
                {"Balance", 9620 + 735}};
  for (const auto& l : labels) {
    obj.CurrentX(l.centre - Int(obj.TextWidth(l.label) / 2));
    obj.CurrentY(y);
    obj.Print(l.label);
  }
  obj.CurrentX(1000);
  obj.Line(4, 1000, obj.CurrentY(), obj.Width() - 1000, obj.CurrentY(), 0);
  obj.Font().Size(saved_size);
}

void ClassStatementPrinter::PrintItem(Surface& obj, const ClassStatementItem& It) {
  const double y = obj.CurrentY();
  obj.CurrentX(1000);
  obj.Print(Fitted(*this, obj, " " + It.TransactionDate, 1500));
  obj.CurrentX(2500);
  obj.CurrentY(y);
  obj.Print(Fitted(*this, obj, " " + It.Description, descriptionWidth));
  const struct {
    const std::string& text;
    int16_t length;
    double right;
  } amounts[] = {{It.Debit, 1160, GridEdge(1160)},
                 {It.Credit, 1160, GridEdge(2320)},
                 {It.balance, 1470, obj.Width() - 1000}};
  for (const auto& a : amounts) {
    const std::string cell = Fitted(*this, obj, a.text + " ", a.length);
    obj.CurrentY(y);
    PrintRightAligned(obj, a.right, cell);
  }
}

void ClassStatementPrinter::PrintTotalsRow(Surface& obj, const ClassStatement& statement) {
  const double x = obj.Width() - 2 * Int(obj.Width() / 3);
  const double y = PageLimit(obj);
  obj.CurrentX(x);
  obj.CurrentY(y);
  obj.Font().Bold(true);
  obj.Print("Total:");
  // Unfitted: a long total may run over the rules.
  obj.CurrentY(y);
  PrintRightAligned(obj, GridEdge(1160), statement.totalDebit);
  obj.CurrentY(y);
  PrintRightAligned(obj, GridEdge(2320), statement.totalCredit);
  obj.CurrentY(y);
  PrintRightAligned(obj, obj.Width() - 1000, statement.totalBalance + " ");
  totalsTop = y;
  obj.Font().Bold(false);
}

void ClassStatementPrinter::PrintNotes(Surface& obj, const ClassStatement& statement) {
  // The aging left the size at 8: the two blank lines are small ones.
  obj.Print("");
  obj.Print("");
  obj.Font().Size(10);
  obj.Font().Bold(true);
  obj.CurrentX(1000);
  obj.Print("Notes:");
  obj.Font().Bold(false);
  for (const std::string* note :
       {&statement.CustomerNote1, &statement.CustomerNote2, &statement.CustomerNote3}) {
    obj.CurrentX(1000);
    obj.Print(*note);
  }
}

void ClassStatementPrinter::PrintSignatures(Surface& obj, ClassStatement& statement) {
  obj.Print("");
  obj.Print("");
  // A single caption always takes the left place; the host's statement keeps the change,
  // whether or not the captions are printed.
  if (statement.CustomerSign.empty()) {
    statement.CustomerSign = statement.CashierSign;
    statement.CashierSign = "";
  }
  if (!statement.PrintFooter || statement.CustomerSign.empty()) return;
  const double caption_y = obj.CurrentY();
  obj.CurrentX(1230);
  obj.Print(statement.CustomerSign);
  const bool cashier = !statement.CashierSign.empty();
  if (cashier) {
    obj.CurrentX(6000);
    obj.CurrentY(caption_y);
    obj.Print(statement.CashierSign);
  }
  // The customer's rule runs 460 past its caption, the cashier's 230: both kept as they are.
  const double y = obj.CurrentY();
  obj.Line(4, 1000, y, 1230 + obj.TextWidth(statement.CustomerSign) + 460, y, 0);
  if (cashier) obj.Line(4, 6000 - 230, y, 6000 + obj.TextWidth(statement.CashierSign) + 230, y, 0);
}

void ClassStatementPrinter::PrintChequeList(Surface& obj, ClassStatement& statement,
                                            bool printHeader, int16_t pageNumber) {
  if (IsSystemPrinter(obj)) obj.NewPage();
  ClassCheckPrinter cheques;
  cheques.PrintChecks(obj, statement, printHeader, printItemsTable, pageNumber);
}

double ClassStatementPrinter::GridEdge(int16_t offset) const {
  return AddInt16(AddInt16(2500, descriptionWidth, "ledger column edge"), offset, "ledger column edge");
}

std::string ClassStatementPrinter::AdjustedText(Surface& obj, std::string& text, int16_t& length) {
  return quorvel::AdjustedText(obj, text, length);
}

}  // namespace quorvel

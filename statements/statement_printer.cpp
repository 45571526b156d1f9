// Statement document routine: the ledger through the page flow, then totals, aging, notes, signatures.
#include "statements/statement_printer.hpp"

#include "cheque_lists/check_printer.hpp"
#include "foundation/company_info.hpp"
#include "foundation/font_state.hpp"
#include "foundation/page_flow.hpp"
#include "foundation/page_footer.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/runtime.hpp"
#include "foundation/text_fitting.hpp"

namespace quorvel {

namespace {

// Fits a copy of `text`: the statement's own values are never changed by fitting.
std::string Fitted(ClassStatementPrinter& printer, Surface& surface, std::string text, int16_t length) {
  return printer.AdjustedText(surface, text, length);
}

}  // namespace

void ClassStatementPrinter::PrintIt(ClassStatement& statement, bool printHeader) {
  PrintOnSystemPrinter([&](Surface& printer) { PrintStatement(printer, statement, printHeader); });
}

void ClassStatementPrinter::PrintStatement(Surface& surface, ClassStatement& statement, bool printHeader) {
  // A count past 16 bits fails here, before anything is drawn.
  const Collection<ClassStatementItem>& items = *statement.StatementItems();
  const int16_t count = Count16(items, "StatementItems");
  Count16(*statement.PDCChecks(), "PDCChecks");
  const double table_width = surface.Width() - 1000 - 1000;
  agingColumnWidth = statement.showByMonth ? Int(table_width / 8) : Int(table_width / 6);
  surface.Font().Size(10);
  surface.Font().Name("Arial");

  HeaderMarks marks;
  PageFlow flow;
  flow.head = [&] { marks = PrintHead(surface, statement, printHeader); };
  flow.captions = [&] { PrintItemsHeader(surface); };
  LineSection lines;
  lines.count = count;
  lines.estimated_height = [&](int32_t) { return surface.TextHeight("W"); };
  lines.print = [&](int32_t index) { PrintItem(surface, *items.Item(index)); };
  flow.sections.push_back(std::move(lines));
  if (printItemsTable)
    flow.frame = [&](double top) { DrawFrame(surface, top, marks, statement.hasBilling, statement.showByMonth); };
  // A line reaching the foot exactly goes to the next page.
  flow.fits_at_limit = false;
  // Numbered further down than the goods documents, and always when the cheque list follows.
  flow.numbering.blank_lines = 6;
  flow.numbering.always = statement.PrintPDCChecks;
  const int16_t last_page = RunPageFlow(surface, flow);

  PrintTotalsRow(surface, statement);
  surface.Print("");
  const double curY = surface.CurrentY();
  if (statement.showByMonth) {
    PrintByMonthAging(surface, curY, statement);
  } else {
    PrintStandardAging(surface, curY, statement);
  }
  PrintNotes(surface, statement);
  PrintSignatures(surface, statement);
  if (statement.PrintPDCChecks && statement.PDCChecks()->Count() >= 1)
    PrintChequeList(surface, statement, printHeader, AddInt16(last_page, 1, "page number"));
  IgnoreErrors([&] { surface.EndDoc(); });
}

void ClassStatementPrinter::PrintStatementHeader(Surface& surface, ClassStatement& statement,
                                                 bool printHeader) {
  PrintHead(surface, statement, printHeader);
}

ClassStatementPrinter::HeaderMarks ClassStatementPrinter::PrintHead(Surface& surface, ClassStatement& statement,
                                                                    bool printHeader) {
  // Without a billing block its box keeps the place an earlier header gave it.
  HeaderMarks marks = last_marks_;
  StartDocumentHead(surface, printHeader);
  // The date box stands level with the title at the right margin.
  const double header_top = PrintDocumentTitle(surface, statement.printTitle);
  surface.CurrentY(header_top);
  marks.date_box_left = surface.Width() - 1000 - 1500;
  marks.date_box_top = header_top;
  surface.CurrentX(marks.date_box_left + 750 - surface.TextWidth("Date") / 2);
  surface.Print("Date");
  marks.date_label_bottom = surface.CurrentY();
  surface.CurrentX(marks.date_box_left + 750 - surface.TextWidth(statement.StatementDate) / 2);
  surface.Print(statement.StatementDate);
  marks.date_value_bottom = surface.CurrentY();
  surface.Print("");
  if (statement.hasBilling) {
    surface.CurrentX(1000);
    surface.Font().Bold(true);
    surface.Print(statement.BillToTitle);
    marks.bill_to_title_bottom = surface.CurrentY();
    surface.Font().Bold(false);
    for (const std::string* line : {&statement.Billing1, &statement.Billing2, &statement.Billing3,
                                    &statement.Billing4, &statement.Billing5}) {
      surface.CurrentX(1000);
      surface.Print(" " + Fitted(*this, surface, *line, 3500));
    }
  }
  surface.Print("");
  surface.Print("");
  last_marks_ = marks;
  return marks;
}

void ClassStatementPrinter::PrintItemsHeader(Surface& surface) {
  ScopedFont font(surface);
  surface.Font().Size(10);
  const double y = surface.CurrentY();
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
    surface.CurrentX(l.centre - Int(surface.TextWidth(l.label) / 2));
    surface.CurrentY(y);
    surface.Print(l.label);
  }
  DrawCaptionRule(surface);
}

void ClassStatementPrinter::PrintItem(Surface& surface, const ClassStatementItem& item) {
  const double y = surface.CurrentY();
  surface.CurrentX(1000);
  surface.Print(Fitted(*this, surface, " " + item.TransactionDate, 1500));
  surface.CurrentX(2500);
  surface.CurrentY(y);
  surface.Print(Fitted(*this, surface, " " + item.Description, descriptionWidth));
  const struct {
    const std::string& text;
    int16_t length;
    double right;
  } amounts[] = {{item.Debit, 1160, GridEdge(1160)},
                 {item.Credit, 1160, GridEdge(2320)},
                 {item.balance, 1470, surface.Width() - 1000}};
  for (const auto& a : amounts) {
    const std::string cell = Fitted(*this, surface, a.text + " ", a.length);
    surface.CurrentY(y);
    PrintRightAligned(surface, a.right, cell);
  }
}

void ClassStatementPrinter::PrintTotalsRow(Surface& surface, const ClassStatement& statement) {
  const double x = surface.Width() - 2 * Int(surface.Width() / 3);
  const double y = PageLimit(surface);
  surface.CurrentX(x);
  surface.CurrentY(y);
  surface.Font().Bold(true);
  surface.Print("Total:");
  // Unfitted: a long total may run over the rules.
  surface.CurrentY(y);
  PrintRightAligned(surface, GridEdge(1160), statement.totalDebit);
  surface.CurrentY(y);
  PrintRightAligned(surface, GridEdge(2320), statement.totalCredit);
  surface.CurrentY(y);
  PrintRightAligned(surface, surface.Width() - 1000, statement.totalBalance + " ");
  surface.Font().Bold(false);
}

void ClassStatementPrinter::PrintNotes(Surface& surface, const ClassStatement& statement) {
  // The aging left the size at 8: the two blank lines are small ones.
  surface.Print("");
  surface.Print("");
  surface.Font().Size(10);
  surface.Font().Bold(true);
  surface.CurrentX(1000);
  surface.Print("Notes:");
  surface.Font().Bold(false);
  for (const std::string* note :
       {&statement.CustomerNote1, &statement.CustomerNote2, &statement.CustomerNote3}) {
    surface.CurrentX(1000);
    surface.Print(*note);
  }
}

void ClassStatementPrinter::PrintSignatures(Surface& surface, ClassStatement& statement) {
  surface.Print("");
  surface.Print("");
  // A single caption always takes the left place; the host's statement keeps the change,
  // whether or not the captions are printed.
  if (statement.CustomerSign.empty()) {
    statement.CustomerSign = statement.CashierSign;
    statement.CashierSign = "";
  }
  if (!statement.PrintFooter || statement.CustomerSign.empty()) return;
  const double caption_y = surface.CurrentY();
  surface.CurrentX(1230);
  surface.Print(statement.CustomerSign);
  const bool cashier = !statement.CashierSign.empty();
  if (cashier) {
    surface.CurrentX(6000);
    surface.CurrentY(caption_y);
    surface.Print(statement.CashierSign);
  }
  // The customer's rule runs 460 past its caption, the cashier's 230: both kept as they are.
  const double y = surface.CurrentY();
  DrawRule(surface, 1000, y, 1230 + surface.TextWidth(statement.CustomerSign) + 460, y);
  if (cashier) DrawRule(surface, 6000 - 230, y, 6000 + surface.TextWidth(statement.CashierSign) + 230, y);
}

void ClassStatementPrinter::PrintChequeList(Surface& surface, ClassStatement& statement,
                                            bool printHeader, int16_t pageNumber) {
  if (surface.BreaksPages()) surface.NewPage();
  ClassCheckPrinter cheques;
  cheques.PrintChecks(surface, statement, printHeader, printItemsTable, pageNumber);
}

double ClassStatementPrinter::GridEdge(int16_t offset) const {
  return AddInt16(AddInt16(2500, descriptionWidth, "ledger column edge"), offset, "ledger column edge");
}

std::string ClassStatementPrinter::AdjustedText(Surface& surface, std::string& text, int16_t& length) {
  return quorvel::AdjustedText(surface, text, length);
}

}  // namespace quorvel

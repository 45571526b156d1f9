// Cheque-list layout: page head, column headings, one row per cheque, frame, page numbers, total.
#include "cheque_lists/check_printer.hpp"

#include "foundation/company_info.hpp"
#include "foundation/page_footer.hpp"
#include "foundation/runtime.hpp"
#include "foundation/text_fitting.hpp"

namespace quorvel {

namespace {

struct Heading {
  const char* text;
  double centre;
};

// Centred on fixed points: "Amount" matches the right-aligned amounts only on a page about
// 11,800 wide, which is how the list has always looked.
constexpr Heading kHeadings[] = {
    {"Trans.Date", 1000 + 1500 / 2}, {"Trans.#", 2500 + 1500 / 2}, {"Bank", 4000 + 1770 / 2},
    {"Chq.Date", 6301 + 1500 / 2},   {"Chq.#", 7801 + 1500 / 2},   {"Amount", 9301 + 1500 / 2},
};

// Left edges of the columns after the first; the frame rules the page on them.
constexpr double kColumnEdges[] = {2500, 4000, 6301, 7801, 9301};

}  // namespace

void ClassCheckPrinter::printHeader(Surface& obj, bool printHeader) {
  StartDocumentHead(obj, printHeader);
  obj.CurrentX(1000);
  obj.Font().Size(24);
  obj.Print("Post-Dated Cheques");
  obj.Font().Size(10);
  obj.Print("");
}

void ClassCheckPrinter::PrintItemsHeader(Surface& obj) {
  const double saved_size = obj.Font().Size();
  obj.Font().Size(10);
  // The row's y is kept as a whole number, so the headings sit on a rounded y.
  const int32_t y = ToInt32(obj.CurrentY(), "heading row y");
  for (const Heading& h : kHeadings) {
    obj.CurrentX(ToInt32(h.centre - Int(obj.TextWidth(h.text) / 2), "heading x"));
    obj.CurrentY(y);
    obj.Print(h.text);
  }
  obj.CurrentX(1000);
  obj.Line(4, 1000, obj.CurrentY(), obj.Width() - 1000, obj.CurrentY(), 0);
  obj.Font().Size(saved_size);
}

void ClassCheckPrinter::PrintItem(Surface& obj, const ClassCheck& It) {
  // Dates end exactly where the neighbouring number starts; a long bank name runs on unfitted.
  const double y = obj.CurrentY();
  obj.CurrentX(2500 - obj.TextWidth(It.TransactionDate));
  obj.Print(It.TransactionDate);
  obj.CurrentX(2500);
  obj.CurrentY(y);
  obj.Print(It.TransactionNum);
  obj.CurrentX(4000);
  obj.CurrentY(y);
  obj.Print(It.Bank);
  obj.CurrentX(7801 - obj.TextWidth(It.ChqDate));
  obj.CurrentY(y);
  obj.Print(It.ChqDate);
  obj.CurrentX(7801);
  obj.CurrentY(y);
  obj.Print(It.ChqNum);
  obj.CurrentX((obj.Width() - 1000) - obj.TextWidth(It.Amount));
  obj.CurrentY(y);
  obj.Print(It.Amount);
}

void ClassCheckPrinter::printTable(Surface& obj, double top, bool hasBilling, bool hasShipping,
                                   bool hasLPO) {
  const double right = obj.Width() - 1000;
  const double bottom = PageLimit(obj);
  obj.Line(4, 1000, top, right, top, 0);
  obj.Line(4, 1000, top, 1000, bottom, 0);
  for (double x : kColumnEdges) obj.Line(4, x, top, x, bottom, 0);
  obj.Line(4, right, top, right, bottom, 0);
  obj.Line(4, 1000, bottom, right, bottom, 0);
}

void ClassCheckPrinter::PrintChecks(Surface& obj, ClassStatement& statement, bool printHeader,
                                    bool printTable, int16_t& pageNumber) {
  const Collection<ClassCheck>& checks = *statement.PDCChecks();
  const int16_t count = Count16(checks, "PDCChecks");
  obj.Font().Size(10);
  obj.Font().Name("Arial");
  const double limit = PageLimit(obj);
  bool more = true;
  int16_t i = 1;
  while (more) {
    this->printHeader(obj, printHeader);
    const double top = obj.CurrentY();
    if (count == 0) more = false;
    PrintItemsHeader(obj);
    int rows_on_page = 0;
    while (i <= count) {
      more = false;
      // Equality counts as full. A row that does not fit even on a page with no row yet is
      // printed anyway (past the foot): another empty page could not take it either.
      if (!(obj.CurrentY() + obj.TextHeight("W") < limit) && rows_on_page > 0) {
        more = true;
        break;
      }
      PrintItem(obj, *checks.Item(i));
      obj.CurrentY(obj.CurrentY() + 100);
      ++rows_on_page;
      i = AddInt16(i, 1, "cheque index");
    }
    if (printTable) this->printTable(obj, top, false, false, false);
    const double end = obj.CurrentY();
    // Four lines down from the foot; the leading blank of the number is part of the label.
    if (pageNumber > 1 || more) PrintPageNumber(obj, 4, "Page " + SignedText(pageNumber));
    obj.CurrentY(end);
    if (!more) break;
    pageNumber = AddInt16(pageNumber, 1, "page number");
    if (IsSystemPrinter(obj)) obj.NewPage();
  }
  PrintListTotal(obj, statement);
}

void ClassCheckPrinter::PrintListTotal(Surface& obj, ClassStatement& statement) {
  const double x = obj.Width() - Int(obj.Width() / 3);
  const double y = PageLimit(obj);
  obj.CurrentY(y);
  obj.CurrentX(x);
  obj.Font().Bold(true);
  obj.Print("Total:");
  obj.Font().Bold(false);
  obj.CurrentY(y);
  obj.Font().Bold(true);
  const std::string total = statement.PDCTotal + " ";
  obj.CurrentX((obj.Width() - 1000) - obj.TextWidth(total));
  obj.Print(total);
  obj.Print("");
  obj.Print("");
  // Bold is left on: nothing is printed after the total but the document's end.
}

std::string ClassCheckPrinter::AdjustedText(Surface& obj, std::string& text, int16_t& length) {
  return quorvel::AdjustedText(obj, text, length);
}

}  // namespace quorvel

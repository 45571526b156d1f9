// Cheque-list layout: page head, column headings, one row per cheque and the frame through the
// page flow, then the total.
#include "cheque_lists/check_printer.hpp"

#include "foundation/company_info.hpp"
#include "foundation/font_state.hpp"
#include "foundation/page_flow.hpp"
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

void ClassCheckPrinter::printHeader(Surface& surface, bool print_header) {
  StartDocumentHead(surface, print_header);
  PrintDocumentTitle(surface, "Post-Dated Cheques");
  surface.Print("");
}

void ClassCheckPrinter::PrintItemsHeader(Surface& surface) {
  ScopedFont font(surface);
  surface.Font().Size(10);
  // The row's y is kept as a whole number, so the headings sit on a rounded y.
  const int32_t y = ToInt32(surface.CurrentY(), "heading row y");
  for (const Heading& h : kHeadings) {
    surface.CurrentX(ToInt32(h.centre - Int(surface.TextWidth(h.text) / 2), "heading x"));
    surface.CurrentY(y);
    surface.Print(h.text);
  }
  DrawCaptionRule(surface);
}

void ClassCheckPrinter::PrintItem(Surface& surface, const ClassCheck& item) {
  // Dates end exactly where the neighbouring number starts; a long bank name runs on unfitted.
  const double y = surface.CurrentY();
  surface.CurrentX(2500 - surface.TextWidth(item.TransactionDate));
  surface.Print(item.TransactionDate);
  surface.CurrentX(2500);
  surface.CurrentY(y);
  surface.Print(item.TransactionNum);
  surface.CurrentX(4000);
  surface.CurrentY(y);
  surface.Print(item.Bank);
  surface.CurrentX(7801 - surface.TextWidth(item.ChqDate));
  surface.CurrentY(y);
  surface.Print(item.ChqDate);
  surface.CurrentX(7801);
  surface.CurrentY(y);
  surface.Print(item.ChqNum);
  surface.CurrentX((surface.Width() - 1000) - surface.TextWidth(item.Amount));
  surface.CurrentY(y);
  surface.Print(item.Amount);
}

void ClassCheckPrinter::printTable(Surface& surface, double top, bool hasBilling, bool hasShipping,
                                   bool hasLPO) {
  const double right = surface.Width() - 1000;
  const double bottom = PageLimit(surface);
  DrawRule(surface, 1000, top, right, top);
  DrawRule(surface, 1000, top, 1000, bottom);
  for (double x : kColumnEdges) DrawRule(surface, x, top, x, bottom);
  DrawRule(surface, right, top, right, bottom);
  DrawRule(surface, 1000, bottom, right, bottom);
}

void ClassCheckPrinter::PrintChecks(Surface& surface, ClassStatement& statement, bool print_header,
                                    bool print_frame, int16_t& pageNumber) {
  const Collection<ClassCheck>& checks = *statement.PDCChecks();
  const int16_t count = Count16(checks, "PDCChecks");  // before anything is drawn
  surface.Font().Size(10);
  surface.Font().Name("Arial");

  PageFlow flow;
  flow.head = [&] { printHeader(surface, print_header); };
  flow.captions = [&] { PrintItemsHeader(surface); };
  LineSection rows;
  rows.count = count;
  rows.estimated_height = [&](int32_t) { return surface.TextHeight("W"); };
  rows.print = [&](int32_t index) { PrintItem(surface, *checks.Item(index)); };
  flow.sections.push_back(std::move(rows));
  if (print_frame) flow.frame = [&](double top) { printTable(surface, top, false, false, false); };
  // A row reaching the foot exactly goes to the next page.
  flow.fits_at_limit = false;
  // The leading blank of the number is part of the label ("Page  2").
  flow.numbering.label = [](int16_t page) { return "Page " + SignedText(page); };
  flow.first_page = pageNumber;
  pageNumber = RunPageFlow(surface, flow);
  PrintListTotal(surface, statement);
}

void ClassCheckPrinter::PrintListTotal(Surface& surface, ClassStatement& statement) {
  const double x = surface.Width() - Int(surface.Width() / 3);
  const double y = PageLimit(surface);
  surface.CurrentY(y);
  surface.CurrentX(x);
  surface.Font().Bold(true);
  surface.Print("Total:");
  surface.Font().Bold(false);
  surface.CurrentY(y);
  surface.Font().Bold(true);
  const std::string total = statement.PDCTotal + " ";
  surface.CurrentX((surface.Width() - 1000) - surface.TextWidth(total));
  surface.Print(total);
  surface.Print("");
  surface.Print("");
  // Bold is left on: nothing is printed after the total but the document's end.
}

std::string ClassCheckPrinter::AdjustedText(Surface& surface, std::string& text, int16_t& length) {
  return quorvel::AdjustedText(surface, text, length);
}

}  // namespace quorvel

// Statement page frame, the two aging summaries, and the post-dated cheques section routines.
#include <array>

#include "foundation/font_state.hpp"
#include "foundation/page_footer.hpp"
#include "foundation/runtime.hpp"
#include "statements/statement_printer.hpp"

namespace quorvel {

namespace {

struct AgingColumn {
  std::string title;
  const std::string& amount;
  double width;  // used for centring
};

// Prints each column's title at curY and its amount 100 below the line after it, both centred
// in the column and unfitted. The size is left at 8 for the caller to reset.
template <size_t N>
void PrintAgingColumns(Surface& surface, double curY, double column_width,
                       const std::array<AgingColumn, N>& columns) {
  surface.Font().Size(8);
  for (size_t k = 0; k < N; ++k) {
    const double left = 1000 + static_cast<double>(k) * column_width;
    surface.CurrentY(curY);
    surface.CurrentX(left + Int((columns[k].width - surface.TextWidth(columns[k].title)) / 2));
    surface.Print(columns[k].title);
    surface.CurrentY(surface.CurrentY() + 100);
    surface.CurrentX(left + Int((columns[k].width - surface.TextWidth(columns[k].amount)) / 2));
    surface.Print(columns[k].amount);
  }
}

}  // namespace

void ClassStatementPrinter::printTable(Surface& surface, double top, bool hasBilling, bool hasShipping,
                                       bool hasLPO, bool showByMonth) {
  DrawFrame(surface, top, last_marks_, hasBilling, showByMonth);
}

void ClassStatementPrinter::DrawFrame(Surface& surface, double top, const HeaderMarks& marks, bool hasBilling,
                                      bool showByMonth) {
  const double right = surface.Width() - 1000;
  const double bottom = PageLimit(surface);
  DrawRule(surface, 1000, top, right, top);
  const double edges[] = {1000, 2500, GridEdge(0), GridEdge(1160), GridEdge(2320), right};
  for (double x : edges) DrawRule(surface, x, top, x, bottom);
  DrawRule(surface, 1000, bottom, right, bottom);
  if (hasBilling) DrawBox(surface, 1000, marks.bill_to_title_bottom, 5000, marks.bill_to_title_bottom + 1300);
  DrawBox(surface, marks.date_box_left, marks.date_box_top, right, marks.date_box_top + 500);
  DrawRule(surface, marks.date_box_left, marks.date_label_bottom, right, marks.date_label_bottom);
  DrawBox(surface, 1000, bottom, right, bottom + 400);
  const double aging_top = bottom + 400;
  DrawBox(surface, 1000, aging_top, right, aging_top + 800);
  // Eight separators for either layout: in the six-column one the last three fall on or past
  // the right edge, and the fifth moves 200 right to widen the "Over 90 Days" column.
  for (int i = 1; i <= 8; ++i) {
    const double x = 1000 + i * agingColumnWidth + (i == 5 && !showByMonth ? 200 : 0);
    DrawRule(surface, x, aging_top, x, aging_top + 800);
  }
  const double titles_foot = aging_top + Int(800.0 / 3) + 50;
  DrawRule(surface, 1000, titles_foot, right, titles_foot);
}

void ClassStatementPrinter::PrintStandardAging(Surface& surface, double curY, ClassStatement& statement) {
  const double w = agingColumnWidth;
  // Columns 4 and 5 are centred with a width 200 wider: that puts each text on the middle of
  // its column once the separator between them has moved 200 right.
  const std::array<AgingColumn, 6> columns{{
      {"Current", statement.currentDue, w},
      {"1-30 Days Past Due", statement.thirtyDaysDue, w},
      {"31-60 Days Past Due", statement.sixtyDaysDue, w},
      {"61-90 Days Past Due", statement.nintyDaysDue, w},
      {"Over 90 Days Past Due", statement.overNintyDaysDue, w + 200},
      {"Amount Due", statement.totalBalance, w + 200},
  }};
  PrintAgingColumns(surface, curY, w, columns);
}

void ClassStatementPrinter::PrintByMonthAging(Surface& surface, double curY, ClassStatement& statement) {
  const double w = agingColumnWidth;
  const ClassStatement& s = statement;
  const std::array<AgingColumn, 8> columns{{
      {s.month1Title, s.month1Value, w},
      {s.month2Title, s.month2Value, w},
      {s.month3Title, s.month3Value, w},
      {s.month4Title, s.month4Value, w},
      {s.month5Title, s.month5Value, w},
      {s.month6Title, s.month6Value, w},
      {s.month7Title, s.month7Value, w},
      {s.month8Title, s.month8Value, w},
  }};
  PrintAgingColumns(surface, curY, w, columns);
}

void ClassStatementPrinter::PrintPDCChecks(Surface& surface) {
  surface.Print("Post Dated Cheques");
  surface.Print("");
  surface.Print("");
}

void ClassStatementPrinter::PrintChecksHeader(Surface& surface) {
  ScopedFont font(surface);
  surface.Font().Size(10);
  const double y = surface.CurrentY();
  const struct {
    const char* label;
    double start, width;
  } labels[] = {{"Trans.Date", 1000, 1500}, {"Trans.#", 2500, 1500}, {"Bank", 4000, 1500},
                {"Chq Date", 7000, 1500},   {"Chq #", 8500, 1500},   {"Amount", 10000, 1470}};
  for (size_t k = 0; k < std::size(labels); ++k) {
    surface.CurrentY(y);
    surface.CurrentX(Int(labels[k].width / 2) + labels[k].start - Int(surface.TextWidth(labels[k].label) / 2));
    // The second label goes through a member looked up by name, which no surface here has:
    // the call fails with error 438 after "Trans.Date", and that failure reaches the host.
    if (k == 1) {
      surface.CallByName("Printtempstring");
    } else {
      surface.Print(labels[k].label);
    }
  }
  DrawCaptionRule(surface);
}

}  // namespace quorvel

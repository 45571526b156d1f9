// Document title, page-number line and right alignment.
#include "foundation/page_footer.hpp"

#include "foundation/company_info.hpp"

namespace quorvel {

double PageLimit(const Surface& surface) { return surface.Height() - ModuleCompanyInfo::Profile().BottomReserve; }

void PrintPageNumber(Surface& surface, int blank_lines, const std::string& label) {
  const double saved_y = surface.CurrentY();
  surface.CurrentY(PageLimit(surface));
  for (int i = 0; i < blank_lines; ++i) surface.Print("");
  surface.Font().Size(8);
  surface.CurrentX(surface.Width() - 1000 - surface.TextWidth("Page xx"));
  surface.Print(label);
  surface.Font().Size(10);
  surface.CurrentY(saved_y);
}

double PrintDocumentTitle(Surface& surface, const std::string& title) {
  const double top = surface.CurrentY();
  surface.CurrentX(1000);
  surface.Font().Size(24);
  surface.Print(title);
  surface.Font().Size(10);
  return top;
}

void PrintRightAligned(Surface& surface, double right_edge, const std::string& text) {
  surface.CurrentX(right_edge - surface.TextWidth(text));
  surface.Print(text);
}

}  // namespace quorvel

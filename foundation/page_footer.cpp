// Page-number line and right alignment.
#include "foundation/page_footer.hpp"

#include "foundation/company_info.hpp"

namespace quorvel {

double PageLimit(const Surface& obj) { return obj.Height() - ModuleCompanyInfo::Profile().BottomReserve; }

void PrintPageNumber(Surface& obj, int blank_lines, const std::string& label) {
  const double saved_y = obj.CurrentY();
  obj.CurrentY(PageLimit(obj));
  for (int i = 0; i < blank_lines; ++i) obj.Print("");
  obj.Font().Size(8);
  obj.CurrentX(obj.Width() - 1000 - obj.TextWidth("Page xx"));
  obj.Print(label);
  obj.Font().Size(10);
  obj.CurrentY(saved_y);
}

void PrintRightAligned(Surface& obj, double right_edge, const std::string& text) {
  obj.CurrentX(right_edge - obj.TextWidth(text));
  obj.Print(text);
}

}  // namespace quorvel

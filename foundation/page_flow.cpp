// The one page loop of every paged document.
#include "foundation/page_flow.hpp"

#include "foundation/page_footer.hpp"
#include "foundation/runtime.hpp"

namespace quorvel {

namespace {

struct SectionState {
  const LineSection* section;
  int32_t next = 1;
};

bool Fits(const Surface& surface, double height, bool fits_at_limit) {
  const double limit = PageLimit(surface);
  const double bottom = surface.CurrentY() + height;
  return fits_at_limit ? !(limit < bottom) : bottom < limit;
}

// Prints the section's lines from where the last page stopped while they fit; returns false
// when a line is left for the next page.
bool WalkSection(Surface& surface, const PageFlow& flow, SectionState& state, int& lines_on_page) {
  const LineSection& section = *state.section;
  while (state.next <= section.count) {
    const double height = section.estimated_height(state.next);
    if (lines_on_page > 0 && !Fits(surface, height, flow.fits_at_limit)) return false;
    section.print(state.next);
    surface.CurrentY(surface.CurrentY() + flow.after_line);
    ++state.next;
    ++lines_on_page;
  }
  return true;
}

void NumberPage(Surface& surface, const PageNumbering& numbering, int16_t page) {
  const std::string label = numbering.label ? numbering.label(page) : "Page " + std::to_string(page);
  PrintPageNumber(surface, numbering.blank_lines, label);
}

}  // namespace

int16_t RunPageFlow(Surface& surface, const PageFlow& flow) {
  std::vector<SectionState> states;
  for (const LineSection& section : flow.sections) states.push_back({&section});
  int16_t page = flow.first_page;
  for (;;) {
    flow.head();
    const double table_top = surface.CurrentY();
    if (flow.captions) flow.captions();
    bool page_full = false;
    int lines_on_page = 0;
    for (SectionState& state : states) {
      if (state.section->enter && !state.section->enter(page_full)) continue;
      if (!WalkSection(surface, flow, state, lines_on_page)) page_full = true;
    }
    if (flow.frame) flow.frame(table_top);
    if (flow.numbering.always || page_full || page >= 2) NumberPage(surface, flow.numbering, page);
    if (!page_full) return page;
    page = AddInt16(page, 1, "page number");
    if (surface.BreaksPages()) surface.NewPage();
  }
}

}  // namespace quorvel

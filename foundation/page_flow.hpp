// The one page loop of every paged document: head, captions, lines while they fit, frame, page number.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "foundation/surface.hpp"

namespace quorvel {

// One run of lines walked by the flow (the invoice has two: goods, then other expenses).
// Indices are 1-based and kept in 32 bits, so a collection of exactly 32767 lines ends cleanly.
struct LineSection {
  int32_t count = 0;
  // The height the line is expected to take, tested against the page foot before printing it.
  std::function<double(int32_t index)> estimated_height;
  std::function<void(int32_t index)> print;
  // Asked on every page before the section is walked, with whether the page is already full;
  // false leaves the section out on this page. Empty: always walked.
  std::function<bool(bool page_full)> enter;
};

struct PageNumbering {
  int blank_lines = 4;  // empty lines under the page foot before the number
  bool always = false;  // number even a one-page document
  std::function<std::string(int16_t page)> label;  // empty: "Page N"
};

struct PageFlow {
  std::function<void()> head;      // letterhead, title and header blocks; leaves CurrentY at the table top
  std::function<void()> captions;  // column captions, printed on every page after the head
  std::vector<LineSection> sections;
  std::function<void(double table_top)> frame;  // empty: no frame
  // Whether a line that would end exactly at the page foot still fits (goods documents) or
  // goes to the next page (ledger and cheque lists).
  bool fits_at_limit = true;
  double after_line = 100;  // room added under every line
  PageNumbering numbering;
  int16_t first_page = 1;
};

// Runs the pages and returns the number of the last one. A line that does not fit even on a
// page with no line yet is printed there, past the foot: another page could not take it either,
// so the flow never makes an empty page and always ends. Pages are broken only on a surface that
// breaks pages; on a preview every page is drawn over the first.
int16_t RunPageFlow(Surface& surface, const PageFlow& flow);

}  // namespace quorvel

// The drawing commands, declared once: recorded by surfaces, replayed by painters, written as ops.
#pragma once

#include <string>
#include <variant>
#include <vector>

namespace quorvel {

// Text with its top-left corner at (x, y), in twips; one op per line of a CRLF text.
struct TextOp {
  double x = 0, y = 0;
  std::string font;
  double size = 10;
  bool bold = false;
  std::string text;
};
struct LineOp { double x1 = 0, y1 = 0, x2 = 0, y2 = 0; };  // Line form 4
struct BoxOp { double x1 = 0, y1 = 0, x2 = 0, y2 = 0; };   // Line form 20, outline only
struct PageOp {};                                          // NewPage
struct EndOp {};                                           // EndDoc

// Adding an op kind: put it in this variant, give it a line of the ops format (draw_ops.cpp) and
// a pure virtual Draw in PageDevice (output/device.hpp). Every device, the cairo painter and the
// printer's roll-length visitor then fail to build until they handle it.
using DrawOp = std::variant<TextOp, LineOp, BoxOp, PageOp, EndOp>;
using DrawOps = std::vector<DrawOp>;

// One op as a line of the ops format (JSON Lines, twips rounded to 2 decimals), no newline.
std::string OpToJson(const DrawOp& op);
// Parses one line of the ops format; raises the invalid-argument error on anything else.
DrawOp OpFromJson(const std::string& line);

bool operator==(const TextOp&, const TextOp&);
bool operator==(const LineOp&, const LineOp&);
bool operator==(const BoxOp&, const BoxOp&);
inline bool operator==(const PageOp&, const PageOp&) { return true; }
inline bool operator==(const EndOp&, const EndOp&) { return true; }

}  // namespace quorvel

// Print and Line semantics shared by every surface, and real font measuring.
#include "foundation/surface.hpp"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "foundation/errors.hpp"
#include "foundation/text_shaping.hpp"
#include "foundation/qr_code.hpp"
#include "foundation/utf8.hpp"

namespace quorvel {

namespace {
constexpr std::string_view kCrLf = "\r\n";
std::atomic<bool> strict_text{false};

// Calls f(line) for each CRLF-separated line of `text` (one call for a text without breaks).
template <class F>
void ForEachLine(std::string_view text, F&& f) {
  size_t start = 0;
  while (true) {
    const size_t at = text.find(kCrLf, start);
    if (at == std::string_view::npos) {
      f(text.substr(start));
      return;
    }
    f(text.substr(start, at - start));
    start = at + kCrLf.size();
  }
}
}  // namespace

SurfaceFont::SurfaceFont() : face_(&FontFace::Get("Arial", false)) {}

void SurfaceFont::Name(std::string_view name) {
  face_ = &FontFace::Get(name, bold_);
  name_ = std::string(name);
}

void SurfaceFont::Size(double points) {
  if (!(points > 0 && points <= 2048))
    Raise(err::kInvalidArgument, "font size " + std::to_string(points) + " points");
  size_ = points;
}

void SurfaceFont::Bold(bool bold) {
  if (bold == bold_) return;
  face_ = &FontFace::Get(name_, bold);
  bold_ = bold;
}

// Plain text (every character the font's own, left to right) is summed from the advance table;
// anything else is measured as its shaped runs.
double Surface::TextWidth(std::string_view text) const {
  const FontFace& face = font_.Face();
  const double scale = TwipsPerUnit(face, font_.Size());
  double widest = 0;
  ForEachLine(text, [&](std::string_view line) {
    int64_t units = 0;
    const double width = face.PlainAdvanceUnits(line, units)
                             ? static_cast<double>(units) * scale
                             : WidthTwips(*ShapeLine(DecodeUtf8(line), face, font_.Bold()), font_.Size());
    widest = std::max(widest, width);
  });
  return widest;
}

double Surface::TextWidth(std::u32string_view text) const {
  const FontFace& face = font_.Face();
  const double scale = TwipsPerUnit(face, font_.Size());
  double widest = 0;
  size_t start = 0;
  while (start <= text.size()) {
    size_t end = text.find(U"\r\n", start);
    if (end == std::u32string_view::npos) end = text.size();
    const std::u32string_view line = text.substr(start, end - start);
    int64_t units = 0;
    const double width = face.PlainAdvanceUnits(line, units)
                             ? static_cast<double>(units) * scale
                             : WidthTwips(*ShapeLine(line, face, font_.Bold()), font_.Size());
    widest = std::max(widest, width);
    start = end + 2;
  }
  return widest;
}

double Surface::LineHeight() const {
  return font_.Face().LineUnits() * TwipsPerUnit(font_.Face(), font_.Size());
}

double Surface::TextHeight(std::string_view text) const {
  size_t lines = 1;
  for (size_t at = text.find(kCrLf); at != std::string_view::npos; at = text.find(kCrLf, at + 2))
    ++lines;
  return static_cast<double>(lines) * LineHeight();
}

void Surface::Refuse(std::string context) {
  const AutomationError error(err::kInvalidArgument, StandardDescription(err::kInvalidArgument), std::move(context));
  Refused(error);
  throw error;
}

double Surface::Checked(double value, const char* member) {
  if (!std::isfinite(value) || std::fabs(value) > kFarthest) {
    std::ostringstream text;
    text << member << ": " << value << " twips is not a position on the page";
    Refuse(text.str());
  }
  return value;
}

void Surface::Line(int16_t form, double x1, double y1, double x2, double y2, int32_t colour) {
  (void)colour;
  NoteInk(x1, y1, x2, y2);
  Checked(x1, "Line x1");
  Checked(y1, "Line y1");
  Checked(x2, "Line x2");
  Checked(y2, "Line y2");
  if (form == 4) {
    Emit(LineOp{x1, y1, x2, y2});
  } else if (form == 20) {
    Emit(BoxOp{x1, y1, x2, y2});
  } else {
    Raise(err::kInvalidArgument, "Line form code " + std::to_string(form));
  }
  x_ = x2;
  y_ = y2;
}

void Surface::DrawQr(double x, double y, double module, std::string_view data) {
  if (!(module > 0)) Raise(err::kInvalidArgument, "QR module size " + std::to_string(module));
  const double side = QrSideModules(data) * module;
  NoteInk(x, y, x + side, y + side);
  Emit(QrOp{x, y, module, std::string(data)});
}

void Surface::DrawImage(double x1, double y1, double x2, double y2, std::string_view source) {
  NoteInk(x1, y1, x2, y2);
  Emit(ImageOp{x1, y1, x2, y2, std::string(source)});
}

void Surface::NoteInk(double x1, double y1, double x2, double y2) {
  if (!track_ink_) return;
  constexpr double kPen = 5;  // half the thin pen: a rule inks a little either side of its line
  ink_.push_back({std::min(x1, x2) - kPen, std::min(y1, y2) - kPen, std::max(x1, x2) + kPen,
                  std::max(y1, y2) + kPen});
}

bool Surface::IsBlank(double x1, double y1, double x2, double y2) const {
  for (const Ink& ink : ink_)
    if (ink.x1 < x2 && x1 < ink.x2 && ink.y1 < y2 && y1 < ink.y2) return false;
  return true;
}

std::string_view Surface::DrawLines(std::string_view text) {
  RequireUtf8(text, "printed text");
  if (const size_t at = text.find('\0'); at != std::string_view::npos)
    Refuse("printed text: a NUL character at byte " + std::to_string(at + 1) + " would cut the text there");
  std::string_view last;
  bool first = true;
  ForEachLine(text, [&](std::string_view line) {
    if (!first) {
      x_ = 0;
      y_ += LineHeight();
    }
    first = false;
    if (!line.empty()) {
      CheckGlyphs(line);
      if (track_ink_) NoteInk(x_, y_, x_ + TextWidth(line), y_ + LineHeight());
      Emit(TextOp{x_, y_, font_.Name(), font_.Size(), font_.Bold(), std::string(line)});
    }
    last = line;
  });
  return last;
}

void Surface::Print(std::string_view text) {
  DrawLines(text);
  Print();
}

void Surface::Print() {
  x_ = 0;
  y_ += LineHeight();
}

void Surface::PrintSameLine(std::string_view text) {
  const std::string_view last = DrawLines(text);
  x_ += TextWidth(last);
}

void Surface::CheckGlyphs(std::string_view line) {
  int64_t units = 0;
  if (font_.Face().PlainAdvanceUnits(line, units)) return;
  const auto shaped = ShapeLine(DecodeUtf8(line), font_.Face(), font_.Bold());
  if (shaped->missing.empty()) return;
  const std::string what = CodePointNames(shaped->missing) + " in \"" + std::string(line) + "\"";
  if (StrictText()) Raise(err::kInvalidArgument, "no installed font has " + what);
  std::string warning = "missing glyph " + what;
  if (std::find(warnings_.begin(), warnings_.end(), warning) == warnings_.end())
    warnings_.push_back(std::move(warning));
}

void Surface::NewPage() { Raise(err::kNotSupported, "this surface has no NewPage"); }
void Surface::EndDoc() { Raise(err::kNotSupported, "this surface has no EndDoc"); }

void Surface::CallByName(std::string_view member) {
  std::string lower;
  for (char c : member) lower += static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
  if (lower == "newpage") return NewPage();
  if (lower == "enddoc") return EndDoc();
  Raise(err::kNotSupported, "the surface has no member \"" + std::string(member) + "\"");
}

void Surface::ResetState() {
  x_ = y_ = 0;
  ink_.clear();
  track_ink_ = false;
  font_ = SurfaceFont();
  last_warnings_ = std::move(warnings_);
  warnings_.clear();
}

void SetStrictText(bool strict) { strict_text = strict; }
bool StrictText() { return strict_text; }

std::string CodePointNames(std::u32string_view missing) {
  std::string names;
  for (char32_t cp : missing) {
    char name[16];
    std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(cp));
    names += (names.empty() ? "" : " ") + std::string(name);
  }
  return names;
}

}  // namespace quorvel

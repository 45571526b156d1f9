// Print and Line semantics shared by every surface, and real font measuring.
#include "foundation/surface.hpp"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "foundation/errors.hpp"
#include "foundation/utf8.hpp"

namespace quorvel {

namespace {
constexpr std::string_view kCrLf = "\r\n";

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

double Surface::TextWidth(std::string_view text) const {
  const FontFace& face = font_.Face();
  int64_t widest = 0;
  ForEachLine(text, [&](std::string_view line) { widest = std::max(widest, face.AdvanceUnits(line)); });
  return static_cast<double>(widest) * TwipsPerUnit(face, font_.Size());
}

double Surface::TextWidth(std::u32string_view text) const {
  const FontFace& face = font_.Face();
  int64_t widest = 0, current = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == U'\r' && i + 1 < text.size() && text[i + 1] == U'\n') {
      widest = std::max(widest, current);
      current = 0;
      ++i;
      continue;
    }
    current += face.Advance(text[i]);
  }
  return static_cast<double>(std::max(widest, current)) * TwipsPerUnit(face, font_.Size());
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
    if (!line.empty())
      Emit(TextOp{x_, y_, font_.Name(), font_.Size(), font_.Bold(), std::string(line)});
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
  font_ = SurfaceFont();
}

}  // namespace quorvel

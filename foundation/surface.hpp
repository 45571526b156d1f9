// The drawing surface every layout routine draws on: position, font, measuring, lines and text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/draw_ops.hpp"
#include "foundation/errors.hpp"
#include "foundation/font_metrics.hpp"

namespace quorvel {

// The surface's current font. Only the name "Arial" is ever set by the printers; the other
// changes are to Size and Bold. A name that no installed font serves is refused at once.
class SurfaceFont {
 public:
  SurfaceFont();
  const std::string& Name() const { return name_; }
  void Name(std::string_view name);
  double Size() const { return size_; }
  void Size(double points);
  bool Bold() const { return bold_; }
  void Bold(bool bold);
  const FontFace& Face() const { return *face_; }

 private:
  std::string name_ = "Arial";
  double size_ = 10;
  bool bold_ = false;
  const FontFace* face_;
};

// The abstract surface. It keeps the state and the Print/Line rules; a concrete surface only
// says what happens to each finished drawing op (`Emit`) and whether it has NewPage/EndDoc.
class Surface {
 public:
  virtual ~Surface() = default;

  // Positions must be finite and within kFarthest of the origin; anything else is refused with
  // the invalid-argument error naming the member, so no op ever carries inf or NaN.
  double CurrentX() const { return x_; }
  void CurrentX(double x) { x_ = Checked(x, "CurrentX"); }
  double CurrentY() const { return y_; }
  void CurrentY(double y) { y_ = Checked(y, "CurrentY"); }
  virtual double Width() const = 0;
  virtual double Height() const = 0;
  SurfaceFont& Font() { return font_; }
  const SurfaceFont& Font() const { return font_; }

  // Width of the text in the current font, in twips; for a CRLF text, its widest line.
  double TextWidth(std::string_view text) const;
  double TextWidth(std::u32string_view text) const;
  // Number of lines × the current font's line height.
  double TextHeight(std::string_view text) const;
  double LineHeight() const;

  // Form 4: a straight line; form 20: a rectangle outline. Other forms raise the invalid-argument
  // error. The position ends at (x2, y2). The colour is accepted and drawn as black.
  void Line(int16_t form, double x1, double y1, double x2, double y2, int32_t colour = 0);

  // A text holding a NUL character is refused naming it: drawing would cut it there.
  void Print(std::string_view text);          // form 1: draw, then next line at X 0
  void Print();                               // form 2: next line without drawing
  void PrintSameLine(std::string_view text);  // form 3: draw, stay on the line after the text

  // Marks beside the text: a QR symbol whose quiet zone's top-left corner is (x, y), and a
  // picture scaled into a box. Neither moves the current position.
  void DrawQr(double x, double y, double module, std::string_view data);
  void DrawImage(double x1, double y1, double x2, double y2, std::string_view source);

  // Ink tracking, for a routine that places an optional mark where nothing else was drawn: on
  // from TrackInk(true) until the document ends. Off by default, so ordinary documents pay no
  // measuring for it.
  void TrackInk(bool on) {
    track_ink_ = on;
    if (!on) ink_.clear();
  }
  // True when nothing drawn on the current page (a preview: on any page) since ink tracking began
  // touches the rectangle.
  bool IsBlank(double x1, double y1, double x2, double y2) const;

  // Members that not every surface has: the base raises error 438, like a late-bound call of a
  // member the object lacks.
  virtual void NewPage();
  virtual void EndDoc();
  // Whether a document's next page starts a new sheet (a printer) or is drawn over the first
  // (a preview). Paged documents call NewPage only where this is true.
  virtual bool BreaksPages() const { return false; }
  // Late-bound call by member name, for members a caller cannot know a surface to have.
  virtual void CallByName(std::string_view member);

  // Warnings about characters that no installed font has ("missing glyph U+0378 in \"...\""),
  // each drawn as the missing-glyph box: those met since the last document ended (the document
  // in progress, or the picture a preview holds), and those of the last document that ended.
  const std::vector<std::string>& TextWarnings() const { return warnings_; }
  const std::vector<std::string>& LastTextWarnings() const { return last_warnings_; }

 protected:
  virtual void Emit(DrawOp op) = 0;
  // Told of every argument the surface refuses, before the error is raised; a printer uses it
  // to fail the document that the refused drawing belonged to.
  virtual void Refused(const AutomationError& error) { (void)error; }
  // Back to the start state of a document: (0, 0), Arial 10 pt, not bold. The text warnings
  // collected so far become the last document's.
  void ResetState();
  void ResetPosition() {
    x_ = y_ = 0;
    ink_.clear();
  }

 private:
  double Checked(double value, const char* member);
  [[noreturn]] void Refuse(std::string context);
  // Draws each CRLF line (empty ones draw nothing); returns the last line.
  std::string_view DrawLines(std::string_view text);
  // Records (or, in strict mode, raises) the characters of `line` that no installed font has.
  void CheckGlyphs(std::string_view line);

  // The boxes covered by what was drawn on the current page: text boxes, rules, boxes, marks.
  struct Ink {
    double x1, y1, x2, y2;
  };
  void NoteInk(double x1, double y1, double x2, double y2);

  double x_ = 0, y_ = 0;
  SurfaceFont font_;
  std::vector<std::string> warnings_, last_warnings_;
  std::vector<Ink> ink_;
  bool track_ink_ = false;
};

// Strict text mode, for the whole process: a character that no installed font has is an error
// raised before its line is drawn (so a printer abandons the document), not a warning.
void SetStrictText(bool strict);
bool StrictText();

// "U+0378 U+E0001": the code points of `missing`, for warnings and errors.
std::string CodePointNames(std::u32string_view missing);

// The farthest a position may lie from the origin, in twips (about 176 km): beyond every 32-bit
// value a host may set (a top margin of two billion twips) plus a page's offsets, yet small
// enough that arithmetic on it stays exact.
constexpr double kFarthest = 1e10;

}  // namespace quorvel

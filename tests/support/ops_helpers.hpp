// Test helpers: the line-height rule restated, lookups in a recorded op list, text measures,
// error numbers, commands and the "no rule crosses a text" check.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"
#include "foundation/preview_surface.hpp"

namespace quorvel::testing {

// Liberation Sans: (hhea ascender 1854 − descender −434 + lineGap 67) / 2048 em, in twips.
inline double LineAt(double points) { return 2355.0 * points * 20.0 / 2048.0; }

std::vector<TextOp> Texts(const DrawOps& ops);
std::vector<LineOp> Lines(const DrawOps& ops);
std::vector<BoxOp> Boxes(const DrawOps& ops);
// The first text op whose text equals `text`; fails the test when there is none.
TextOp FindText(const DrawOps& ops, const std::string& text);
bool HasText(const DrawOps& ops, const std::string& text);
// All text ops whose text equals `text`, in drawing order.
std::vector<TextOp> AllTexts(const DrawOps& ops, const std::string& text);
int CountOps(const DrawOps& ops, const std::string& kind);  // "text", "line", "box", "page", "end"
// A line or box with these corners was drawn (to a millionth of a twip).
bool HasLine(const DrawOps& ops, double x1, double y1, double x2, double y2);
bool HasBox(const DrawOps& ops, double x1, double y1, double x2, double y2);
// Expects the text's top-left corner at (x, y), to a millionth of a twip.
void ExpectAt(const TextOp& text, double x, double y);

// Width of `text` in Arial at `points`, as any surface measures it.
double Measure(const std::string& text, double points = 10, bool bold = false);
// Width of a recorded text in the font it was drawn with, and where it ends.
double WidthOf(const TextOp& text);
inline double EndOf(const TextOp& text) { return text.x + WidthOf(text); }

// `text` as the shared fitting routine cuts it to `length` at `points`, and as the wrap routine
// breaks it into lines of `width` (10 pt).
std::string Fitted(std::string text, int16_t length, double points = 10);
std::vector<std::string> Wrapped(std::string text, int16_t width);
// Digits, then dots, until just wider than `length` (by at most a dot) at 10 pt: a text that a
// field of that length must cut and one 100 wider would hold whole.
std::string JustWider(double length);

// Runs `call` and returns the automation error number it raised, 0 when none.
int32_t ErrorNumberOf(const std::function<void()>& call, std::string* context = nullptr);

// A host line object made from an aggregate: Share(ClassCheck{.ChqNum = "7"}).
template <class T>
std::shared_ptr<T> Share(T value) {
  return std::make_shared<T>(std::move(value));
}

// A preview whose EndDoc fails, as a late-bound call on an object without it would.
struct NoEndDocSurface : PreviewSurface {
  using PreviewSurface::PreviewSurface;
  void EndDoc() override;
  int end_doc_calls = 0;
};

// One description per (rule, text) pair where a line or a box side runs through the inside of a
// text's box (its measured width × one line of its size). A rule along an edge, or within a twip
// of it, only touches the text.
std::vector<std::string> RulesCrossingTexts(const DrawOps& ops);

// Runs a command, returns its standard output; fails the test on a non-zero exit.
std::string RunCommand(const std::string& command);
// The value of one "Name: value" line of pdfinfo's output, without the blanks before it.
std::string PdfInfoField(const std::string& info, const std::string& name);
// Ops of a document printed to a .jsonl file on the system printer, page ops included.
DrawOps ReadOpsFile(const std::string& path);
// The whole content of a file ("" when it cannot be read).
std::string ReadFile(const std::string& path);
// A fresh empty directory for one test's files.
std::string TempDir(const std::string& name);

}  // namespace quorvel::testing

// Test helpers: the line-height rule restated, and lookups in a recorded op list.
#pragma once

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
int CountOps(const DrawOps& ops, const std::string& kind);  // "text", "line", "box", "page", "end"

// Runs a command, returns its standard output; fails the test on a non-zero exit.
std::string RunCommand(const std::string& command);
// A fresh empty directory for one test's files.
std::string TempDir(const std::string& name);

}  // namespace quorvel::testing

// Laying out a text op as glyph runs: the plain glyph-for-glyph layout, or the shaped one.
#include "foundation/glyph_runs.hpp"

#include "foundation/text_shaping.hpp"
#include "foundation/utf8.hpp"

namespace quorvel {

namespace {

GlyphRun PlainRun(const TextOp& op, const FontFace& face) {
  GlyphRun run;
  run.face = &face;
  run.size = op.size;
  const double scale = TwipsPerUnit(face, op.size);
  run.baseline = op.y + face.Ascender() * scale;
  double pen = op.x;
  const size_t bytes = op.text.size();  // at least one byte per glyph: no reallocation below
  run.glyphs.reserve(bytes);
  run.x.reserve(bytes);
  run.advances.reserve(bytes);
  run.chars.reserve(bytes);
  run.rise.reserve(bytes);
  ForEachCodePoint(op.text, [&](char32_t cp) {
    const double advance = face.Advance(cp) * scale;
    run.glyphs.push_back(face.GlyphIndex(cp));
    run.x.push_back(pen);
    run.advances.push_back(advance);
    run.chars.push_back(std::u32string(1, cp));
    run.rise.push_back(0);
    pen += advance;
  });
  return run;
}

}  // namespace

const FontFace* PlainFaceOf(const TextOp& op) {
  const FontFace& base = FontFace::Get(op.font, op.bold);
  int64_t units = 0;
  return base.PlainAdvanceUnits(op.text, units) ? &base : nullptr;
}

std::vector<GlyphRun> GlyphRunsOf(const TextOp& op) {
  if (const FontFace* plain = PlainFaceOf(op)) return {PlainRun(op, *plain)};
  const FontFace& base = FontFace::Get(op.font, op.bold);
  const auto line = ShapeLine(DecodeUtf8(op.text), base, op.bold);
  const double baseline = op.y + base.Ascender() * TwipsPerUnit(base, op.size);
  std::vector<GlyphRun> runs;
  double pen = op.x;
  for (const ShapedRun& shaped : line->runs) {
    GlyphRun run;
    run.face = shaped.face;
    run.size = op.size;
    run.baseline = baseline;
    run.rtl = shaped.rtl;
    run.chars = shaped.chars;
    run.glyphs = shaped.glyphs;
    const double scale = TwipsPerUnit(*shaped.face, op.size);
    for (size_t g = 0; g < shaped.glyphs.size(); ++g) {
      run.x.push_back(pen + shaped.x_offsets[g] * scale);
      run.advances.push_back(shaped.advances[g] * scale);
      run.rise.push_back(shaped.y_offsets[g] * scale);
      pen += shaped.advances[g] * scale;
    }
    runs.push_back(std::move(run));
  }
  return runs;
}

}  // namespace quorvel

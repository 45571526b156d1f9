// Laying out a text op as glyph runs.
#include "foundation/glyph_runs.hpp"

#include "foundation/utf8.hpp"

namespace quorvel {

std::vector<GlyphRun> GlyphRunsOf(const TextOp& op) {
  GlyphRun run;
  run.face = &FontFace::Get(op.font, op.bold);
  run.size = op.size;
  const double scale = TwipsPerUnit(*run.face, op.size);
  run.baseline = op.y + run.face->Ascender() * scale;
  double pen = op.x;
  ForEachCodePoint(op.text, [&](char32_t cp) {
    const double advance = run.face->Advance(cp) * scale;
    run.glyphs.push_back(run.face->GlyphIndex(cp));
    run.x.push_back(pen);
    run.advances.push_back(advance);
    run.chars.push_back(std::u32string(1, cp));
    pen += advance;
  });
  return {std::move(run)};
}

}  // namespace quorvel

// Itemizing, bidi ordering and HarfBuzz shaping of a line, with a process-wide cache.
#include "foundation/text_shaping.hpp"

#include <fribidi.h>
#include <hb.h>

#include <algorithm>
#include <mutex>
#include <unordered_map>

#include "foundation/font_fallback.hpp"
#include "foundation/utf8.hpp"

namespace quorvel {

namespace {

// A stretch of the logical text in one face, at one bidi level.
struct Item {
  size_t start = 0, length = 0;
  const FontFace* face = nullptr;
  FriBidiLevel level = 0;
};

hb_unicode_general_category_t Category(char32_t cp) {
  return hb_unicode_general_category(hb_unicode_funcs_get_default(), cp);
}

bool IsMark(char32_t cp) {
  const auto category = Category(cp);
  return category == HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK ||
         category == HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK ||
         category == HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK;
}

// Characters that take the face of what they stand beside: blanks, digits, punctuation, marks
// and format controls belong to no script of their own.
bool FollowsNeighbour(char32_t cp) {
  const hb_script_t script = hb_unicode_script(hb_unicode_funcs_get_default(), cp);
  return script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED || script == HB_SCRIPT_UNKNOWN;
}

// Invisible characters: HarfBuzz hides them, so they are never reported as missing.
bool IsInvisible(char32_t cp) {
  return cp < 0x20 || (cp >= 0x7F && cp < 0xA0) || Category(cp) == HB_UNICODE_GENERAL_CATEGORY_FORMAT;
}

const FontFace* FaceFor(char32_t cp, const FontFace& base, const FontFace* previous, bool bold) {
  if (previous && FollowsNeighbour(cp) && previous->Covers(cp)) return previous;
  if (base.Covers(cp)) return &base;
  if (previous && previous->Covers(cp)) return previous;
  return FallbackFace(cp, bold);
}

// Bidi levels per character, trailing blanks reset to the paragraph level (rule L1).
std::vector<FriBidiLevel> Levels(std::u32string_view text, bool& rtl) {
  const auto length = static_cast<FriBidiStrIndex>(text.size());
  std::vector<FriBidiCharType> types(text.size());
  std::vector<FriBidiBracketType> brackets(text.size());
  std::vector<FriBidiLevel> levels(text.size());
  const auto* chars = reinterpret_cast<const FriBidiChar*>(text.data());
  fribidi_get_bidi_types(chars, length, types.data());
  fribidi_get_bracket_types(chars, length, types.data(), brackets.data());
  FriBidiParType direction = FRIBIDI_PAR_ON;  // the first strong character decides
  // FriBidi fails only when it runs out of memory: the text is then laid out left to right.
  if (!fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), length, &direction, levels.data()) ||
      !fribidi_reorder_line(FRIBIDI_FLAGS_DEFAULT, types.data(), length, 0, direction, levels.data(),
                            nullptr, nullptr)) {
    rtl = false;
    return std::vector<FriBidiLevel>(text.size(), 0);
  }
  rtl = FRIBIDI_IS_RTL(direction);
  return levels;
}

std::vector<Item> Itemize(std::u32string_view text, const FontFace& base, bool bold,
                          const std::vector<FriBidiLevel>& levels, std::u32string& missing) {
  std::vector<Item> items;
  const FontFace* previous = nullptr;
  for (size_t i = 0; i < text.size(); ++i) {
    const char32_t cp = text[i];
    const FontFace* face = FaceFor(cp, base, previous, bold);
    if (!face) {
      if (!IsInvisible(cp) && missing.find(cp) == std::u32string::npos) missing.push_back(cp);
      face = previous ? previous : &base;
    }
    if (items.empty() || items.back().face != face || items.back().level != levels[i])
      items.push_back(Item{i, 0, face, levels[i]});
    ++items.back().length;
    previous = face;
  }
  return items;
}

ShapedRun Shape(std::u32string_view text, const Item& item) {
  ShapedRun run;
  run.face = item.face;
  run.rtl = item.level % 2 == 1;
  hb_buffer_t* buffer = hb_buffer_create();
  hb_buffer_add_utf32(buffer, reinterpret_cast<const uint32_t*>(text.data()), static_cast<int>(text.size()),
                      static_cast<unsigned>(item.start), static_cast<int>(item.length));
  hb_buffer_set_direction(buffer, run.rtl ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
  hb_buffer_guess_segment_properties(buffer);
  hb_shape(item.face->Shaper(), buffer, nullptr, 0);
  unsigned count = 0;
  const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
  const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
  std::vector<uint32_t> starts;  // cluster starts, to find where each cluster ends
  for (unsigned g = 0; g < count; ++g) starts.push_back(infos[g].cluster);
  std::sort(starts.begin(), starts.end());
  starts.erase(std::unique(starts.begin(), starts.end()), starts.end());
  std::vector<bool> given(starts.size(), false);
  for (unsigned g = 0; g < count; ++g) {
    run.glyphs.push_back(infos[g].codepoint);
    run.advances.push_back(positions[g].x_advance);
    run.x_offsets.push_back(positions[g].x_offset);
    run.y_offsets.push_back(positions[g].y_offset);
    run.width_units += positions[g].x_advance;
    run.clusters.push_back(infos[g].cluster);
    const size_t k = std::lower_bound(starts.begin(), starts.end(), infos[g].cluster) - starts.begin();
    const size_t end = k + 1 < starts.size() ? starts[k + 1] : item.start + item.length;
    run.chars.push_back(given[k] ? std::u32string() : std::u32string(text.substr(starts[k], end - starts[k])));
    given[k] = true;
  }
  hb_buffer_destroy(buffer);
  return run;
}

// Rule L2: from the highest level down to the lowest odd one, reverse every stretch of runs at
// that level or above. Runs never straddle a level change, so reversing whole runs is exact.
void ToVisualOrder(std::vector<ShapedRun>& runs, std::vector<FriBidiLevel> levels) {
  if (runs.empty()) return;
  const FriBidiLevel highest = *std::max_element(levels.begin(), levels.end());
  FriBidiLevel lowest_odd = highest + 1;
  for (FriBidiLevel level : levels)
    if (level % 2 == 1) lowest_odd = std::min(lowest_odd, level);
  for (int level = highest; level >= lowest_odd; --level) {
    for (size_t i = 0; i < runs.size();) {
      if (levels[i] < level) { ++i; continue; }
      size_t j = i;
      while (j < runs.size() && levels[j] >= level) ++j;
      std::reverse(runs.begin() + i, runs.begin() + j);
      std::reverse(levels.begin() + i, levels.begin() + j);
      i = j;
    }
  }
}

ShapedLine ShapeUncached(std::u32string_view text, const FontFace& base, bool bold) {
  ShapedLine line;
  if (text.empty()) return line;
  const std::vector<FriBidiLevel> levels = Levels(text, line.rtl);
  const std::vector<Item> items = Itemize(text, base, bold, levels, line.missing);
  std::vector<FriBidiLevel> run_levels;
  for (const Item& item : items) {
    line.runs.push_back(Shape(text, item));
    run_levels.push_back(item.level);
  }
  ToVisualOrder(line.runs, run_levels);
  return line;
}

struct CacheKey {
  std::u32string text;
  const FontFace* base;
  bool bold;
  bool operator==(const CacheKey&) const = default;
};

struct CacheKeyHash {
  size_t operator()(const CacheKey& key) const {
    return std::hash<std::u32string>()(key.text) ^ (std::hash<const void*>()(key.base) << 1) ^ key.bold;
  }
};

}  // namespace

std::shared_ptr<const ShapedLine> ShapeLine(std::u32string_view text, const FontFace& base, bool bold) {
  // Documents repeat their texts (captions, names on every page); a bounded cache keeps them.
  constexpr size_t kCacheLimit = 4096;
  static std::mutex mutex;
  static std::unordered_map<CacheKey, std::shared_ptr<const ShapedLine>, CacheKeyHash> cache;
  CacheKey key{std::u32string(text), &base, bold};
  {
    std::lock_guard<std::mutex> lock(mutex);
    auto it = cache.find(key);
    if (it != cache.end()) return it->second;
  }
  auto line = std::make_shared<const ShapedLine>(ShapeUncached(text, base, bold));
  std::lock_guard<std::mutex> lock(mutex);
  if (cache.size() >= kCacheLimit) cache.clear();
  cache.emplace(std::move(key), line);
  return line;
}

std::u32string MissingCharacters(std::string_view text, const FontFace& base) {
  int64_t units = 0;
  if (base.PlainAdvanceUnits(text, units)) return {};
  std::u32string missing;
  for (char32_t cp : DecodeUtf8(text))
    if (!base.Covers(cp) && !IsInvisible(cp) && !FallbackFace(cp, false) && missing.find(cp) == std::u32string::npos)
      missing.push_back(cp);
  return missing;
}

double WidthTwips(const ShapedLine& line, double size_pt) {
  double width = 0;
  for (const ShapedRun& run : line.runs) width += static_cast<double>(run.width_units) * TwipsPerUnit(*run.face, size_pt);
  return width;
}

bool InsideCluster(std::u32string_view text, size_t index) {
  if (index == 0 || index >= text.size()) return false;
  const char32_t cp = text[index];
  if (text[index - 1] == 0x200D) return true;  // after a zero-width joiner
  return IsMark(cp) || cp == 0x200D || cp == 0x200C || (cp >= 0xFE00 && cp <= 0xFE0F) ||
         (cp >= 0xE0100 && cp <= 0xE01EF) || (cp >= 0x1F3FB && cp <= 0x1F3FF);
}

}  // namespace quorvel

// Fallback font choice through fontconfig: coverage first, then the family and the weight.
#include "foundation/font_fallback.hpp"

#include <fontconfig/fontconfig.h>

#include <mutex>
#include <string>
#include <unordered_map>

namespace quorvel {

namespace {

// Lower is better: a Noto Sans family (not its monospaced or display cuts), then the weight.
int Rank(FcPattern* font, bool bold) {
  FcChar8* family = nullptr;
  int weight = FC_WEIGHT_REGULAR;
  FcPatternGetString(font, FC_FAMILY, 0, &family);
  FcPatternGetInteger(font, FC_WEIGHT, 0, &weight);
  const std::string name = family ? reinterpret_cast<const char*>(family) : "";
  const bool noto_sans = name.rfind("Noto Sans", 0) == 0 && name.find("Mono") == std::string::npos;
  const bool weight_fits = bold ? weight >= FC_WEIGHT_BOLD : weight == FC_WEIGHT_REGULAR;
  return (noto_sans ? 0 : 2) + (weight_fits ? 0 : 1);
}

std::string FindFallbackFile(char32_t cp, bool bold) {
  FcPattern* pattern = FcPatternCreate();
  FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>("Noto Sans"));
  FcPatternAddInteger(pattern, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(pattern, FC_SLANT, FC_SLANT_ROMAN);
  FcCharSet* wanted = FcCharSetCreate();
  FcCharSetAddChar(wanted, cp);
  FcPatternAddCharSet(pattern, FC_CHARSET, wanted);
  FcCharSetDestroy(wanted);
  FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result = FcResultNoMatch;
  FcFontSet* fonts = FcFontSort(nullptr, pattern, FcFalse, nullptr, &result);
  FcPatternDestroy(pattern);
  std::string best;
  int best_rank = 1 << 30;
  for (int i = 0; fonts && i < fonts->nfont; ++i) {
    FcPattern* font = fonts->fonts[i];
    FcCharSet* charset = nullptr;
    FcChar8* file = nullptr;
    int slant = FC_SLANT_ROMAN;
    FcPatternGetInteger(font, FC_SLANT, 0, &slant);
    if (FcPatternGetCharSet(font, FC_CHARSET, 0, &charset) != FcResultMatch ||
        !FcCharSetHasChar(charset, cp) || slant != FC_SLANT_ROMAN ||
        FcPatternGetString(font, FC_FILE, 0, &file) != FcResultMatch)
      continue;
    const int rank = Rank(font, bold);
    if (rank < best_rank) {  // fontconfig's own order breaks ties
      best_rank = rank;
      best = reinterpret_cast<const char*>(file);
    }
  }
  if (fonts) FcFontSetDestroy(fonts);
  return best;
}

}  // namespace

const FontFace* FallbackFace(char32_t cp, bool bold) {
  static std::mutex mutex;
  static std::unordered_map<char32_t, const FontFace*> chosen[2];
  std::lock_guard<std::mutex> lock(mutex);
  auto& cache = chosen[bold ? 1 : 0];
  auto it = cache.find(cp);
  if (it != cache.end()) return it->second;
  const std::string file = FindFallbackFile(cp, bold);
  const FontFace* face = file.empty() ? nullptr : &FontFace::FromFile(file);
  cache.emplace(cp, face);
  return face;
}

}  // namespace quorvel

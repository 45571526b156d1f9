// UTF-8 validation, decoding and encoding (strict: no overlongs, surrogates or values past U+10FFFF).
#include "foundation/utf8.hpp"

#include <filesystem>

#include "foundation/errors.hpp"

namespace quorvel {

namespace detail {

char32_t NextCodePoint(std::string_view text, size_t& i) {
  constexpr char32_t kBad = 0xFFFFFFFFu;
  const auto lead = static_cast<unsigned char>(text[i]);
  int extra;
  char32_t cp;
  char32_t min;
  if (lead < 0x80) { ++i; return lead; }
  if ((lead & 0xE0) == 0xC0) { extra = 1; cp = lead & 0x1F; min = 0x80; }
  else if ((lead & 0xF0) == 0xE0) { extra = 2; cp = lead & 0x0F; min = 0x800; }
  else if ((lead & 0xF8) == 0xF0) { extra = 3; cp = lead & 0x07; min = 0x10000; }
  else return kBad;
  if (i + static_cast<size_t>(extra) >= text.size()) return kBad;
  for (int k = 1; k <= extra; ++k) {
    const auto byte = static_cast<unsigned char>(text[i + k]);
    if ((byte & 0xC0) != 0x80) return kBad;
    cp = (cp << 6) | (byte & 0x3F);
  }
  if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return kBad;
  i += extra + 1;
  return cp;
}

void RaiseInvalidUtf8(std::string_view field) {
  Raise(err::kInvalidArgument, std::string(field) + " is not valid UTF-8");
}

}  // namespace detail

bool IsValidUtf8(std::string_view text) {
  size_t i = 0;
  while (i < text.size()) {
    if (static_cast<unsigned char>(text[i]) < 0x80) { ++i; continue; }
    if (detail::NextCodePoint(text, i) == 0xFFFFFFFFu) return false;
  }
  return true;
}

void RequireUtf8(std::string_view text, std::string_view field) {
  if (!IsValidUtf8(text)) detail::RaiseInvalidUtf8(field);
}

std::u32string DecodeUtf8(std::string_view text) {
  // The ASCII head of a text (all of most texts) is copied character for character.
  size_t ascii = 0;
  while (ascii < text.size() && static_cast<unsigned char>(text[ascii]) < 0x80) ++ascii;
  std::u32string out(ascii, U'\0');
  for (size_t k = 0; k < ascii; ++k) out[k] = static_cast<unsigned char>(text[k]);
  if (ascii == text.size()) return out;
  out.reserve(text.size());
  ForEachCodePoint(text.substr(ascii), [&](char32_t cp) { out.push_back(cp); });
  return out;
}

void AppendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

std::string EncodeUtf8(std::u32string_view text) {
  size_t ascii = 0;
  while (ascii < text.size() && text[ascii] < 0x80) ++ascii;
  std::string out(ascii, '\0');
  for (size_t k = 0; k < ascii; ++k) out[k] = static_cast<char>(text[k]);
  for (size_t k = ascii; k < text.size(); ++k) AppendUtf8(out, text[k]);
  return out;
}

std::string AsciiLowercase(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

std::string LowercaseEnding(const std::string& path) {
  return AsciiLowercase(std::filesystem::path(path).extension().string());
}

}  // namespace quorvel

// UTF-8 at the interfaces: validation that names the field, code-point decoding and encoding, and
// the ASCII case folding that file endings and registered names compare by.
#pragma once

#include <string>
#include <string_view>

namespace quorvel {

bool IsValidUtf8(std::string_view text);

// Raises the invalid-argument error naming `field` when `text` is not valid UTF-8.
void RequireUtf8(std::string_view text, std::string_view field);

// Decodes valid UTF-8 into code points; an invalid sequence raises the invalid-argument error.
std::u32string DecodeUtf8(std::string_view text);
void AppendUtf8(std::string& out, char32_t cp);
std::string EncodeUtf8(std::u32string_view text);

// ASCII letters in lower case, every other byte as it is.
std::string AsciiLowercase(std::string text);
// The ending of a file name with its dot, in lower case: ".pdf" for "Invoice.PDF", "" for none.
std::string LowercaseEnding(const std::string& path);

// Calls f(code point) for each character of `text`; invalid UTF-8 raises like DecodeUtf8.
template <class F>
void ForEachCodePoint(std::string_view text, F&& f);

namespace detail {
// Decodes one code point at text[i], advancing i; returns U+FFFFFFFF on an invalid sequence.
char32_t NextCodePoint(std::string_view text, size_t& i);
[[noreturn]] void RaiseInvalidUtf8(std::string_view field);
}  // namespace detail

template <class F>
void ForEachCodePoint(std::string_view text, F&& f) {
  size_t i = 0;
  while (i < text.size()) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x80) {
      f(static_cast<char32_t>(byte));
      ++i;
      continue;
    }
    const char32_t cp = detail::NextCodePoint(text, i);
    if (cp == 0xFFFFFFFFu) detail::RaiseInvalidUtf8("text");
    f(cp);
  }
}

}  // namespace quorvel

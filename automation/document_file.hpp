// Reading a JSON document file: the system's reason for an unreadable file, the field of a bad
// text, and the line limit checked while parsing.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace quorvel {

// The most lines a document's list may hold: its counts are 16-bit.
constexpr size_t kMostLines = 32767;

// Parses `text`, the contents of `name`. Invalid UTF-8 raises the invalid-argument error naming
// the field ("document.Items[3].Description"); a list longer than kMostLines raises the
// overflow error naming it and its length. The lists are counted on the raw text before parsing,
// so a huge file is refused without building anything of it.
nlohmann::json ParseDocumentText(const std::string& text, const std::string& name);

// Reads and parses the file at `path`; a file that cannot be read raises the file error with
// the path and the system's reason.
nlohmann::json ReadDocumentFile(const std::string& path);

}  // namespace quorvel

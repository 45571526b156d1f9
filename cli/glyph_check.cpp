// Checking a document file's texts for coverage before printing. The file is where the field
// names are known: once drawn, a text is only a line on a page, so the check is made here.
#include "cli/glyph_check.hpp"

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "foundation/font_metrics.hpp"
#include "foundation/surface.hpp"
#include "foundation/text_shaping.hpp"

namespace quorvel::cli {

namespace {

void Walk(const nlohmann::json& value, const std::string& path, std::vector<std::string>& found) {
  if (value.is_string()) {
    const std::u32string missing = MissingCharacters(value.get_ref<const std::string&>(), FontFace::Get("Arial", false));
    if (!missing.empty()) found.push_back(path + ": " + CodePointNames(missing));
  } else if (value.is_object()) {
    for (const auto& [key, item] : value.items()) Walk(item, path.empty() ? key : path + "." + key, found);
  } else if (value.is_array()) {
    for (size_t i = 0; i < value.size(); ++i) Walk(value[i], path + "[" + std::to_string(i + 1) + "]", found);
  }
}

}  // namespace

std::vector<std::string> MissingGlyphFieldsOfText(const std::string& document_text) {
  // The loader has read and checked this text already; a text it accepted parses here too.
  const nlohmann::json document = nlohmann::json::parse(document_text, nullptr, false);
  std::vector<std::string> found;
  if (!document.is_discarded()) Walk(document, "", found);
  return found;
}

std::vector<std::string> MissingGlyphFields(const std::string& document_path) {
  std::ifstream in(document_path, std::ios::binary);
  return MissingGlyphFieldsOfText(std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()));
}

}  // namespace quorvel::cli

// The texts of a document file that hold characters no installed font has, named by field.
#pragma once

#include <string>
#include <vector>

namespace quorvel::cli {

// One line per field holding such characters:
// "document.InvoiceItems[2].Description: U+1F600", in the order of the file.
std::vector<std::string> MissingGlyphFields(const std::string& document_path);
// The same for a document's text already read (standard input).
std::vector<std::string> MissingGlyphFieldsOfText(const std::string& document_text);

}  // namespace quorvel::cli

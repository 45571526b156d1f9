// Batch input: JSON Lines or a folder of document files; output names from a small template.
#include "batch/batch_input.hpp"

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "foundation/errors.hpp"

namespace quorvel::batch {

namespace fs = std::filesystem;
using nlohmann::json;

InputReader::InputReader(const std::string& input) {
  std::error_code error;
  if (fs::is_directory(input, error)) {
    from_folder_ = true;
    for (const auto& entry : fs::directory_iterator(input, error))
      if (entry.is_regular_file() && entry.path().extension() == ".json") files_.push_back(entry.path().string());
    if (error) Raise(err::kFileError, "cannot read the folder " + input + ": " + error.message());
    std::sort(files_.begin(), files_.end());
    return;
  }
  lines_.open(input);
  if (!lines_) Raise(err::kFileError, "cannot read " + input);
}

bool InputReader::Next(InputDocument& document) {
  if (from_folder_) {
    if (next_file_ == files_.size()) return false;
    const std::string& path = files_[next_file_++];
    document.source = BatchSource{0, fs::path(path).filename().string()};
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    // An unreadable file is passed on empty: it then fails as that document, not the batch.
    document.text = in ? text.str() : std::string();
    return true;
  }
  std::string line;
  while (std::getline(lines_, line)) {
    ++line_number_;
    if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
    document.source = BatchSource{line_number_, ""};
    document.text = std::move(line);
    return true;
  }
  return false;
}

long CountDocuments(const std::string& input) {
  InputReader reader(input);
  if (reader.FromFolder()) return static_cast<long>(reader.FileCount());
  std::ifstream in(input);
  long count = 0;
  for (std::string line; std::getline(in, line);)
    if (line.find_first_not_of(" \t\r") != std::string::npos) ++count;
  return count;
}

std::string Describe(const BatchSource& source) {
  return source.file.empty() ? "line " + std::to_string(source.line) : "file " + source.file;
}

std::string DefaultNameTemplate(bool from_folder) { return from_folder ? "{name}.pdf" : "{line}-{type}.pdf"; }

namespace {

// The value of one placeholder: a built-in name or a dotted path into the document file.
std::string FieldValue(const std::string& field, const json& document, const BatchSource& source) {
  if (field == "line" && source.file.empty()) return std::to_string(source.line);
  if (field == "name" && !source.file.empty()) return fs::path(source.file).stem().string();
  const json* value = &document;
  std::istringstream path(field);
  std::string key;
  while (std::getline(path, key, '.')) {
    if (!value->is_object() || !value->contains(key))
      Raise(err::kInvalidArgument, "output name: {" + field + "} is not in this document");
    value = &(*value)[key];
  }
  if (value->is_string()) return value->get<std::string>();
  if (value->is_number_integer()) return std::to_string(value->get<long long>());
  if (value->is_number() || value->is_boolean()) return value->dump();
  Raise(err::kInvalidArgument, "output name: {" + field + "} is not a single value");
}

// A name stays inside the output folder: relative, no "." or ".." step, no empty step, and no
// control characters that would make the file hard to find again.
void CheckStaysInside(const std::string& name) {
  const auto fail = [&](const std::string& why) {
    Raise(err::kInvalidArgument, "output name \"" + name + "\" " + why);
  };
  if (name.empty()) fail("is empty");
  if (name.front() == '/') fail("is absolute: names are relative to the output folder");
  for (unsigned char c : name)
    if (c < 0x20 || c == 0x7f) fail("holds a control character");
  std::istringstream steps(name);
  std::string step;
  while (std::getline(steps, step, '/'))
    if (step.empty() || step == "." || step == "..") fail("would leave the output folder or has an empty step");
  if (name.back() == '/') fail("ends in a folder, not a file");
}

}  // namespace

std::string OutputName(const std::string& name_template, const json& document, const BatchSource& source) {
  std::string name;
  for (size_t i = 0; i < name_template.size(); ++i) {
    const char c = name_template[i];
    if ((c == '{' || c == '}') && i + 1 < name_template.size() && name_template[i + 1] == c) {
      name += c;
      ++i;
    } else if (c == '{') {
      const size_t close = name_template.find('}', i);
      if (close == std::string::npos) Raise(err::kInvalidArgument, "output name template: a \"{\" is never closed");
      name += FieldValue(name_template.substr(i + 1, close - i - 1), document, source);
      i = close;
    } else if (c == '}') {
      Raise(err::kInvalidArgument, "output name template: a \"}\" without its \"{\" (write \"}}\")");
    } else {
      name += c;
    }
  }
  CheckStaysInside(name);
  return name;
}

}  // namespace quorvel::batch

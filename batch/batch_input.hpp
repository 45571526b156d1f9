// Reading a batch's documents one at a time, and naming each one's output file.
#pragma once

#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "batch/batch.hpp"

namespace quorvel::batch {

struct InputDocument {
  BatchSource source;
  std::string text;  // the document file's JSON, as read
};

// A JSON Lines file read line by line (blank lines are skipped but counted), or a folder's
// .json files in name order. Opening raises the file error naming what cannot be read.
class InputReader {
 public:
  explicit InputReader(const std::string& input);
  bool Next(InputDocument& document);
  bool FromFolder() const { return from_folder_; }
  size_t FileCount() const { return files_.size(); }

 private:
  bool from_folder_ = false;
  std::ifstream lines_;
  long line_number_ = 0;
  std::vector<std::string> files_;
  size_t next_file_ = 0;
};

// How many documents the input holds (non-blank lines, or .json files), for progress.
long CountDocuments(const std::string& input);

// "line 12" or "file x.json", for messages.
std::string Describe(const BatchSource& source);

// Fills the name template from the document; raises the invalid-argument error when a field is
// missing or not a plain value, or when the name is absolute or climbs out with "..".
std::string OutputName(const std::string& name_template, const nlohmann::json& document,
                       const BatchSource& source);

// The template used when the host gives none.
std::string DefaultNameTemplate(bool from_folder);

}  // namespace quorvel::batch

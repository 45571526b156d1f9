// A private temporary folder, removed with everything in it: where output is rendered before it
// is handed on whole (a print job, a document written to standard output).
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>
#include <vector>

#include "foundation/errors.hpp"

namespace quorvel {

class TempFolder {
 public:
  explicit TempFolder(const std::string& purpose) {
    std::string pattern = (std::filesystem::temp_directory_path() / "quorvel-job-XXXXXX").string();
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    if (!mkdtemp(buffer.data())) Raise(err::kFileError, "cannot make a folder for " + purpose + " in " + pattern);
    path_ = buffer.data();
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace quorvel

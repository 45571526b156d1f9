// Output files that appear whole or not at all: written under a temporary name, renamed at the end.
#pragma once

#include <cstdio>
#include <string>

namespace quorvel {

class AtomicFile {
 public:
  // Creates a temporary file beside `path`; an unwritable or missing directory raises the
  // file error naming the path.
  explicit AtomicFile(std::string path);
  ~AtomicFile();  // removes the temporary file unless committed
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  FILE* Stream() { return stream_; }
  const std::string& TempPath() const { return temp_path_; }
  const std::string& Path() const { return path_; }
  // Flushes, closes and renames the temporary file to the final name.
  void Commit();

 private:
  std::string path_;
  std::string temp_path_;
  FILE* stream_ = nullptr;
  bool committed_ = false;
};

// Raises the file error unless a file could be created at `path` (its directory exists and is
// writable). Lets a host learn of a bad output path before anything is printed.
void CheckWritable(const std::string& path);

}  // namespace quorvel

// Temporary-file-then-rename output.
#include "foundation/atomic_file.hpp"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "foundation/errors.hpp"

namespace quorvel {

namespace {
[[noreturn]] void RaiseFileError(const std::string& path, int error_number) {
  Raise(err::kFileError, "cannot write " + path + ": " + std::strerror(error_number));
}

std::string DirectoryOf(const std::string& path) {
  const auto parent = std::filesystem::path(path).parent_path();
  return parent.empty() ? std::string(".") : parent.string();
}
}  // namespace

AtomicFile::AtomicFile(std::string path) : path_(std::move(path)) {
  if (path_.empty()) Raise(err::kFileError, "no output path given");
  const std::string name = std::filesystem::path(path_).filename().string();
  temp_path_ = DirectoryOf(path_) + "/." + name + ".tmp-XXXXXX";
  const int fd = mkstemp(temp_path_.data());
  if (fd < 0) RaiseFileError(path_, errno);
  stream_ = fdopen(fd, "wb");
  if (!stream_) {
    const int error_number = errno;
    close(fd);
    unlink(temp_path_.c_str());
    RaiseFileError(path_, error_number);
  }
}

AtomicFile::~AtomicFile() {
  if (stream_) fclose(stream_);
  if (!committed_) unlink(temp_path_.c_str());
}

void AtomicFile::Commit() {
  const bool flushed = fflush(stream_) == 0 && fsync(fileno(stream_)) == 0;
  const int error_number = errno;
  const bool closed = fclose(stream_) == 0;
  stream_ = nullptr;
  if (!flushed || !closed) RaiseFileError(path_, error_number);
  if (std::rename(temp_path_.c_str(), path_.c_str()) != 0) RaiseFileError(path_, errno);
  committed_ = true;
}

void CheckWritable(const std::string& path) {
  AtomicFile probe(path);  // removed again on destruction
}

}  // namespace quorvel

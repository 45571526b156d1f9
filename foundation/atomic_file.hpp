// The one writer of every output file: whole or not at all, every system call checked.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quorvel {

// A file written under a temporary name beside its final path and renamed over it at Commit.
// Every write, fsync, close and rename is checked; a failure raises the file error naming the
// path and the system's reason, and the temporary file is removed, so an earlier file at the
// path stays exactly as it was. The file is created with mode 0666 less the umask.
//
// Temporary names are ".quorvel-tmp-PID-N-NAME": a later writer in the same folder removes
// those whose process is gone (a killed print), and never touches any other file.
class AtomicFile {
 public:
  // Creates the temporary file; a missing or unwritable folder, or a path that is a folder,
  // raises the file error naming the path.
  explicit AtomicFile(std::string path);
  ~AtomicFile();  // removes the temporary file unless committed
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  void Write(const void* data, size_t size);
  void Write(std::string_view text) { Write(text.data(), text.size()); }
  // For C callbacks that cannot raise: false on failure, which Seal and Commit raise later.
  bool TryWrite(const void* data, size_t size) noexcept;

  // Writes out what is buffered, fsyncs and closes; the file keeps its temporary name.
  void Seal();
  // Seal, then rename over the final path.
  void Commit();

  const std::string& Path() const { return path_; }

 private:
  void FlushBuffer();
  void WriteAll(const char* data, size_t size);
  [[noreturn]] void Fail(int error_number);
  void Rename();
  friend void CommitTogether(std::vector<std::unique_ptr<AtomicFile>>& files);

  std::string path_;
  std::string temp_path_;
  int fd_ = -1;
  std::string buffer_;
  int deferred_error_ = 0;  // first failure seen by TryWrite
  bool committed_ = false;
};

// Commits files that form one output (the pages of a PNG print): all sealed first, then renamed;
// if a rename fails, the files already renamed are put back as they were, so the earlier set
// stays whole.
void CommitTogether(std::vector<std::unique_ptr<AtomicFile>>& files);

// Removes the temporary files that process `owner` left in the folder of `path`: for a parent
// whose worker process died while writing there.
void RemoveTemporariesOfProcess(const std::string& path, int owner);

// Raises the file error unless a file could be created at `path`. Lets a host learn of a bad
// output path before anything is printed.
void CheckWritable(const std::string& path);

// Test seam: makes a chosen system call of the writer fail, so every write path can be tested
// for a full disk or a failing device without privileges. Process-wide.
enum class FileStep { Create, Write, Sync, Close, Rename };
namespace file_faults {
// The `nth` call (1-based, counted from now) of `step` fails with `error_number`.
void Inject(FileStep step, int nth, int error_number);
void Clear();
// How many calls of `step` were made since the last Clear (to aim at the middle of an output).
int Calls(FileStep step);
}  // namespace file_faults

}  // namespace quorvel

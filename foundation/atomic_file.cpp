// Temporary-file-then-rename output with every system call checked, and its fault-injection seam.
#include "foundation/atomic_file.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <set>

#include "foundation/errors.hpp"

namespace quorvel {

namespace {

constexpr std::string_view kTempPrefix = ".quorvel-tmp-";
constexpr size_t kBufferSize = 1 << 16;

struct Fault {
  std::atomic<int> calls{0};
  std::atomic<int> fail_at{0};  // 0: no fault planned
  std::atomic<int> error_number{0};
};
std::array<Fault, 5>& Faults() {
  static std::array<Fault, 5> faults;
  return faults;
}

// Counts one call of `step`; true (with errno set) when the test seam wants it to fail.
bool Injected(FileStep step) {
  Fault& fault = Faults()[static_cast<size_t>(step)];
  const int call = ++fault.calls;
  if (fault.fail_at == 0 || call != fault.fail_at) return false;
  errno = fault.error_number;
  return true;
}

std::string DirectoryOf(const std::string& path) {
  const auto parent = std::filesystem::path(path).parent_path();
  return parent.empty() ? std::string(".") : parent.string();
}

[[noreturn]] void RaiseFileError(const std::string& path, int error_number) {
  Raise(err::kFileError, "cannot write " + path + ": " + std::strerror(error_number));
}

// The pid in a name of the form ".quorvel-tmp-PID-N-…", or 0 for any other name.
pid_t OwnerOf(std::string_view name) {
  if (name.substr(0, kTempPrefix.size()) != kTempPrefix) return 0;
  name.remove_prefix(kTempPrefix.size());
  const size_t dash = name.find('-');
  if (dash == 0 || dash == std::string_view::npos || dash > 9) return 0;
  pid_t pid = 0;
  for (char c : name.substr(0, dash)) {
    if (c < '0' || c > '9') return 0;
    pid = pid * 10 + (c - '0');
  }
  return pid;
}

// Removes the temporary files that a process no longer alive left in `dir` (a killed print).
// Done once per folder and process: a document of many pages writes many files to one folder.
void RemoveStaleTemporaries(const std::string& dir) {
  static std::mutex mutex;
  static std::set<std::string> cleaned;
  {
    std::lock_guard<std::mutex> lock(mutex);
    if (!cleaned.insert(dir).second) return;
  }
  DIR* listing = opendir(dir.c_str());
  if (!listing) return;
  while (const dirent* entry = readdir(listing)) {
    const pid_t owner = OwnerOf(entry->d_name);
    if (owner <= 0 || owner == getpid()) continue;
    if (kill(owner, 0) != 0 && errno == ESRCH) unlinkat(dirfd(listing), entry->d_name, 0);
  }
  closedir(listing);
}

}  // namespace

void RemoveTemporariesOfProcess(const std::string& path, int owner) {
  DIR* listing = opendir(DirectoryOf(path).c_str());
  if (!listing) return;
  while (const dirent* entry = readdir(listing))
    if (owner > 0 && OwnerOf(entry->d_name) == owner) unlinkat(dirfd(listing), entry->d_name, 0);
  closedir(listing);
}

namespace {

std::string NewTempPath(const std::string& path) {
  static std::atomic<unsigned> sequence{0};
  const std::string name = std::filesystem::path(path).filename().string();
  return DirectoryOf(path) + "/" + std::string(kTempPrefix) + std::to_string(getpid()) + "-" +
         std::to_string(++sequence) + "-" + name;
}

}  // namespace

AtomicFile::AtomicFile(std::string path) : path_(std::move(path)) {
  if (path_.empty()) Raise(err::kFileError, "no output path given");
  struct stat existing;
  if (stat(path_.c_str(), &existing) == 0 && S_ISDIR(existing.st_mode)) RaiseFileError(path_, EISDIR);
  RemoveStaleTemporaries(DirectoryOf(path_));
  temp_path_ = NewTempPath(path_);
  // 0666 here: the kernel takes the umask off, as for any file a program creates.
  fd_ = Injected(FileStep::Create) ? -1 : open(temp_path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd_ < 0) RaiseFileError(path_, errno);
  buffer_.reserve(kBufferSize);
}

AtomicFile::~AtomicFile() {
  if (fd_ >= 0) close(fd_);
  if (!committed_) unlink(temp_path_.c_str());
}

void AtomicFile::Fail(int error_number) {
  if (fd_ >= 0) close(fd_);
  fd_ = -1;
  unlink(temp_path_.c_str());
  RaiseFileError(path_, error_number);
}

bool AtomicFile::TryWrite(const void* data, size_t size) noexcept {
  if (deferred_error_ != 0 || fd_ < 0) return false;
  try {
    // The buffer never grows past its size: what would overflow it first empties it, and a
    // block as large as the buffer goes straight to the file instead of being copied.
    if (!buffer_.empty() && buffer_.size() + size > kBufferSize) FlushBuffer();
    if (size >= kBufferSize) {
      WriteAll(static_cast<const char*>(data), size);
      return true;
    }
    buffer_.append(static_cast<const char*>(data), size);
    if (buffer_.size() >= kBufferSize) FlushBuffer();
    return true;
  } catch (const AutomationError&) {
    return false;  // FlushBuffer kept the reason in deferred_error_
  } catch (const std::bad_alloc&) {
    deferred_error_ = ENOMEM;
    return false;
  }
}

void AtomicFile::Write(const void* data, size_t size) {
  if (!TryWrite(data, size)) Fail(deferred_error_ != 0 ? deferred_error_ : EBADF);
}

void AtomicFile::FlushBuffer() {
  WriteAll(buffer_.data(), buffer_.size());
  buffer_.clear();
}

void AtomicFile::WriteAll(const char* data, size_t size) {
  size_t done = 0;
  while (done < size) {
    const ssize_t n = Injected(FileStep::Write) ? -1 : write(fd_, data + done, size - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      deferred_error_ = n < 0 ? errno : ENOSPC;
      Raise(err::kFileError, path_);
    }
    done += static_cast<size_t>(n);
  }
}

void AtomicFile::Seal() {
  if (fd_ < 0 && deferred_error_ == 0) return;  // sealed before
  if (deferred_error_ != 0) Fail(deferred_error_);
  try {
    FlushBuffer();
  } catch (const AutomationError&) {
    Fail(deferred_error_);
  }
  if (Injected(FileStep::Sync) || fsync(fd_) != 0) Fail(errno);
  const int fd = fd_;
  fd_ = -1;
  // A failed close may be the first report of a write that did not reach the disk (NFS).
  if (Injected(FileStep::Close) || close(fd) != 0) {
    const int error_number = errno;
    unlink(temp_path_.c_str());
    RaiseFileError(path_, error_number);
  }
}

void AtomicFile::Rename() {
  if (Injected(FileStep::Rename) || std::rename(temp_path_.c_str(), path_.c_str()) != 0) Fail(errno);
  committed_ = true;
}

void AtomicFile::Commit() {
  Seal();
  Rename();
}

void CommitTogether(std::vector<std::unique_ptr<AtomicFile>>& files) {
  for (auto& file : files) file->Seal();
  // A hard link keeps each earlier file under a temporary name until the new set is in place.
  std::vector<std::string> backups(files.size());
  for (size_t i = 0; i < files.size(); ++i) {
    const std::string backup = NewTempPath(files[i]->Path());
    if (link(files[i]->Path().c_str(), backup.c_str()) == 0) backups[i] = backup;
  }
  size_t renamed = 0;
  try {
    for (; renamed < files.size(); ++renamed) files[renamed]->Rename();
  } catch (...) {
    for (size_t i = 0; i < files.size(); ++i) {
      if (i < renamed && !backups[i].empty()) std::rename(backups[i].c_str(), files[i]->Path().c_str());
      else if (i < renamed) unlink(files[i]->Path().c_str());
      else if (!backups[i].empty()) unlink(backups[i].c_str());
    }
    throw;
  }
  for (const std::string& backup : backups)
    if (!backup.empty()) unlink(backup.c_str());
}

void CheckWritable(const std::string& path) {
  AtomicFile probe(path);  // removed again on destruction
}

namespace file_faults {

void Inject(FileStep step, int nth, int error_number) {
  Fault& fault = Faults()[static_cast<size_t>(step)];
  fault.error_number = error_number;
  fault.fail_at = fault.calls + nth;
}

void Clear() {
  for (Fault& fault : Faults()) {
    fault.fail_at = 0;
    fault.calls = 0;
  }
}

int Calls(FileStep step) { return Faults()[static_cast<size_t>(step)].calls; }

}  // namespace file_faults

}  // namespace quorvel

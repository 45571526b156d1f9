// Test helpers for whole-or-nothing output: a directory's exact contents, a small tmpfs that a
// root run mounts, and the process umask set for one test.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>

namespace quorvel::testing {

// Every file of a directory by name with its bytes: equal snapshots mean nothing was added,
// removed or changed, temporary files included.
std::map<std::string, std::string> Snapshot(const std::string& dir);

// How many of the writer's temporary files `dir` holds.
int TemporaryFiles(const std::string& dir);
// Bytes held by those temporary files together.
uintmax_t TemporaryBytes(const std::string& dir);

// A tmpfs of `kib` KiB mounted on a fresh directory, unmounted at scope end. Mounting needs
// root: Mounted() is false elsewhere and the test skips that part.
class SmallFilesystem {
 public:
  SmallFilesystem(const std::string& name, int kib);
  ~SmallFilesystem();
  SmallFilesystem(const SmallFilesystem&) = delete;
  SmallFilesystem& operator=(const SmallFilesystem&) = delete;
  bool Mounted() const { return mounted_; }
  const std::string& Dir() const { return dir_; }
  // Fills what is left with a file named "filler", so the next write finds the disk full.
  void Fill();

 private:
  std::string dir_;
  bool mounted_ = false;
};

// The process umask for one test, put back afterwards.
class ScopedUmask {
 public:
  explicit ScopedUmask(mode_t mask);
  ~ScopedUmask();

 private:
  mode_t previous_;
};

// The permission bits of a file.
mode_t ModeOf(const std::string& path);

}  // namespace quorvel::testing

// Directory snapshots, a root-only small tmpfs, and a scoped umask for the output tests.
#include "support/output_helpers.hpp"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <vector>

#include "support/ops_helpers.hpp"

namespace quorvel::testing {

std::map<std::string, std::string> Snapshot(const std::string& dir) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(dir))
    files[entry.path().filename().string()] = ReadFile(entry.path().string());
  return files;
}

int TemporaryFiles(const std::string& dir) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(dir))
    if (entry.path().filename().string().rfind(".quorvel-tmp-", 0) == 0) ++count;
  return count;
}

uintmax_t TemporaryBytes(const std::string& dir) {
  uintmax_t bytes = 0;
  std::error_code gone;  // a temporary file may be renamed or removed while we look
  for (const auto& entry : std::filesystem::directory_iterator(dir))
    if (entry.path().filename().string().rfind(".quorvel-tmp-", 0) == 0) {
      const uintmax_t size = std::filesystem::file_size(entry.path(), gone);
      if (!gone) bytes += size;
    }
  return bytes;
}

SmallFilesystem::SmallFilesystem(const std::string& name, int kib) : dir_(TempDir(name)) {
  if (geteuid() != 0) return;
  const std::string options = "size=" + std::to_string(kib) + "k";
  mounted_ = mount("tmpfs", dir_.c_str(), "tmpfs", 0, options.c_str()) == 0;
}

SmallFilesystem::~SmallFilesystem() {
  if (mounted_) umount2(dir_.c_str(), MNT_DETACH);
  std::error_code ignored;
  std::filesystem::remove_all(dir_, ignored);
}

void SmallFilesystem::Fill() {
  const int fd = open((dir_ + "/filler").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
  const std::vector<char> block(4096, 'x');
  while (write(fd, block.data(), block.size()) > 0) {
  }
  while (write(fd, block.data(), 1) > 0) {  // the last bytes of a partly used page
  }
  close(fd);
}

ScopedUmask::ScopedUmask(mode_t mask) : previous_(umask(mask)) {}
ScopedUmask::~ScopedUmask() { umask(previous_); }

mode_t ModeOf(const std::string& path) {
  struct stat info {};
  stat(path.c_str(), &info);
  return info.st_mode & 0777;
}

}  // namespace quorvel::testing

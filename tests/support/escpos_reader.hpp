// Test helpers for receipt printers: a small ESC/POS reader written from the command reference
// (not from the library's encoder), 1-bit pictures of PNG pages, and a fake network printer.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace quorvel::testing {

// One dot per byte, 1 = black; rows top to bottom.
struct Bitmap {
  int width = 0;
  std::vector<std::vector<uint8_t>> rows;
  int Height() const { return static_cast<int>(rows.size()); }
};

struct EscPosCommand {
  std::string name;       // "ESC @", "GS v 0", "ESC d", "ESC J", "GS V", "ESC p"
  std::vector<int> args;  // the parameter bytes (for GS v 0: m, width in bytes, rows)
};

// What a printer would make of a job: the commands in order and the picture the raster blocks
// print, one under the other. `error` names the first byte the reader does not understand (or a
// block cut short, or blocks of different widths); the commands before it are kept.
struct EscPosJob {
  std::vector<EscPosCommand> commands;
  Bitmap picture;
  std::string error;
  std::vector<std::string> Names() const;
};
EscPosJob ReadEscPos(const std::string& bytes);

// A PNG read with cairo and made 1-bit: a pixel is black when its luminance is below `threshold`.
Bitmap ThresholdPng(const std::string& path, int threshold);
// The rows [first, first + count) of `bitmap`.
Bitmap Rows(const Bitmap& bitmap, int first, int count);
// "" when equal, else where the first difference is.
std::string FirstDifference(const Bitmap& expected, const Bitmap& actual);
int BlackDots(const Bitmap& bitmap);

// A receipt printer's raw port on 127.0.0.1 (a free port), served by a thread for a bounded
// time. It takes up to `connections` jobs, one after the other, and behaves as told with each.
class FakeNetworkPrinter {
 public:
  enum class Behaviour {
    TakeAll,     // reads to the end of the job, then closes
    CloseEarly,  // reads `close_after` bytes, then closes with the rest unread
    Stall,       // accepts and never reads, with a small receive buffer, until the test ends
  };
  explicit FakeNetworkPrinter(Behaviour behaviour, size_t close_after = 0, int connections = 1);
  ~FakeNetworkPrinter();
  FakeNetworkPrinter(const FakeNetworkPrinter&) = delete;
  FakeNetworkPrinter& operator=(const FakeNetworkPrinter&) = delete;

  std::string Uri() const { return "tcp://127.0.0.1:" + std::to_string(port_); }
  // Stops serving and returns the bytes of each connection, in order. With `wait_seconds`, first
  // waits (at most that long) until every expected connection has come and gone, for jobs that
  // arrive on their own time (through a print queue).
  std::vector<std::string> Jobs(int wait_seconds = 0);

 private:
  void Serve();
  std::string TakeOne(int connection);

  Behaviour behaviour_;
  size_t close_after_;
  int connections_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<bool> stop_{false};
  std::atomic<int> taken_{0};
  std::vector<std::string> jobs_;
  std::thread thread_;
};

// A port on 127.0.0.1 where nothing listens: connecting is refused.
int ClosedPort();

}  // namespace quorvel::testing

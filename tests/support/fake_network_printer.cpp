// A receipt printer's raw port on 127.0.0.1 for the tests, served by one thread for a bounded time.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>

#include "support/escpos_reader.hpp"

namespace quorvel::testing {

namespace {

using Clock = std::chrono::steady_clock;
// However a test goes, the printer stops serving after this long.
constexpr auto kServeAtMost = std::chrono::seconds(30);

int BoundSocket(int receive_buffer) {
  const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) throw std::runtime_error("fake printer: no socket");
  // Set before listening, so accepted connections advertise a small window and a sender that
  // outruns the printer must wait.
  if (receive_buffer > 0) setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &receive_buffer, sizeof receive_buffer);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = 0;  // any free port
  if (bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    close(fd);
    throw std::runtime_error("fake printer: cannot bind 127.0.0.1");
  }
  return fd;
}

int PortOf(int fd) {
  sockaddr_in address{};
  socklen_t length = sizeof address;
  getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
  return ntohs(address.sin_port);
}

// Waits for `fd` to be readable for at most 50 ms; false when it is not yet.
bool Readable(int fd) {
  pollfd entry{fd, POLLIN, 0};
  return poll(&entry, 1, 50) > 0;
}

}  // namespace

FakeNetworkPrinter::FakeNetworkPrinter(Behaviour behaviour, size_t close_after, int connections)
    : behaviour_(behaviour), close_after_(close_after), connections_(connections) {
  listener_ = BoundSocket(behaviour == Behaviour::Stall ? 4096 : 0);
  port_ = PortOf(listener_);
  if (listen(listener_, connections) != 0) {
    close(listener_);
    throw std::runtime_error("fake printer: cannot listen");
  }
  thread_ = std::thread([this] { Serve(); });
}

FakeNetworkPrinter::~FakeNetworkPrinter() {
  stop_ = true;
  if (thread_.joinable()) thread_.join();
  close(listener_);
}

std::vector<std::string> FakeNetworkPrinter::Jobs(int wait_seconds) {
  const Clock::time_point end = Clock::now() + std::chrono::seconds(wait_seconds);
  while (taken_ < connections_ && Clock::now() < end) usleep(20000);
  stop_ = true;
  if (thread_.joinable()) thread_.join();
  return jobs_;
}

void FakeNetworkPrinter::Serve() {
  const Clock::time_point end = Clock::now() + kServeAtMost;
  while (static_cast<int>(jobs_.size()) < connections_ && Clock::now() < end) {
    if (!Readable(listener_)) {
      // Stop only when idle: a job already connecting is still served.
      if (stop_) return;
      continue;
    }
    const int connection = accept(listener_, nullptr, nullptr);
    if (connection < 0) continue;
    jobs_.push_back(TakeOne(connection));
    close(connection);  // with bytes unread, this resets the connection, as a printer that fails does
    ++taken_;
  }
}

std::string FakeNetworkPrinter::TakeOne(int connection) {
  const Clock::time_point end = Clock::now() + kServeAtMost;
  std::string job;
  char buffer[4096];
  while (Clock::now() < end) {
    if (behaviour_ == Behaviour::Stall) {
      if (stop_) break;
      usleep(20000);
      continue;
    }
    if (behaviour_ == Behaviour::CloseEarly && job.size() >= close_after_) break;
    if (!Readable(connection)) continue;
    const size_t wanted = behaviour_ == Behaviour::CloseEarly ? std::min(sizeof buffer, close_after_ - job.size())
                                                              : sizeof buffer;
    const ssize_t n = read(connection, buffer, wanted);
    if (n <= 0) break;  // the end of the job (or the sender gave up)
    job.append(buffer, static_cast<size_t>(n));
  }
  return job;
}

int ClosedPort() {
  const int fd = BoundSocket(0);
  const int port = PortOf(fd);
  close(fd);  // bound but never listening: nothing answers on it now
  return port;
}

}  // namespace quorvel::testing

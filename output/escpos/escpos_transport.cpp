// Sending ESC/POS bytes over TCP and to device nodes, with deadlines and whole-or-error results.
#include "output/escpos/escpos_transport.hpp"

#include <fcntl.h>
#include <linux/sockios.h>
#include <netdb.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>

#include "foundation/errors.hpp"
#include "foundation/utf8.hpp"
#include "print_queue/cups_job.hpp"

namespace quorvel::escpos {

namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void Fail(const std::string& context) { print_queue::RaisePrinterError(context); }

std::string Progress(size_t sent, size_t total) {
  return std::to_string(sent) + " of " + std::to_string(total) + " bytes";
}

// Milliseconds left until `deadline`, never negative, capped at `cap`.
int Remaining(Clock::time_point deadline, int cap = 1 << 30) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
  return static_cast<int>(std::clamp<long long>(left, 0, cap));
}

// Waits for `events` on `fd`; false when the deadline passed first.
bool WaitFor(int fd, short events, Clock::time_point deadline, int cap = 1 << 30) {
  pollfd entry{fd, events, 0};
  for (;;) {
    const int ready = poll(&entry, 1, Remaining(deadline, cap));
    if (ready > 0) return true;
    if (ready == 0) return false;
    if (errno != EINTR) return true;  // let the next call report the descriptor's own error
  }
}

class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Get() const { return fd_; }
  void Reset(int fd) {
    if (fd_ >= 0) close(fd_);
    fd_ = fd;
  }
  int Release() {
    const int fd = fd_;
    fd_ = -1;
    return fd;
  }
  // Closes now and reports a failed close (a device may flush and fail only there).
  int Close() {
    const int result = close(fd_);
    fd_ = -1;
    return result;
  }

 private:
  int fd_;
};

int SocketError(int fd) {
  int error = 0;
  socklen_t length = sizeof error;
  if (getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length) != 0) return errno;
  return error;
}

// Tries each address of the host in turn; the connected socket, or the printer error naming
// why the last address failed.
int Connect(const std::string& where, const std::string& host, const std::string& port, Clock::time_point deadline) {
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (const int status = getaddrinfo(host.c_str(), port.c_str(), &hints, &found); status != 0)
    Fail("printer " + where + ": " + gai_strerror(status));
  std::string cause = "no address";
  Descriptor socket_fd;
  for (addrinfo* address = found; address; address = address->ai_next) {
    socket_fd.Reset(socket(address->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (socket_fd.Get() < 0) { cause = std::strerror(errno); continue; }
    int error = connect(socket_fd.Get(), address->ai_addr, address->ai_addrlen) == 0 ? 0 : errno;
    if (error == EINPROGRESS) {
      error = WaitFor(socket_fd.Get(), POLLOUT, deadline) ? SocketError(socket_fd.Get()) : ETIMEDOUT;
    }
    if (error == 0) break;
    cause = std::strerror(error);
    socket_fd.Reset(-1);
  }
  freeaddrinfo(found);
  if (socket_fd.Get() < 0) Fail("printer " + where + " cannot be reached: " + cause);
  return socket_fd.Release();
}

void SendAll(int fd, const std::string& where, const std::string& job, Clock::time_point deadline) {
  size_t sent = 0;
  while (sent < job.size()) {
    const ssize_t n = send(fd, job.data() + sent, job.size() - sent, MSG_NOSIGNAL);
    if (n > 0) { sent += static_cast<size_t>(n); continue; }
    if (n < 0 && errno == EINTR) continue;
    if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
      if (!WaitFor(fd, POLLOUT, deadline))
        Fail("printer " + where + " timed out after taking " + Progress(sent, job.size()));
      continue;
    }
    Fail("printer " + where + " closed the connection after " + Progress(sent, job.size()) + ": " +
         std::strerror(n < 0 ? errno : EPIPE));
  }
}

// After the whole job and our end of stream: the printer has it when it closes its side with all
// our bytes acknowledged. A printer that closed early resets the connection instead.
void AwaitTaken(int fd, const std::string& where, size_t total, Clock::time_point deadline) {
  bool peer_closed = false;
  for (;;) {
    if (!peer_closed) {
      char status[256];  // printers may answer with status bytes; they are not needed here
      const ssize_t n = recv(fd, status, sizeof status, 0);
      if (n == 0) peer_closed = true;
      if (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)
        Fail("printer " + where + " closed the connection before taking the whole job (" +
             std::to_string(total) + " bytes sent): " + std::strerror(errno));
    }
    // The send queue first: a reset empties it and sets the error in one step.
    int unacknowledged = 0;
    if (ioctl(fd, SIOCOUTQ, &unacknowledged) != 0) unacknowledged = -1;
    if (const int error = SocketError(fd))
      Fail("printer " + where + " closed the connection before taking the whole job: " + std::strerror(error));
    if (unacknowledged == 0 && (peer_closed || Remaining(deadline) == 0)) return;
    if (Remaining(deadline) == 0)
      Fail("printer " + where + " timed out with " + std::to_string(unacknowledged) + " of " +
           std::to_string(total) + " bytes not taken");
    WaitFor(fd, peer_closed ? 0 : POLLIN, deadline, 20);
  }
}

}  // namespace

Destination ParseDestination(const std::string& text) {
  Destination destination;
  if (text.empty()) Raise(err::kInvalidArgument, "no ESC/POS destination given");
  if (text.rfind("tcp://", 0) == 0) {
    destination.kind = Destination::Kind::Tcp;
    std::string rest = text.substr(6);
    if (!rest.empty() && rest.back() == '/') rest.pop_back();
    const size_t colon = rest.rfind(':');
    const bool bracketed = !rest.empty() && rest.front() == '[';  // [IPv6]:port
    const bool has_port = colon != std::string::npos && (!bracketed || rest.find(']') < colon);
    destination.host = has_port ? rest.substr(0, colon) : rest;
    destination.port = has_port ? rest.substr(colon + 1) : "9100";
    if (bracketed && destination.host.size() >= 2) destination.host = destination.host.substr(1, destination.host.size() - 2);
    const bool digits = !destination.port.empty() && destination.port.size() <= 5 &&
                        destination.port.find_first_not_of("0123456789") == std::string::npos;
    if (destination.host.empty() || !digits || std::stoi(destination.port) < 1 || std::stoi(destination.port) > 65535)
      Raise(err::kInvalidArgument, "ESC/POS destination " + text + ": write tcp://HOST or tcp://HOST:PORT");
  } else if (text.rfind("cups://", 0) == 0) {
    destination.kind = Destination::Kind::Queue;
    destination.queue = text.substr(7);
  } else {
    const bool file = LowercaseEnding(text) == ".escpos";
    destination.kind = file ? Destination::Kind::File : Destination::Kind::DeviceNode;
    destination.path = text;
  }
  return destination;
}

void SendToNetwork(const std::string& host, const std::string& port, const std::string& job, int timeout_seconds) {
  const std::string where = "tcp://" + host + ":" + port;
  const Clock::time_point deadline = Clock::now() + std::chrono::seconds(timeout_seconds);
  Descriptor connection(Connect(where, host, port, deadline));
  SendAll(connection.Get(), where, job, deadline);
  if (shutdown(connection.Get(), SHUT_WR) != 0)
    Fail("printer " + where + " closed the connection at the end of the job: " + std::strerror(errno));
  AwaitTaken(connection.Get(), where, job.size(), deadline);
}

void WriteToDeviceNode(const std::string& path, const std::string& job, int timeout_seconds) {
  const Clock::time_point deadline = Clock::now() + std::chrono::seconds(timeout_seconds);
  // Non-blocking, so that a printer that is off or out of paper ends in the time-out, not a hang.
  Descriptor device(open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC | O_NONBLOCK));
  if (device.Get() < 0) Fail("printer device " + path + " cannot be opened: " + std::strerror(errno));
  struct stat info {};
  if (fstat(device.Get(), &info) == 0 && S_ISREG(info.st_mode))
    Fail("printer device " + path + " is a plain file; a file of ESC/POS bytes is named NAME.escpos");
  size_t written = 0;
  while (written < job.size()) {
    const ssize_t n = write(device.Get(), job.data() + written, job.size() - written);
    if (n > 0) { written += static_cast<size_t>(n); continue; }
    if (n < 0 && errno == EINTR) continue;
    if (n < 0 && errno == EAGAIN) {
      if (!WaitFor(device.Get(), POLLOUT, deadline))
        Fail("printer device " + path + " timed out after taking " + Progress(written, job.size()));
      continue;
    }
    Fail("writing to printer device " + path + " failed after " + Progress(written, job.size()) + ": " +
         std::strerror(n < 0 ? errno : EIO));
  }
  if (device.Close() != 0) Fail("printer device " + path + " failed at the end of the job: " + std::strerror(errno));
}

}  // namespace quorvel::escpos

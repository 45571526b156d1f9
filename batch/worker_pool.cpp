// Forked batch workers: length-prefixed messages over a pipe pair per worker.
#include "batch/worker_pool.hpp"

#include <malloc.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <thread>

#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"

namespace quorvel::batch {

namespace {

bool WriteAll(int fd, const void* data, size_t size) {
  const char* bytes = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t n = write(fd, bytes, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    bytes += n;
    size -= static_cast<size_t>(n);
  }
  return true;
}

bool ReadAll(int fd, void* data, size_t size) {
  char* bytes = static_cast<char*>(data);
  while (size > 0) {
    const ssize_t n = read(fd, bytes, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;  // end of file: the other side is gone
    bytes += n;
    size -= static_cast<size_t>(n);
  }
  return true;
}

// One message: a fixed head, then texts each preceded by their length.
struct Writer {
  std::string bytes;
  template <class T> void Put(T value) { bytes.append(reinterpret_cast<const char*>(&value), sizeof value); }
  void Put(const std::string& text) {
    Put(static_cast<uint64_t>(text.size()));
    bytes += text;
  }
};

template <class T> bool Get(int fd, T& value) { return ReadAll(fd, &value, sizeof value); }
bool Get(int fd, std::string& text) {
  uint64_t size = 0;
  if (!Get(fd, size)) return false;
  text.resize(size);
  return ReadAll(fd, text.data(), size);
}

bool SendJob(int fd, const Job& job) {
  Writer message;
  message.Put(job.id);
  message.Put(job.path);
  message.Put(job.text);
  return WriteAll(fd, message.bytes.data(), message.bytes.size());
}

bool ReceiveJob(int fd, Job& job) { return Get(fd, job.id) && Get(fd, job.path) && Get(fd, job.text); }

bool SendOutcome(int fd, const Outcome& outcome) {
  Writer message;
  message.Put(outcome.id);
  message.Put(static_cast<int32_t>(outcome.ok));
  message.Put(outcome.number);
  message.Put(outcome.pages);
  message.Put(outcome.message);
  return WriteAll(fd, message.bytes.data(), message.bytes.size());
}

bool ReceiveOutcome(int fd, Outcome& outcome) {
  int32_t ok = 0;
  if (!(Get(fd, outcome.id) && Get(fd, ok) && Get(fd, outcome.number) && Get(fd, outcome.pages) &&
        Get(fd, outcome.message)))
    return false;
  outcome.ok = ok != 0;
  return true;
}

// Temporary files a killed worker may have left beside its output: ".NAME.tmp-XXXXXX", and for
// PNG pages ".STEM-N.png.tmp-XXXXXX" (with its ".render" companion).
void RemoveTemporariesOf(const std::string& path) {
  namespace fs = std::filesystem;
  const fs::path target(path);
  const fs::path folder = target.parent_path().empty() ? fs::path(".") : target.parent_path();
  const std::string name = target.filename().string();
  const bool png = target.extension() == ".png";
  const std::string page_prefix = "." + target.stem().string() + "-";
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    const std::string candidate = entry.path().filename().string();
    const size_t page_end = candidate.find(".png.tmp-");
    const bool own = candidate.rfind("." + name + ".tmp-", 0) == 0 ||
                     (png && candidate.rfind(page_prefix, 0) == 0 && page_end != std::string::npos &&
                      page_end > page_prefix.size() &&
                      candidate.find_first_not_of("0123456789", page_prefix.size()) == page_end);
    if (own) fs::remove(entry.path(), error);
  }
}

}  // namespace

int CoreCount() {
  cpu_set_t set;
  if (sched_getaffinity(0, sizeof set, &set) == 0) return std::max(1, CPU_COUNT(&set));
  return std::max(1u, std::thread::hardware_concurrency());
}

WorkerPool::WorkerPool(int count, Handler handler) : handler_(std::move(handler)), workers_(count) {
  for (Worker& worker : workers_) Start(worker);
}

WorkerPool::~WorkerPool() {
  for (Worker& worker : workers_) Stop(worker);
}

void WorkerPool::Start(Worker& worker) {
  int to_child[2], from_child[2];
  if (pipe2(to_child, O_CLOEXEC) != 0) Raise(err::kFileError, std::string("cannot start a worker: ") + std::strerror(errno));
  if (pipe2(from_child, O_CLOEXEC) != 0) {
    close(to_child[0]);
    close(to_child[1]);
    Raise(err::kFileError, std::string("cannot start a worker: ") + std::strerror(errno));
  }
  const pid_t pid = fork();
  if (pid < 0) Raise(err::kFileError, std::string("cannot start a worker: ") + std::strerror(errno));
  if (pid == 0) {
    // The worker: interruption is the parent's to handle (it stops handing out jobs and closes
    // the pipe), so a Ctrl-C to the whole process group never cuts a document in half.
    signal(SIGINT, SIG_IGN);
    signal(SIGTERM, SIG_IGN);
    // Each document builds and frees much the same memory again; keeping the heap (rather than
    // returning it to the system after every document and faulting it back in) halves the CPU
    // a document costs, and the worker's size stays flat at its largest document.
    mallopt(M_TRIM_THRESHOLD, 256 << 20);
    mallopt(M_TOP_PAD, 16 << 20);
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
    for (const Worker& other : workers_) {
      if (other.to_worker >= 0) close(other.to_worker);
      if (other.from_worker >= 0) close(other.from_worker);
    }
    close(to_child[1]);
    close(from_child[0]);
    Job job;
    while (ReceiveJob(to_child[0], job))
      if (!SendOutcome(from_child[1], handler_(job))) break;
    _exit(0);  // no static destructors or atexit handlers of the parent's program
  }
  close(to_child[0]);
  close(from_child[1]);
  worker = Worker{pid, to_child[1], from_child[0], false, {}};
}

void WorkerPool::Stop(Worker& worker) {
  if (worker.pid < 0) return;
  close(worker.to_worker);  // end of input: the worker finishes its job and leaves
  close(worker.from_worker);
  int status = 0;
  while (waitpid(worker.pid, &status, 0) < 0 && errno == EINTR) {
  }
  worker.pid = -1;
}

bool WorkerPool::HasIdle() const {
  for (const Worker& worker : workers_)
    if (!worker.busy) return true;
  return false;
}

bool WorkerPool::Busy() const {
  for (const Worker& worker : workers_)
    if (worker.busy) return true;
  return false;
}

void WorkerPool::Give(Job job) {
  for (Worker& worker : workers_) {
    if (worker.busy) continue;
    worker.busy = true;
    worker.job = std::move(job);
    // A worker that died while idle shows here as a failed send; its end is seen by Collect.
    SendJob(worker.to_worker, worker.job);
    return;
  }
  Raise(err::kComponent, "no idle batch worker");
}

Outcome WorkerPool::Lost(Worker& worker, int status) {
  Outcome outcome{worker.job.id, false, err::kComponent, 0, "the worker process "};
  if (WIFSIGNALED(status)) outcome.message += "was killed by signal " + std::to_string(WTERMSIG(status));
  else outcome.message += "ended (exit status " + std::to_string(WEXITSTATUS(status)) + ")";
  outcome.message += " while printing this document";
  RemoveTemporariesOf(worker.job.path);
  RemoveTemporariesOfProcess(worker.job.path, worker.pid);
  return outcome;
}

std::vector<Outcome> WorkerPool::Collect(int timeout_ms) {
  std::vector<pollfd> fds;
  for (const Worker& worker : workers_) fds.push_back({worker.busy ? worker.from_worker : -1, POLLIN, 0});
  std::vector<Outcome> finished;
  if (poll(fds.data(), fds.size(), timeout_ms) <= 0) return finished;  // timeout or signal
  for (size_t i = 0; i < workers_.size(); ++i) {
    Worker& worker = workers_[i];
    if (!worker.busy || fds[i].revents == 0) continue;
    Outcome outcome;
    if (ReceiveOutcome(worker.from_worker, outcome)) {
      finished.push_back(std::move(outcome));
      worker.busy = false;
      continue;
    }
    // The pipe closed mid-job: the worker is gone. Report its job and put a fresh one in its place.
    close(worker.to_worker);
    close(worker.from_worker);
    int status = 0;
    while (waitpid(worker.pid, &status, 0) < 0 && errno == EINTR) {
    }
    finished.push_back(Lost(worker, status));  // while its pid still names its temporary files
    worker.pid = -1;
    worker.to_worker = worker.from_worker = -1;
    Start(worker);
  }
  return finished;
}

}  // namespace quorvel::batch

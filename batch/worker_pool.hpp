// Worker processes fed through pipes: the parent hands each a job and collects the outcome.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quorvel::batch {

struct Job {
  uint64_t id = 0;
  std::string path;  // the file to write
  std::string text;  // the document file's JSON
};

struct Outcome {
  uint64_t id = 0;
  bool ok = false;
  int32_t number = 0;  // the automation error number when not ok
  int32_t pages = 0;
  std::string message;
};

// Forked workers, each running `handler` on one job at a time. Process-wide state (the company
// profile, the system printer, loaded fonts) lives on in each worker from one job to the next,
// so the handler resets what must not carry over. A worker that dies costs only the job it was
// on: that job comes back as failed and a fresh worker takes the dead one's place.
class WorkerPool {
 public:
  using Handler = std::function<Outcome(const Job&)>;
  WorkerPool(int count, Handler handler);
  ~WorkerPool();  // closes the pipes and waits for every worker
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  bool HasIdle() const;
  bool Busy() const;  // some job is in flight
  void Give(Job job);  // to an idle worker
  // Waits up to `timeout_ms` for finished jobs (returns early when a signal arrives).
  std::vector<Outcome> Collect(int timeout_ms);

 private:
  struct Worker {
    pid_t pid = -1;
    int to_worker = -1;
    int from_worker = -1;
    bool busy = false;
    Job job;  // the one in flight: path kept to clean its temporaries if the worker dies
  };
  void Start(Worker& worker);
  void Stop(Worker& worker);
  Outcome Lost(Worker& worker, int status);

  Handler handler_;
  std::vector<Worker> workers_;
};

// The number of cores this process may run on.
int CoreCount();

}  // namespace quorvel::batch

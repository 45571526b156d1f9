// Test helpers for printing through a real CUPS scheduler: environment, threads, jobs, cups-pdf files.
#pragma once

#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quorvel::testing {

// Environment variables set for one test and put back as they were afterwards.
class ScopedEnv {
 public:
  void Set(const std::string& name, const std::string& value);
  ~ScopedEnv();

 private:
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

// CUPS reads its scheduler choice from the environment once per thread; a fresh thread sees the
// test's settings whatever ran before on this one.
void OnFreshThread(const std::function<void()>& work);

struct ShellResult {
  int status;
  std::string output;  // standard output and error
};
ShellResult Shell(const std::string& command);

// Jobs on the scheduler listening at `socket`, every state.
struct JobInfo {
  int id;
  int state;  // the IPP job state: 3 pending ... 7 canceled, 8 aborted, 9 completed
};
std::vector<JobInfo> Jobs(const std::string& socket);

// The PDF that cups-pdf wrote for job `id`, waiting until the job is done (at most `seconds`);
// only a file written since `since` counts. Empty, with `why` said, when none came.
std::string WaitForCupsPdf(const std::string& socket, int id, std::time_t since, int seconds, std::string& why);

}  // namespace quorvel::testing

// Helpers for the print-queue tests: scoped environment, fresh threads, job states, cups-pdf output.
#include "support/print_queue_helpers.hpp"

#include <cups/cups.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <regex>
#include <thread>

namespace quorvel::testing {

void ScopedEnv::Set(const std::string& name, const std::string& value) {
  const char* old = std::getenv(name.c_str());
  saved_.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
  setenv(name.c_str(), value.c_str(), 1);
}

ScopedEnv::~ScopedEnv() {
  for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
    if (it->second) setenv(it->first.c_str(), it->second->c_str(), 1);
    else unsetenv(it->first.c_str());
  }
}

void OnFreshThread(const std::function<void()>& work) {
  std::exception_ptr failure;
  std::thread([&] {
    try {
      work();
    } catch (...) {
      failure = std::current_exception();
    }
  }).join();
  if (failure) std::rethrow_exception(failure);
}

ShellResult Shell(const std::string& command) {
  ShellResult result{-1, ""};
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (!pipe) return result;
  std::array<char, 4096> buffer;
  size_t n;
  while ((n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) result.output.append(buffer.data(), n);
  const int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

std::vector<JobInfo> Jobs(const std::string& socket) {
  std::vector<JobInfo> found;
  http_t* http = httpConnect2(socket.c_str(), 0, nullptr, AF_UNSPEC, HTTP_ENCRYPTION_NEVER, 1, 10000, nullptr);
  if (!http) return found;
  cups_job_t* jobs = nullptr;
  const int count = cupsGetJobs2(http, &jobs, nullptr, 0, CUPS_WHICHJOBS_ALL);
  for (int i = 0; i < count; ++i) found.push_back({jobs[i].id, static_cast<int>(jobs[i].state)});
  cupsFreeJobs(count, jobs);
  httpClose(http);
  return found;
}

namespace {

// cups-pdf's output folders from its configuration: Out (${HOME} is the job owner's home) and
// the folder for anonymous jobs.
std::vector<std::string> CupsPdfFolders() {
  std::string out = "${HOME}/PDF", anonymous = "/var/spool/cups-pdf/ANONYMOUS";
  std::ifstream conf("/etc/cups/cups-pdf.conf");
  const std::regex setting(R"(^\s*(Out|AnonDirName)\s+(\S+))");
  std::smatch match;
  for (std::string line; std::getline(conf, line);)
    if (std::regex_search(line, match, setting)) (match[1] == "Out" ? out : anonymous) = match[2];
  const passwd* user = getpwuid(geteuid());
  const std::string home = user ? user->pw_dir : "";
  for (size_t at; (at = out.find("${HOME}")) != std::string::npos;) out.replace(at, 7, home);
  return {out, anonymous};
}

std::string FindJobFile(int id, std::time_t since) {
  const std::string ending = "-job_" + std::to_string(id) + ".pdf";
  for (const std::string& folder : CupsPdfFolders()) {
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ec)) {
      const std::string name = entry.path().filename().string();
      struct stat info {};
      if (name.size() > ending.size() && name.compare(name.size() - ending.size(), ending.size(), ending) == 0 &&
          stat(entry.path().c_str(), &info) == 0 && info.st_mtime >= since && info.st_size > 0)
        return entry.path().string();
    }
  }
  return "";
}

}  // namespace

std::string WaitForCupsPdf(const std::string& socket, int id, std::time_t since, int seconds, std::string& why) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  int state = 0;
  while (std::chrono::steady_clock::now() < deadline) {
    for (const JobInfo& job : Jobs(socket))
      if (job.id == id) state = job.state;
    if (state == IPP_JSTATE_CANCELED || state == IPP_JSTATE_ABORTED) {
      why = "job " + std::to_string(id) + " ended in state " + std::to_string(state);
      return "";
    }
    if (state == IPP_JSTATE_COMPLETED) {
      const std::string path = FindJobFile(id, since);
      if (!path.empty()) return path;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  why = "no PDF for job " + std::to_string(id) + " within " + std::to_string(seconds) + " s (last state " +
        std::to_string(state) + ")";
  return "";
}

}  // namespace quorvel::testing

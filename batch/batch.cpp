// RunBatch: reads the documents, hands them to the workers, gathers outcomes, merges, summarises.
#include "batch/batch.hpp"

#include <signal.h>
#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <set>

#include "batch/batch_input.hpp"
#include "batch/pdf_merge.hpp"
#include "batch/print_job.hpp"
#include "batch/summary_file.hpp"
#include "batch/worker_pool.hpp"
#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"

namespace quorvel {

namespace {

namespace fs = std::filesystem;
using namespace batch;
using nlohmann::json;

// A private folder for the merge's parts beside the merged file, removed however the batch ends.
struct PartsFolder {
  std::string path;
  explicit PartsFolder(const std::string& merged) {
    if (merged.empty()) return;
    const fs::path parent = fs::path(merged).parent_path();
    std::string pattern = (parent.empty() ? std::string(".") : parent.string()) + "/.quorvel-batch-XXXXXX";
    if (!mkdtemp(pattern.data())) Raise(err::kFileError, "cannot create a folder beside " + merged);
    path = pattern;
  }
  ~PartsFolder() {
    std::error_code error;
    if (!path.empty()) fs::remove_all(path, error);
  }
};

// Writing to a worker that has just died must come back as an error, not end the batch.
struct IgnoreBrokenPipes {
  struct sigaction previous {};
  IgnoreBrokenPipes() {
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, &previous);
  }
  ~IgnoreBrokenPipes() { sigaction(SIGPIPE, &previous, nullptr); }
};

class Run {
 public:
  explicit Run(const BatchOptions& options)
      : options_(options), parts_(options.merge), started_(std::chrono::steady_clock::now()) {}

  BatchSummary Execute();

 private:
  void Prepare(InputDocument& document, WorkerPool& pool);
  void Finish(uint64_t id, const Outcome& outcome);
  void Fail(const BatchSource& source, int32_t number, const std::string& message, uint64_t id);
  void Report();
  void Merge();

  const BatchOptions& options_;
  PartsFolder parts_;
  std::chrono::steady_clock::time_point started_;
  BatchSummary summary_;
  BatchProgress progress_;
  std::string name_template_;
  std::map<uint64_t, BatchSource> in_flight_;
  std::map<std::string, BatchSource> names_;  // output names taken so far, for clashes
  std::map<uint64_t, std::string> merge_parts_;  // printed parts in input order
  std::vector<std::pair<uint64_t, BatchFailure>> failures_;
  uint64_t next_id_ = 0;
};

void Run::Fail(const BatchSource& source, int32_t number, const std::string& message, uint64_t id) {
  failures_.push_back({id, BatchFailure{source, number, message}});
  ++progress_.failures;
}

// Parent-side checks before a document goes to a worker: valid JSON, a usable and unclaimed
// output name, and --skip-existing.
void Run::Prepare(InputDocument& document, WorkerPool& pool) {
  const uint64_t id = next_id_++;
  ++summary_.documents;
  std::string path;
  try {
    const json description = json::parse(document.text);
    if (!parts_.path.empty()) {
      path = parts_.path + "/" + std::to_string(id) + ".pdf";
    } else {
      const std::string name = OutputName(name_template_, description, document.source);
      PrinterOutput::ForPath(name);  // an ending no device has fails here, as this document
      const auto [taken, fresh] = names_.emplace(name, document.source);
      if (!fresh) Raise(err::kInvalidArgument, "output name \"" + name + "\" is already used by " + Describe(taken->second));
      path = (fs::path(options_.out_dir) / name).string();
      if (options_.skip_existing && fs::exists(FirstFileOf(path))) {
        ++summary_.skipped;
        ++progress_.documents;
        return Report();
      }
    }
  } catch (const AutomationError& e) {
    Fail(document.source, e.Number(), e.what(), id);
    ++progress_.documents;
    return Report();
  } catch (const json::exception& e) {
    Fail(document.source, err::kInvalidArgument, std::string("not valid JSON: ") + e.what(), id);
    ++progress_.documents;
    return Report();
  }
  in_flight_[id] = document.source;
  pool.Give(Job{id, path, std::move(document.text)});
}

void Run::Finish(uint64_t id, const Outcome& outcome) {
  const auto found = in_flight_.find(id);
  if (found == in_flight_.end()) return;
  if (outcome.ok) {
    ++summary_.printed;
    progress_.pages += outcome.pages;
    if (!parts_.path.empty()) merge_parts_[id] = parts_.path + "/" + std::to_string(id) + ".pdf";
  } else {
    Fail(found->second, outcome.number, outcome.message, id);
  }
  in_flight_.erase(found);
  ++progress_.documents;
  Report();
}

void Run::Report() {
  progress_.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started_).count();
  if (options_.progress) options_.progress(progress_);
}

void Run::Merge() {
  if (parts_.path.empty() || summary_.interrupted || merge_parts_.empty()) return;
  std::vector<std::string> parts;
  for (const auto& [id, part] : merge_parts_) parts.push_back(part);
  MergePdfs(parts, options_.merge);
  summary_.merged = options_.merge;
}

BatchSummary Run::Execute() {
  InputReader reader(options_.input);
  name_template_ = options_.name_template.empty() ? DefaultNameTemplate(reader.FromFolder()) : options_.name_template;
  progress_.total = CountDocuments(options_.input);
  const std::string paper = options_.paper;
  Paper::Named(paper);  // a wrong paper name is the batch's error, not every document's
  IgnoreBrokenPipes broken_pipes;
  {
    WorkerPool pool(options_.jobs > 0 ? options_.jobs : CoreCount(),
                    [paper](const Job& job) { return PrintJob(job, paper); });
    bool more = true;
    for (;;) {
      if (options_.stop && options_.stop->load()) more = false;
      InputDocument document;
      while (more && pool.HasIdle() && !(options_.stop && options_.stop->load())) {
        if (!reader.Next(document)) more = false;
        else Prepare(document, pool);
      }
      if (!pool.Busy()) {
        if (!more || (options_.stop && options_.stop->load())) break;
        continue;
      }
      for (const Outcome& outcome : pool.Collect(200)) Finish(outcome.id, outcome);
    }
  }
  summary_.interrupted = options_.stop && options_.stop->load();
  summary_.pages = progress_.pages;
  Merge();
  std::sort(failures_.begin(), failures_.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  for (auto& [id, failure] : failures_) summary_.failures.push_back(std::move(failure));
  summary_.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started_).count();
  return summary_;
}

std::string OutputFolderOf(const BatchOptions& options) {
  if (!options.out_dir.empty()) return options.out_dir;
  const std::string merged_folder = fs::path(options.merge).parent_path().string();
  return merged_folder.empty() ? "." : merged_folder;
}

}  // namespace

std::string SummaryPathOf(const BatchOptions& options) {
  if (!options.summary_path.empty()) return options.summary_path;
  return (fs::path(OutputFolderOf(options)) / "batch-summary.json").string();
}

BatchSummary RunBatch(const BatchOptions& options) {
  if (options.input.empty()) Raise(err::kInvalidArgument, "batch: no input given");
  if (options.out_dir.empty() && options.merge.empty()) Raise(err::kInvalidArgument, "batch: no output folder given");
  if (!options.merge.empty() && options.skip_existing)
    Raise(err::kInvalidArgument, "batch: skipping existing outputs applies to one file per document, not a merge");
  if (!options.merge.empty() && !options.name_template.empty())
    Raise(err::kInvalidArgument, "batch: a name template applies to one file per document, not a merge");
  const std::string out_dir = OutputFolderOf(options);
  std::error_code error;
  fs::create_directories(out_dir, error);
  if (error) Raise(err::kFileError, "cannot create the output folder " + out_dir + ": " + error.message());
  const std::string summary_path = SummaryPathOf(options);
  CheckWritable(summary_path);
  Run run(options);
  BatchSummary summary = run.Execute();
  WriteSummaryFile(summary, summary_path);
  return summary;
}

}  // namespace quorvel

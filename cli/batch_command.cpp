// `quorvel batch`: many documents on worker processes, with progress on the terminal and a summary.
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <cstdio>
#include <iostream>

#include "batch/batch.hpp"
#include "cli/commands.hpp"

namespace quorvel::cli {

namespace {

std::atomic<bool> stop_requested{false};
std::atomic<int> stop_signal{0};

void RequestStop(int signal_number) {
  stop_signal = signal_number;
  stop_requested = true;
}

// SIGINT and SIGTERM stop the handing out of documents; without SA_RESTART the wait for the
// workers wakes at once.
void CatchStopSignals() {
  struct sigaction action {};
  action.sa_handler = RequestStop;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

std::string Clock(double seconds) {
  const long whole = std::lround(seconds);
  char text[32];
  std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
  return text;
}

// A bar redrawn in place at most ten times a second on a terminal; elsewhere (a log) one line
// per thousand documents.
class ProgressView {
 public:
  ProgressView() : terminal_(isatty(STDERR_FILENO) == 1) {}
  void operator()(const BatchProgress& progress) {
    const double rate = progress.seconds > 0 ? progress.documents / progress.seconds : 0;
    if (!terminal_) {
      if (progress.documents % 1000 == 0)
        std::fprintf(stderr, "batch: %ld/%ld documents, %ld pages, %ld failed, %.0f documents/s\n",
                     progress.documents, progress.total, progress.pages, progress.failures, rate);
      return;
    }
    if (progress.documents != progress.total && progress.seconds - last_draw_ < 0.1) return;
    last_draw_ = progress.seconds;
    const int width = 30;
    const double done = progress.total > 0 ? static_cast<double>(progress.documents) / progress.total : 1;
    const int filled = static_cast<int>(done * width);
    const std::string bar = std::string(filled, '#') + std::string(width - filled, '.');
    const std::string left = rate > 0 ? Clock((progress.total - progress.documents) / rate) : "?";
    std::fprintf(stderr, "\r[%s] %ld/%ld documents  %ld pages  %.0f/s  %s left  %ld failed ", bar.c_str(),
                 progress.documents, progress.total, progress.pages, rate, left.c_str(), progress.failures);
    open_line_ = progress.documents != progress.total;
    if (!open_line_) std::fputc('\n', stderr);
  }
  // Ends a bar left open by an interruption, so the summary starts on a line of its own.
  void End() {
    if (open_line_) std::fputc('\n', stderr);
    open_line_ = false;
  }

 private:
  bool terminal_;
  double last_draw_ = -1;
  bool open_line_ = false;
};

int RunBatchCommand(BatchOptions options) {
  CatchStopSignals();
  options.stop = &stop_requested;
  ProgressView view;
  options.progress = [&view](const BatchProgress& progress) { view(progress); };
  const BatchSummary summary = RunBatch(options);
  view.End();
  std::cout << summary.documents << " documents (" << summary.printed << " printed, " << summary.skipped
            << " skipped, " << summary.failures.size() << " failed), " << summary.pages << " pages, "
            << std::lround(summary.seconds * 10) / 10.0 << " s";
  if (!summary.merged.empty()) std::cout << "; merged into " << summary.merged;
  std::cout << "; summary in " << SummaryPathOf(options) << "\n";
  for (const BatchFailure& failure : summary.failures)
    std::cerr << "quorvel: " << (failure.source.file.empty() ? "line " + std::to_string(failure.source.line) : failure.source.file)
              << ": " << failure.message << "\n";
  if (summary.interrupted) {
    std::cerr << "quorvel: batch interrupted; run it again with --skip-existing to finish it\n";
    return 128 + stop_signal.load();
  }
  return summary.failures.empty() ? 0 : 1;
}

}  // namespace

BatchCommand AddBatchCommand(CLI::App& app) {
  auto options = std::make_shared<BatchOptions>();
  CLI::App* command = app.add_subcommand("batch", "print many documents (JSON Lines or a folder) on every core");
  command->add_option("input", options->input, "a JSON Lines file, one document per line, or a folder of .json files")
      ->required();
  command->add_option("-o,--output", options->out_dir, "output folder (created when missing)");
  command->add_option("--name", options->name_template,
                      "output name template, e.g. '{document.InvoiceNumber}.pdf'; the ending picks the kind");
  command->add_option("--merge", options->merge, "print every document into this one PDF instead");
  command->add_option("-j,--jobs", options->jobs, "worker processes (default: one per core)")->check(CLI::NonNegativeNumber);
  command->add_option("--paper", options->paper, "paper: a4, letter or roll")->check(CLI::IsMember({"a4", "letter", "roll"}));
  command->add_flag("--skip-existing", options->skip_existing, "leave documents whose output is already there");
  command->add_option("--summary", options->summary_path, "summary JSON file (default OUTDIR/batch-summary.json)");
  return {command, [options] {
            if (options->out_dir.empty() && options->merge.empty()) {
              std::cerr << "quorvel: batch needs -o OUTDIR or --merge FILE\n";
              return 2;
            }
            return RunBatchCommand(*options);
          }};
}

}  // namespace quorvel::cli

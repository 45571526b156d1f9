// Printing many documents at once: worker processes on every core, one file per document or one
// merged PDF, progress, and a summary of what failed. Hosts call RunBatch; `quorvel batch` too.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quorvel {

// Where one batch document came from: its line in a JSON Lines file, or its file in a folder.
struct BatchSource {
  long line = 0;     // 1-based; 0 for a folder's file
  std::string file;  // the file name for a folder's file; empty for a line
};

struct BatchFailure {
  BatchSource source;
  int32_t number = 0;  // the automation error number
  std::string message;
};

// Counts as the batch goes; `documents` counts every document finished (printed, skipped or failed).
struct BatchProgress {
  long documents = 0;
  long total = 0;  // documents in the input
  long pages = 0;
  long failures = 0;
  double seconds = 0;
};

struct BatchSummary {
  long documents = 0;  // in the input (up to where an interruption stopped handing them out)
  long printed = 0;
  long skipped = 0;  // already there with skip_existing
  long pages = 0;
  double seconds = 0;
  bool interrupted = false;
  std::string merged;  // the merged PDF, when one was written
  std::vector<BatchFailure> failures;
};

struct BatchOptions {
  std::string input;    // a JSON Lines file (one document per line) or a folder of .json files
  std::string out_dir;  // created when missing
  // Output name of each document, relative to out_dir; its ending picks the kind (.pdf, .png,
  // .svg, .jsonl). "{a.b}" is replaced by the document file's field a.b, "{line}" by the line
  // number, "{name}" by a folder file's name without ending, "{type}" by the document type,
  // "{{" and "}}" by braces. Empty: "{line}-{type}.pdf" for lines, "{name}.pdf" for a folder.
  std::string name_template;
  std::string merge;  // when set, every document goes into this one PDF instead
  std::string paper = "a4";
  int jobs = 0;  // worker processes; 0: one per core
  bool skip_existing = false;
  std::string summary_path;  // empty: out_dir/batch-summary.json
  // Polled while the batch runs; once true no further document is handed out.
  const std::atomic<bool>* stop = nullptr;
  std::function<void(const BatchProgress&)> progress;  // after every finished document
};

// Runs the batch and writes the summary file. A document that fails is listed in the summary
// and does not stop the batch; bad options (no input, unusable out_dir) raise an error.
BatchSummary RunBatch(const BatchOptions& options);

// Where RunBatch writes the summary: summary_path, or batch-summary.json in the output folder
// (the merged file's folder with a merge and no output folder).
std::string SummaryPathOf(const BatchOptions& options);

}  // namespace quorvel

// Batch summary files.
#include "batch/summary_file.hpp"

#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"

namespace quorvel::batch {

nlohmann::json SummaryJson(const BatchSummary& summary) {
  nlohmann::json failures = nlohmann::json::array();
  for (const BatchFailure& failure : summary.failures) {
    nlohmann::json entry;
    if (failure.source.file.empty()) entry["line"] = failure.source.line;
    else entry["file"] = failure.source.file;
    entry["number"] = failure.number;
    entry["error"] = failure.message;
    failures.push_back(std::move(entry));
  }
  nlohmann::json result = {{"documents", summary.documents},
                           {"printed", summary.printed},
                           {"skipped", summary.skipped},
                           {"failed", summary.failures.size()},
                           {"pages", summary.pages},
                           {"seconds", summary.seconds},
                           {"interrupted", summary.interrupted},
                           {"failures", failures}};
  if (!summary.merged.empty()) result["merged"] = summary.merged;
  return result;
}

void WriteSummaryFile(const BatchSummary& summary, const std::string& path) {
  AtomicFile file(path);
  const std::string text = SummaryJson(summary).dump(2) + "\n";
  file.Write(text);
  file.Commit();
}

}  // namespace quorvel::batch

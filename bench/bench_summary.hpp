// Peak-memory probes for the benchmarks, and the summary table printed after a run.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quorvel::bench {

// Resets the process's peak resident set (VmHWM) to what it holds now, so that the next
// PeakRssMiB tells the high-water mark of what ran in between.
void ResetPeakRss();
double PeakRssMiB();
double CurrentRssMiB();

// The device comparison's cases: (benchmark name, document type).
const std::vector<std::pair<std::string, std::string>>& DeviceCases();

}  // namespace quorvel::bench

// The batch summary as JSON: counts, time, and every failure with where it came from.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "batch/batch.hpp"

namespace quorvel::batch {

nlohmann::json SummaryJson(const BatchSummary& summary);
// Written whole or not at all.
void WriteSummaryFile(const BatchSummary& summary, const std::string& path);

}  // namespace quorvel::batch

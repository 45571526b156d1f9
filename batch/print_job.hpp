// What a batch worker does with one document: a fresh company profile, the printer aimed at the
// document's file, the document printed and its output checked.
#pragma once

#include <string>

#include "batch/worker_pool.hpp"

namespace quorvel::batch {

// Prints the job's document on this process's system printer on `paper` ("a4", "letter",
// "roll"); every error becomes a failed outcome carrying its number and text.
Outcome PrintJob(const Job& job, const std::string& paper);

// The first file a printed document appears as: the path itself, or PATH-1.png for PNG pages.
std::string FirstFileOf(const std::string& path);

}  // namespace quorvel::batch

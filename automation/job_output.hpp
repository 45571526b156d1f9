// One loaded document job printed to a chosen output: the path shared by the command and Python.
#pragma once

#include <string>
#include <vector>

#include "automation/document_job.hpp"
#include "output/device.hpp"
#include "foundation/printer_surface.hpp"

namespace quorvel {

// What a finished job produced: its files (or "job QUEUE-ID"), and its page count.
struct JobResult {
  std::vector<std::string> results;
  int pages = 0;
};

// The output for a file path, its folder checked now rather than after the document is drawn;
// the device is the one registered for the path's ending unless `device` names another.
PrinterOutput FileOutput(const std::string& path, const std::string& device = "");

// Prints the job on the system printer with this output and paper, or, with `preview`, draws
// it once on a preview surface of the paper's size and writes that picture as one page.
JobResult PrintJobTo(const DocumentJob& job, const PrinterOutput& output, const Paper& paper, bool preview);

}  // namespace quorvel

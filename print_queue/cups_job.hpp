// Talking to the CUPS scheduler: finding a destination and sending a finished PDF as one print job.
#pragma once

#include <string>

namespace quorvel::print_queue {

// The runtime's error number for a printer that cannot take a document.
constexpr int32_t kPrinterError = 482;

// The queue's name: `wanted`, or the default destination when `wanted` is empty. Raises the
// printer error when the scheduler cannot be reached, the queue does not exist or it is not
// accepting jobs.
std::string FindQueue(const std::string& wanted);

// Creates a job on `queue`, streams the PDF at `pdf_path` into it and closes it; returns the job
// id. A failure after the job was created cancels the job, so no half-sent job stays queued.
int SubmitPdf(const std::string& queue, const std::string& pdf_path, const std::string& title);

}  // namespace quorvel::print_queue

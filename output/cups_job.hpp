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
// id. `media` (a PWG media name, or empty for the queue's default) asks for the paper the pages
// were laid out on. A failure after the job was created cancels the job, so no half-sent job
// stays queued.
int SubmitPdf(const std::string& queue, const std::string& pdf_path, const std::string& title,
              const std::string& media = "");

// The PWG media name of a page `width` × `height` twips ("iso_a4_210x297mm", "na_letter_8.5x11in",
// or a custom size).
std::string MediaName(double width, double height);

}  // namespace quorvel::print_queue

// CUPS scheduler calls: destination lookup, and job creation, document streaming and cancelling.
#include "output/cups_job.hpp"

#include <cups/cups.h>

#include <array>
#include <cmath>
#include <fstream>

#include "foundation/errors.hpp"

namespace quorvel::print_queue {

namespace {

[[noreturn]] void PrinterError(const std::string& context) {
  throw AutomationError(kPrinterError, "Printer error", context);
}

std::string Scheduler() { return cupsServer(); }

// One connection per step: a failed request may leave a connection mid-way, and a document may
// take long to draw between the lookup and the submission.
class Connection {
 public:
  Connection() : http_(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, 30000, nullptr)) {
    if (!http_) PrinterError("the print scheduler at " + Scheduler() + " cannot be reached (is cupsd running?)");
  }
  ~Connection() { httpClose(http_); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  http_t* Get() const { return http_; }

 private:
  http_t* http_;
};

void CancelJob(const std::string& queue, int job) noexcept {
  try {
    Connection connection;
    cupsCancelJob2(connection.Get(), queue.c_str(), job, 0);
  } catch (...) {
    // The scheduler went away: it has dropped the unfinished job's connection with it.
  }
}

[[noreturn]] void SendFailed(const std::string& queue, int job, const char* step) {
  PrinterError("sending job " + queue + "-" + std::to_string(job) + " failed while " + step + ": " +
               cupsLastErrorString() + "; the job was cancelled");
}

void SendDocument(http_t* http, const std::string& queue, int job, const std::string& pdf_path) {
  std::ifstream in(pdf_path, std::ios::binary);
  if (!in) PrinterError("the rendered document " + pdf_path + " cannot be read; job " + queue + "-" +
                        std::to_string(job) + " was cancelled");
  if (cupsStartDocument(http, queue.c_str(), job, "document.pdf", CUPS_FORMAT_PDF, 1) != HTTP_STATUS_CONTINUE)
    SendFailed(queue, job, "starting the document");
  std::array<char, 65536> buffer;
  while (in) {
    in.read(buffer.data(), buffer.size());
    const std::streamsize n = in.gcount();
    if (n > 0 && cupsWriteRequestData(http, buffer.data(), static_cast<size_t>(n)) != HTTP_STATUS_CONTINUE)
      SendFailed(queue, job, "sending the pages");
  }
  if (in.bad()) PrinterError("reading the rendered document " + pdf_path + " failed; job " + queue + "-" +
                             std::to_string(job) + " was cancelled");
  if (cupsFinishDocument(http, queue.c_str()) != IPP_STATUS_OK) SendFailed(queue, job, "closing the document");
}

}  // namespace

std::string FindQueue(const std::string& wanted) {
  Connection connection;
  cups_dest_t* dest = cupsGetNamedDest(connection.Get(), wanted.empty() ? nullptr : wanted.c_str(), nullptr);
  if (!dest) {
    if (cupsLastError() == IPP_STATUS_ERROR_SERVICE_UNAVAILABLE)
      PrinterError("the print scheduler at " + Scheduler() + " is not running");
    if (wanted.empty()) PrinterError("there is no default print queue at " + Scheduler() + " (lpoptions -d QUEUE sets one)");
    PrinterError("there is no print queue named \"" + wanted + "\" at " + Scheduler());
  }
  const std::string name = dest->name;
  const char* accepting = cupsGetOption("printer-is-accepting-jobs", dest->num_options, dest->options);
  const bool refuses = accepting && std::string(accepting) == "false";
  cupsFreeDests(1, dest);
  if (refuses) PrinterError("print queue \"" + name + "\" is not accepting jobs");
  return name;
}

std::string MediaName(double width, double height) {
  // Hundredths of a millimetre; a twip is 2540/1440 of them.
  const auto hundredths = [](double twips) { return static_cast<int>(std::lround(twips * 2540.0 / 1440.0)); };
  const pwg_media_t* media = pwgMediaForSize(hundredths(width), hundredths(height));
  return media && media->pwg ? media->pwg : "";
}

int SubmitPdf(const std::string& queue, const std::string& pdf_path, const std::string& title,
              const std::string& media) {
  Connection connection;
  cups_option_t* options = nullptr;
  int count = media.empty() ? 0 : cupsAddOption("media", media.c_str(), 0, &options);
  const int job = cupsCreateJob(connection.Get(), queue.c_str(), title.c_str(), count, options);
  cupsFreeOptions(count, options);
  if (job <= 0) PrinterError("print queue \"" + queue + "\" refused the job: " + cupsLastErrorString());
  try {
    SendDocument(connection.Get(), queue, job, pdf_path);
  } catch (...) {
    CancelJob(queue, job);  // on a fresh connection: this one may be stuck in the failed request
    throw;
  }
  return job;
}

}  // namespace quorvel::print_queue

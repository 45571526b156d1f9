// The ESC/POS device: one job of bytes built in memory page by page, sent whole at the end.
#include "output/escpos/escpos_device.hpp"

#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"
#include "output/escpos/escpos_encoder.hpp"
#include "output/escpos/escpos_raster.hpp"
#include "output/escpos/escpos_transport.hpp"
#include "print_queue/cups_job.hpp"

namespace quorvel::escpos {

namespace {

constexpr int kLongestTimeout = 3600;

// The pages follow each other on the roll as one strip; the job ends with the feed, the cut and
// the drawer pulse. Nothing reaches the printer before Finish: a document that fails half-way
// never prints half a receipt.
class EscPosDevice : public WholePageDevice {
 public:
  explicit EscPosDevice(const PrinterOutput& output)
      : options_(output.escpos), dots_(PrintableDots(options_)), destination_(ParseDestination(output.path)) {
    // Like the PDF queue device: a missing queue fails before the pages are drawn.
    if (destination_.kind == Destination::Kind::Queue) destination_.queue = print_queue::FindQueue(destination_.queue);
    AppendInitialise(job_);
  }

 protected:
  void TakePage(const DrawOps& ops, const PageInfo& page) override {
    AppendRaster(job_, RenderRaster(ops, page.width, page.height, dots_));
  }
  void EndDocument() override {
    // The drawer opens as the receipt is finished; the cut stays the last command, so the
    // printer is left at the start of the next receipt.
    if (options_.drawer) AppendDrawerPulse(job_);
    AppendFeedAndCut(job_, options_.cut);
    results_.push_back(Send());
  }

 private:
  // Hands the whole job to the destination; what the host's report names.
  std::string Send() {
    switch (destination_.kind) {
      case Destination::Kind::File: {
        AtomicFile file(destination_.path);
        file.Write(job_);
        file.Commit();
        return destination_.path;
      }
      case Destination::Kind::Tcp:
        SendToNetwork(destination_.host, destination_.port, job_, options_.timeout_seconds);
        return "tcp://" + destination_.host + ":" + destination_.port;
      case Destination::Kind::DeviceNode:
        WriteToDeviceNode(destination_.path, job_, options_.timeout_seconds);
        return destination_.path;
      case Destination::Kind::Queue: {
        const int job = print_queue::SubmitRaw(destination_.queue, job_, "Quorvel receipt");
        return "job " + destination_.queue + "-" + std::to_string(job);
      }
    }
    Raise(err::kInvalidArgument, "unknown ESC/POS destination");
  }

  EscPosOptions options_;
  int dots_;
  Destination destination_;
  std::string job_;
};

}  // namespace

int PrintableDots(const EscPosOptions& options) {
  if (options.dpi != 203 && options.dpi != 180)
    Raise(err::kInvalidArgument, "ESC/POS resolution " + std::to_string(options.dpi) + " dpi: choose 203 or 180");
  // 72 mm and 48 mm of printable width, as the printers' own dot counts give them.
  if (options.paper_mm == 80) return options.dpi == 203 ? 576 : 512;
  if (options.paper_mm == 58) return options.dpi == 203 ? 384 : 360;
  Raise(err::kInvalidArgument, "ESC/POS paper " + std::to_string(options.paper_mm) + " mm: choose 80 or 58");
}

void CheckEscPosOutput(const PrinterOutput& output) {
  PrintableDots(output.escpos);
  if (output.escpos.timeout_seconds < 1 || output.escpos.timeout_seconds > kLongestTimeout)
    Raise(err::kInvalidArgument, "ESC/POS time-out " + std::to_string(output.escpos.timeout_seconds) +
                                     " s: choose 1 to " + std::to_string(kLongestTimeout));
  const Destination destination = ParseDestination(output.path);
  if (destination.kind == Destination::Kind::File) CheckWritable(destination.path);
}

}  // namespace quorvel::escpos

namespace quorvel {

void RegisterEscPosDevice() {
  DeviceEntry entry = FileDevice("escpos", {".escpos"}, [](const PrinterOutput& output) {
    escpos::CheckEscPosOutput(output);
    return std::make_unique<escpos::EscPosDevice>(output);
  });
  entry.check_writable = escpos::CheckEscPosOutput;  // the destination may be a printer, not a file
  entry.special_use = "for a receipt printer";
  RegisterDevice(std::move(entry));
}

}  // namespace quorvel

// Where the printer's finished pages go: a PDF, PNG files, an SVG, an ops file, or a print queue.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"

namespace quorvel {

// A thermal receipt printer speaking ESC/POS: its paper, resolution and what ends each job.
struct EscPosOptions {
  int paper_mm = 80;         // roll width: 80 (576 dots at 203 dpi) or 58 (384 dots)
  int dpi = 203;             // 203 or 180
  bool cut = true;           // partial cut after the feed
  bool drawer = false;       // pulse the cash drawer
  int timeout_seconds = 10;  // for reaching and writing to the printer
};

// What the host chose for the printer's output.
struct PrinterOutput {
  enum class Kind { Pdf, Png, Svg, Ops, Queue, EscPos };
  Kind kind = Kind::Pdf;
  std::string path = "quorvel-print.pdf";  // file devices; PNG pages are PATH-1.png, PATH-2.png, …
  std::string queue;                       // print queue name, empty for the default destination
  std::string pdf_creation_date;           // fixed "YYYY-MM-DDThh:mm:ss" for repeatable PDFs
  EscPosOptions escpos;                    // Kind::EscPos; `path` is NAME.escpos, tcp://, cups:// or a device

  // The device kind from the path's ending: .pdf, .png, .svg, .jsonl, .escpos; anything else raises.
  static PrinterOutput ForPath(const std::string& path);
};

// Receives one document page by page. A device writes nothing visible before Finish; after an
// exception, or without Finish, what it started is removed.
class PageDevice {
 public:
  virtual ~PageDevice() = default;
  virtual void Page(const DrawOps& ops, double width, double height) = 0;
  virtual void Finish() = 0;
  // The files (or job) that Finish produced, for the host's report.
  const std::vector<std::string>& Results() const { return results_; }

 protected:
  std::vector<std::string> results_;
};

std::unique_ptr<PageDevice> OpenDevice(const PrinterOutput& output);

// A print-queue device is provided by the layer that links the print system in; until then a
// queue output raises a clear error.
using QueueDeviceFactory = std::function<std::unique_ptr<PageDevice>(const PrinterOutput&)>;
void RegisterQueueDevice(QueueDeviceFactory factory);
// The library's own print-queue device (print_queue/). Asked for by name when the first queue
// output opens, so a program linked against the static library always carries it.
QueueDeviceFactory BuiltInQueueDevice();

// A device writing a PDF to an already open stream (used by the queue device to render a job).
std::unique_ptr<PageDevice> OpenPdfDevice(const PrinterOutput& output);

}  // namespace quorvel

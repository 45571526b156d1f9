// Where finished pages go: the device interface, the host's choice of output, and the registry
// that finds a device by name or file ending.
//
// Adding a device: one file in output/ with a class deriving from PageDevice (or WholePageDevice)
// and a Register…Device() function calling RegisterDevice, listed once in device_registry.cpp.
// Adding an op kind to DrawOp: give PageDevice and WholePageDevice a Draw for it; every device
// then fails to build until it draws the new kind.
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

// A file carried inside a PDF (an e-invoice's XML beside its printed form), read when attached.
struct PdfAttachment {
  std::string name;          // as the PDF shows it: the file's own name, without its folder
  std::string mime_type;     // "text/xml"
  std::string relationship;  // AFRelationship: Alternative, Data, Source, Supplement or Unspecified
  std::string description;
  std::string modified;      // the file's modification time, "D:YYYYMMDDhhmmssZ"
  std::shared_ptr<const std::string> bytes;
};

// What the host chose for the printer's output.
struct PrinterOutput {
  std::string device = "pdf";              // a registered device's name (RegisteredDevices)
  std::string path = "quorvel-print.pdf";  // file devices; PNG pages are PATH-1.png, PATH-2.png, …
  std::string queue;                       // print queue name, empty for the default destination
  std::string pdf_creation_date;           // fixed "YYYY-MM-DDThh:mm:ss" for repeatable PDFs
  EscPosOptions escpos;                    // device "escpos"; `path` is NAME.escpos, tcp://, cups:// or a device
  double dpi = 96;                         // raster file devices
  // A preview's one picture: written to `path` exactly (no page number), and no end op.
  bool single_picture = false;
  // PDF/A-3b and attached files; only the direct PDF device ("pdf") takes them, every other
  // device refuses an output that asks for them.
  bool pdfa = false;
  std::vector<PdfAttachment> attachments;

  // The device registered for the path's ending (.pdf, .png, .svg, .jsonl, .escpos); anything
  // else raises.
  static PrinterOutput ForPath(const std::string& path);
};

// One page as a device receives it: paper size in twips.
struct PageInfo {
  double width = 0, height = 0;
};

// Receives one document page by page. A device writes nothing visible before Finish; after an
// exception, or without Finish, what it started is removed. Every drawing op reaches a device
// through the one visit in Page: a device lacking a Draw for an op kind does not build.
class PageDevice {
 public:
  virtual ~PageDevice() = default;

  void Page(const DrawOps& ops, double width, double height);
  void Finish();
  // The files (or job) that Finish produced, for the host's report.
  const std::vector<std::string>& Results() const { return results_; }

 protected:
  // A device that can draw only once every page is known (an SVG sized to the whole document)
  // declares it; its pages are kept and sent at Finish, each announced to Plan as it arrives.
  enum class Needs { PageByPage, WholeDocument };
  explicit PageDevice(Needs needs = Needs::PageByPage) : needs_(needs) {}
  virtual void Plan(const PageInfo&) {}
  virtual void BeginPage(const PageInfo& page) = 0;
  virtual void Draw(const TextOp& op) = 0;
  virtual void Draw(const LineOp& op) = 0;
  virtual void Draw(const BoxOp& op) = 0;
  virtual void Draw(const QrOp& op) = 0;
  virtual void Draw(const ImageOp& op) = 0;
  // Page and end markers carry no drawing; the ops device writes its own.
  void Draw(const PageOp&) {}
  void Draw(const EndOp&) {}
  virtual void EndPage() {}
  virtual void EndDocument() = 0;

  std::vector<std::string> results_;

 private:
  void Send(const DrawOps& ops, double width, double height);

  Needs needs_;
  struct KeptPage {
    DrawOps ops;
    double width, height;
  };
  std::vector<KeptPage> kept_;  // whole-document devices only
};

// A device that takes each page whole, as its list of ops (a raster for a receipt printer, a
// PDF handed on to a print queue).
class WholePageDevice : public PageDevice {
 protected:
  virtual void TakePage(const DrawOps& ops, const PageInfo& page) = 0;

  void BeginPage(const PageInfo& page) override {
    page_ = page;
    ops_.clear();
  }
  void Draw(const TextOp& op) override { ops_.push_back(op); }
  void Draw(const LineOp& op) override { ops_.push_back(op); }
  void Draw(const BoxOp& op) override { ops_.push_back(op); }
  void Draw(const QrOp& op) override { ops_.push_back(op); }
  void Draw(const ImageOp& op) override { ops_.push_back(op); }
  void EndPage() override { TakePage(ops_, page_); }

 private:
  PageInfo page_;
  DrawOps ops_;
};

using DeviceFactory = std::function<std::unique_ptr<PageDevice>(const PrinterOutput&)>;

struct DeviceEntry {
  std::string name;                  // "pdf", "pdf-cairo", "png", …
  std::vector<std::string> endings;  // lower-case with the dot; the first device with one wins
  DeviceFactory open;
  // Raises unless the output could be written, before anything is drawn; none for a device
  // that checks its destination when it opens (a print queue).
  std::function<void(const PrinterOutput&)> check_writable;
  // For a device whose endings are not for everyday documents, what they are for ("for a
  // receipt printer"): the error for an unknown ending lists them apart, with this note.
  std::string special_use;
  // Writes PDF/A and carries attachments; an output asking for them elsewhere is refused.
  bool archival = false;
};

// Adds a device; a second device of the same name raises.
void RegisterDevice(DeviceEntry entry);
const std::vector<DeviceEntry>& RegisteredDevices();
// The device this output asks for, opened; an unknown name raises the invalid-argument error.
std::unique_ptr<PageDevice> OpenDevice(const PrinterOutput& output);
// Raises the file error unless the output's first file could be created; raises the
// invalid-argument error when it asks for PDF/A or attachments of a device that cannot write them.
void CheckOutputWritable(const PrinterOutput& output);
// The invalid-argument error unless the output's device takes its PDF/A and attachment requests.
void CheckArchivalOutput(const PrinterOutput& output);

// The entry of a device writing one file at the output's path, checked before drawing starts.
DeviceEntry FileDevice(std::string name, std::vector<std::string> endings, DeviceFactory open);

}  // namespace quorvel

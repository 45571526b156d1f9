// Where finished pages go: the device interface, the host's choice of output, and the registry
// that finds a device by name or file ending.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"
#include "foundation/font_metrics.hpp"

namespace quorvel {

// What the host chose for the printer's output.
struct PrinterOutput {
  std::string device = "pdf";              // a registered device's name (RegisteredDevices)
  std::string path = "quorvel-print.pdf";  // file devices; PNG pages are PATH-1.png, PATH-2.png, …
  std::string queue;                       // print queue name, empty for the default destination
  std::string pdf_creation_date;           // fixed "YYYY-MM-DDThh:mm:ss" for repeatable PDFs
  double dpi = 96;                         // raster devices
  // A preview's one picture: written to `path` exactly (no page number), and no end op.
  bool single_picture = false;

  // The device registered for the path's ending (.pdf, .png, .svg, .jsonl); anything else raises.
  static PrinterOutput ForPath(const std::string& path);
};

// What a device needs from the drawing, declared once in its registration.
struct DeviceNeeds {
  bool whole_document = false;  // draws only once every page is known (pages are kept for it)
  bool fonts_used = false;      // wants the faces each page uses before its ops
};

// One page as a device receives it: paper size in twips and, when asked for, its faces.
struct PageInfo {
  double width = 0, height = 0;
  std::vector<const FontFace*> fonts;
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
  explicit PageDevice(DeviceNeeds needs = {}) : needs_(needs) {}
  // A whole-document device hears of each page's size as it arrives, before any is drawn.
  virtual void Plan(const PageInfo& page) {}
  virtual void BeginPage(const PageInfo& page) = 0;
  virtual void Draw(const TextOp& op) = 0;
  virtual void Draw(const LineOp& op) = 0;
  virtual void Draw(const BoxOp& op) = 0;
  // Page and end markers carry no drawing; the ops device writes its own.
  void Draw(const PageOp&) {}
  void Draw(const EndOp&) {}
  virtual void EndPage() {}
  virtual void EndDocument() = 0;

  std::vector<std::string> results_;

 private:
  void Send(const DrawOps& ops, double width, double height);

  DeviceNeeds needs_;
  struct KeptPage {
    DrawOps ops;
    double width, height;
  };
  std::vector<KeptPage> kept_;  // whole-document devices only
};

using DeviceFactory = std::function<std::unique_ptr<PageDevice>(const PrinterOutput&)>;

struct DeviceEntry {
  std::string name;                  // "pdf", "pdf-cairo", "png", …
  std::vector<std::string> endings;  // lower-case with the dot; the first device with one wins
  bool writes_file = true;           // false for the print queue
  bool numbered_files = false;       // one file per page, PATH-1…, beside the path
  DeviceFactory open;
};

// Adds a device; a second device of the same name raises.
void RegisterDevice(DeviceEntry entry);
const std::vector<DeviceEntry>& RegisteredDevices();
// The device this output asks for, opened; an unknown name raises the invalid-argument error.
std::unique_ptr<PageDevice> OpenDevice(const PrinterOutput& output);
// Raises the file error unless the output's first file could be created.
void CheckOutputWritable(const PrinterOutput& output);

}  // namespace quorvel

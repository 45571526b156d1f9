// The file devices of the printer: PDF through cairo, PNG per page, one SVG, ops JSON Lines.
#include "foundation/page_devices.hpp"

#include <cairo-pdf.h>

#include <algorithm>
#include <filesystem>

#include "foundation/atomic_file.hpp"
#include "foundation/cairo_painter.hpp"
#include "foundation/errors.hpp"
#include "output/escpos/escpos_device.hpp"
#include "foundation/roll_pages.hpp"

namespace quorvel {

namespace {

std::string Lowercase(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::tolower(c); });
  return s;
}

// Pages stream into the PDF as they finish; cairo keeps only what the fonts need until the end.
class PdfDevice : public PageDevice {
 public:
  explicit PdfDevice(const PrinterOutput& output) : file_(output.path) {
    surface_ = cairo_pdf_surface_create_for_stream(WriteToAtomicFile, &file_, 595, 842);
    if (!output.pdf_creation_date.empty()) {
      cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_CREATE_DATE,
                                     output.pdf_creation_date.c_str());
      cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_MOD_DATE,
                                     output.pdf_creation_date.c_str());
    }
    cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_CREATOR, "Quorvel");
    cr_ = cairo_create(surface_);
  }
  ~PdfDevice() override {
    cairo_destroy(cr_);
    cairo_surface_destroy(surface_);
  }
  void Page(const DrawOps& ops, double width, double height) override {
    cairo_pdf_surface_set_size(surface_, width / 20.0, height / 20.0);
    cairo_save(cr_);
    BeginTwipsPage(cr_, 1.0 / 20.0, width, height);
    CairoPainter(cr_).PaintAll(ops);
    cairo_restore(cr_);
    cairo_show_page(cr_);
    Check();
  }
  void Finish() override {
    cairo_surface_finish(surface_);
    file_.Seal();  // a failed write raises with the system's reason before cairo's plainer one
    Check();
    file_.Commit();
    results_.push_back(file_.Path());
  }

 private:
  // A context or surface in error silently draws nothing more, so each page is checked.
  void Check() {
    cairo_status_t status = cairo_status(cr_);
    if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(surface_);
    if (status == CAIRO_STATUS_WRITE_ERROR) file_.Seal();
    CheckCairo(status, "PDF " + file_.Path());
  }
  AtomicFile file_;
  cairo_surface_t* surface_;
  cairo_t* cr_;
};

// PATH-1.png, PATH-2.png, …: each page is rendered to a temporary file, all renamed together at
// Finish; the pages of an earlier, longer print at the same path are removed, so the set on disk
// is always one print's.
class PngDevice : public PageDevice {
 public:
  explicit PngDevice(const PrinterOutput& output) : stem_(output.path) {
    if (Lowercase(std::filesystem::path(stem_).extension().string()) == ".png")
      stem_.erase(stem_.size() - 4);
    CheckWritable(stem_ + "-1.png");
  }
  void Page(const DrawOps& ops, double width, double height) override {
    const std::string final_name = PageName(pages_.size() + 1);
    pages_.push_back(std::make_unique<AtomicFile>(final_name));
    WritePagePng(ops, width, height, *pages_.back());
  }
  void Finish() override {
    CommitTogether(pages_);
    for (auto& page : pages_) results_.push_back(page->Path());
    std::error_code ignored;
    for (size_t n = pages_.size() + 1; std::filesystem::is_regular_file(PageName(n), ignored); ++n)
      std::filesystem::remove(PageName(n), ignored);
  }

 private:
  std::string PageName(size_t n) const { return stem_ + "-" + std::to_string(n) + ".png"; }
  std::string stem_;
  std::vector<std::unique_ptr<AtomicFile>> pages_;
};

// One SVG; the pages of a longer document stand one under the other.
class SvgDevice : public PageDevice {
 public:
  explicit SvgDevice(const PrinterOutput& output) : path_(output.path) { CheckWritable(path_); }
  void Page(const DrawOps& ops, double width, double height) override {
    for (const DrawOp& op : ops) all_.push_back(ShiftedOp(op, offset_));
    width_ = std::max(width_, width);
    offset_ += height;
    if (pages_++ > 0) all_.push_back(LineOp{0, offset_ - height, width, offset_ - height});
  }
  void Finish() override {
    WritePageSvg(all_, width_, offset_, path_);
    results_.push_back(path_);
  }

 private:
  std::string path_;
  DrawOps all_;
  double width_ = 0, offset_ = 0;
  int pages_ = 0;
};

// The ops format, with a page op at each page break and an end op at the end.
class OpsDevice : public PageDevice {
 public:
  explicit OpsDevice(const PrinterOutput& output) : file_(output.path) {}
  void Page(const DrawOps& ops, double, double) override {
    if (pages_++ > 0) Write(PageOp{});
    for (const DrawOp& op : ops) Write(op);
  }
  void Finish() override {
    Write(EndOp{});
    file_.Commit();
    results_.push_back(file_.Path());
  }

 private:
  void Write(const DrawOp& op) { file_.Write(OpToJson(op) + "\n"); }
  AtomicFile file_;
  int pages_ = 0;
};

QueueDeviceFactory& QueueFactory() {
  static QueueDeviceFactory factory = BuiltInQueueDevice();
  return factory;
}

}  // namespace

PrinterOutput PrinterOutput::ForPath(const std::string& path) {
  PrinterOutput output;
  output.path = path;
  const std::string ending = Lowercase(std::filesystem::path(path).extension().string());
  if (ending == ".pdf") output.kind = Kind::Pdf;
  else if (ending == ".png") output.kind = Kind::Png;
  else if (ending == ".svg") output.kind = Kind::Svg;
  else if (ending == ".jsonl") output.kind = Kind::Ops;
  else if (ending == ".escpos") output.kind = Kind::EscPos;
  else Raise(err::kInvalidArgument, "output " + path + ": the ending must be .pdf, .png, .svg or .jsonl, or .escpos for a receipt printer");
  return output;
}

void RegisterQueueDevice(QueueDeviceFactory factory) { QueueFactory() = std::move(factory); }

std::unique_ptr<PageDevice> OpenPdfDevice(const PrinterOutput& output) {
  return std::make_unique<PdfDevice>(output);
}

std::unique_ptr<PageDevice> OpenDevice(const PrinterOutput& output) {
  switch (output.kind) {
    case PrinterOutput::Kind::Pdf: return std::make_unique<PdfDevice>(output);
    case PrinterOutput::Kind::Png: return std::make_unique<PngDevice>(output);
    case PrinterOutput::Kind::Svg: return std::make_unique<SvgDevice>(output);
    case PrinterOutput::Kind::Ops: return std::make_unique<OpsDevice>(output);
    case PrinterOutput::Kind::Queue:
      if (!QueueFactory()) Raise(err::kInvalidArgument, "printing to a queue is not available here");
      return QueueFactory()(output);
    case PrinterOutput::Kind::EscPos: return escpos::OpenEscPosDevice(output);
  }
  Raise(err::kInvalidArgument, "unknown printer output");
}

}  // namespace quorvel

// Page handling of the printer surface and the system printer object.
#include "foundation/printer_surface.hpp"

#include <algorithm>

#include "foundation/errors.hpp"
#include "foundation/qr_code.hpp"

namespace quorvel {

namespace {
// The lowest point an op reaches, for cutting roll paper.
struct OpBottom {
  double line_height;
  double operator()(const TextOp& t) const { return t.y + line_height * t.size; }
  double operator()(const LineOp& l) const { return std::max(l.y1, l.y2); }
  double operator()(const BoxOp& b) const { return std::max(b.y1, b.y2); }
  double operator()(const QrOp& q) const;
  double operator()(const ImageOp& i) const { return std::max(i.y1, i.y2); }
  double operator()(const PageOp&) const { return 0; }
  double operator()(const EndOp&) const { return 0; }
};
double OpBottom::operator()(const QrOp& q) const {
  return q.y + (EncodeQr(q.data).size + 2 * kQrQuietZone) * q.module;
}
}  // namespace

Paper Paper::Named(const std::string& name) {
  if (name == "a4") return A4();
  if (name == "letter") return Letter();
  if (name == "roll") return Roll80();
  Raise(err::kInvalidArgument, "paper \"" + name + "\": choose a4, letter or roll");
}

PrinterSurface::~PrinterSurface() { KillDoc(); }

void PrinterSurface::SetPaper(const Paper& paper) {
  if (InDocument()) Raise(err::kInvalidArgument, "the paper cannot change inside a document");
  paper_ = paper;
}

void PrinterSurface::SetOutput(const PrinterOutput& output) {
  if (InDocument()) Raise(err::kInvalidArgument, "the output cannot change inside a document");
  output_ = output;
}

void PrinterSurface::StartDocumentIfNeeded() {
  if (device_) return;
  try {
    device_ = OpenDevice(output_);
  } catch (...) {
    output_failure_ = std::current_exception();
    throw;
  }
  pages_ = 0;
}

void PrinterSurface::Emit(DrawOp op) {
  StartDocumentIfNeeded();
  page_ops_.push_back(std::move(op));
}

double PrinterSurface::PageLength() const {
  if (!paper_.roll) return paper_.height;
  // Line height per point of size, from the current face; texts of other faces differ little.
  const double per_point = LineHeight() / Font().Size();
  double bottom = CurrentY();
  for (const DrawOp& op : page_ops_) bottom = std::max(bottom, std::visit(OpBottom{per_point}, op));
  return std::clamp(bottom, 1.0, 32767.0 * 20);
}

void PrinterSurface::FlushPage() {
  device_->Page(page_ops_, paper_.width, PageLength());
  page_ops_.clear();
  ++pages_;
}

void PrinterSurface::NewPage() {
  StartDocumentIfNeeded();
  try {
    FlushPage();
  } catch (...) {
    KillDoc();
    throw;
  }
  ResetPosition();
}

void PrinterSurface::EndDoc() {
  if (!device_) return;  // nothing was printed: no document, no output
  try {
    FlushPage();
    device_->Finish();
  } catch (...) {
    output_failure_ = std::current_exception();
    KillDoc();
    throw;
  }
  last_pages_ = pages_;
  last_results_ = device_->Results();
  device_.reset();
  ResetState();
}

void PrinterSurface::KillDoc() noexcept {
  device_.reset();  // devices remove their temporary output when destroyed unfinished
  page_ops_.clear();
  pages_ = 0;
  try {
    ResetState();
  } catch (...) {  // the default font was loaded before; it cannot vanish in between
  }
}

PrinterSurface& SystemPrinter() {
  static PrinterSurface printer;
  return printer;
}


}  // namespace quorvel

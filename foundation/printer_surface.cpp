// Page handling of the printer surface and the system printer object.
#include "foundation/printer_surface.hpp"

#include <algorithm>

#include "foundation/errors.hpp"
#include "foundation/roll_pages.hpp"

namespace quorvel {


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
  if (failed_document_) throw *failure_;  // the rest of a failed document must not print alone
  if (device_) return;
  // The results describe the last delivered document only: a new one clears them now.
  last_pages_ = 0;
  last_results_.clear();
  delivered_ = false;
  failure_.reset();
  try {
    device_ = OpenDevice(output_);
  } catch (const AutomationError& error) {
    // Nothing of the document exists yet, so there is no part to keep from printing alone: the
    // failure is remembered for PrintIt, and the next drawing simply tries again.
    Fail(error);
    failed_document_ = false;
    throw;
  }
  pages_ = 0;
}

void PrinterSurface::Emit(DrawOp op) {
  StartDocumentIfNeeded();
  page_ops_.push_back(std::move(op));
}

void PrinterSurface::Refused(const AutomationError& error) {
  // Also before the first drawing: the document that follows would lack what was refused.
  Fail(error);
}

void PrinterSurface::FlushPage() {
  if (!paper_.roll) {
    device_->Page(page_ops_, paper_.width, paper_.height);
    ++pages_;
  } else {
    // Line height per point of size, from the current face; texts of other faces differ little.
    const double per_point = LineHeight() / Font().Size();
    for (const RollPiece& piece : CutRoll(page_ops_, per_point, CurrentY())) {
      device_->Page(piece.ops, paper_.width, piece.length);
      ++pages_;
    }
  }
  page_ops_.clear();
}

void PrinterSurface::NewPage() {
  StartDocumentIfNeeded();
  try {
    FlushPage();
  } catch (const AutomationError& error) {
    Fail(error);
    throw;
  } catch (...) {
    Abandon();
    throw;
  }
  ResetPosition();
}

void PrinterSurface::EndDoc() {
  if (failed_document_) {
    failed_document_ = false;  // the failed document ends here; the next drawing starts anew
    ResetState();
    throw *failure_;
  }
  if (!device_) return;  // nothing was printed: no document, no output
  try {
    FlushPage();
    device_->Finish();
  } catch (const AutomationError& error) {
    Fail(error);
    failed_document_ = false;
    throw;
  } catch (...) {
    Abandon();
    throw;
  }
  last_pages_ = pages_;
  last_results_ = device_->Results();
  delivered_ = true;
  device_.reset();
  ResetState();
}

void PrinterSurface::Fail(const AutomationError& error) noexcept {
  // The first failure is the cause; later ones follow from it.
  if (!failure_) failure_ = error;
  if (!delivery_failure_) delivery_failure_ = error;
  delivered_ = false;
  failed_document_ = true;
  Abandon();
}

void PrinterSurface::Abandon() noexcept {
  device_.reset();  // devices remove their temporary output when destroyed unfinished
  page_ops_.clear();
  pages_ = 0;
  try {
    ResetState();
  } catch (...) {  // the default font was loaded before; it cannot vanish in between
  }
}

void PrinterSurface::KillDoc() noexcept {
  failed_document_ = false;
  Abandon();
}

void PrinterSurface::BeginDelivery() {
  if (!device_) {
    last_pages_ = 0;
    last_results_.clear();
    delivered_ = false;
  }
  delivery_failure_.reset();
}

PrinterSurface& SystemPrinter() {
  static PrinterSurface printer;
  return printer;
}


}  // namespace quorvel

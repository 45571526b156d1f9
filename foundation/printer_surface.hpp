// The printer: draws page by page onto a device, and the one process-wide system printer.
#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/errors.hpp"
#include "output/device.hpp"
#include "foundation/surface.hpp"

namespace quorvel {

struct Paper {
  std::string name;
  double width;
  double height;  // for a roll, the longest page; each page is cut to what was printed on it
  bool roll;

  static Paper A4() { return {"a4", 11906, 16838, false}; }
  static Paper Letter() { return {"letter", 12240, 15840, false}; }
  static Paper Roll80() { return {"roll", 4535, 16838, true}; }
  // "a4", "letter" or "roll"; anything else raises the invalid-argument error.
  static Paper Named(const std::string& name);
};

// A document starts with the first drawing after the previous EndDoc. Each page's ops are held
// until the page ends and then handed to the device, so memory stays flat however long the
// document; the output appears whole at EndDoc, or not at all after KillDoc.
//
// Delivery: the surface remembers why a document failed (its device at a page or at EndDoc, or
// a drawing the surface refused), even when the routine that drew it ignored the error. After
// such a failure the document is abandoned at once and further drawing raises the same error
// until EndDoc or KillDoc ends it, so no later part of it can reach the output on its own.
class PrinterSurface : public Surface {
 public:
  PrinterSurface() = default;
  ~PrinterSurface() override;

  double Width() const override { return paper_.width; }
  double Height() const override { return paper_.height; }

  void NewPage() override;
  void EndDoc() override;
  bool BreaksPages() const override { return true; }
  // Abandons the document in progress: its partial output is removed.
  void KillDoc() noexcept;

  void SetPaper(const Paper& paper);
  const Paper& GetPaper() const { return paper_; }
  void SetOutput(const PrinterOutput& output);
  const PrinterOutput& Output() const { return output_; }

  bool InDocument() const { return device_ != nullptr; }
  // What the last delivered document produced: pages and files (or queue job); empty from the
  // moment a new document starts until it is delivered.
  int LastPageCount() const { return last_pages_; }
  const std::vector<std::string>& LastResults() const { return last_results_; }

  // Whether the last document reached its output (file committed or job handed over).
  bool Delivered() const { return delivered_; }
  // Why the last document was not delivered, if it failed.
  const std::optional<AutomationError>& Failure() const { return failure_; }
  // Forgets the previous document's outcome and results, before a routine draws a new one.
  void BeginDelivery();
  // The first failure since BeginDelivery, of whichever document the routine drew; a routine
  // may start another document after a failed one, and the first cause must not be lost.
  const std::optional<AutomationError>& DeliveryFailure() const { return delivery_failure_; }

 protected:
  void Emit(DrawOp op) override;
  void Refused(const AutomationError& error) override;

 private:
  void StartDocumentIfNeeded();
  void FlushPage();
  // Remembers `error` as the document's failure and removes its partial output.
  void Fail(const AutomationError& error) noexcept;
  void Abandon() noexcept;

  Paper paper_ = Paper::A4();
  PrinterOutput output_;
  std::unique_ptr<PageDevice> device_;
  DrawOps page_ops_;
  int pages_ = 0;
  int last_pages_ = 0;
  std::vector<std::string> last_results_;
  bool delivered_ = false;
  bool failed_document_ = false;  // failed, and not yet ended by EndDoc or KillDoc
  std::optional<AutomationError> failure_;
  std::optional<AutomationError> delivery_failure_;
};

// The process-wide printer that every PrintIt draws on.
PrinterSurface& SystemPrinter();

// Runs a document routine on the system printer; if it fails, the half-made document is
// abandoned (no partial file) and the error passes on. A failure the routine ignored (its final
// EndDoc runs with errors ignored) is raised once the routine returns: success means delivered.
template <class Routine>
void PrintOnSystemPrinter(Routine&& routine) {
  PrinterSurface& printer = SystemPrinter();
  printer.BeginDelivery();
  try {
    routine(printer);
  } catch (...) {
    printer.KillDoc();
    throw;
  }
  if (printer.DeliveryFailure()) {
    printer.KillDoc();
    throw *printer.DeliveryFailure();
  }
}

}  // namespace quorvel

// The printer: draws page by page onto a device, and the one process-wide system printer.
#pragma once

#include <memory>
#include <string>
#include <vector>

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
class PrinterSurface : public Surface {
 public:
  PrinterSurface() = default;
  ~PrinterSurface() override;

  double Width() const override { return paper_.width; }
  double Height() const override { return paper_.height; }

  void NewPage() override;
  void EndDoc() override;
  // Abandons the document in progress: its partial output is removed.
  void KillDoc() noexcept;

  void SetPaper(const Paper& paper);
  const Paper& GetPaper() const { return paper_; }
  void SetOutput(const PrinterOutput& output);
  const PrinterOutput& Output() const { return output_; }

  bool InDocument() const { return device_ != nullptr; }
  // What the last completed document produced: pages and files (or queue job).
  int LastPageCount() const { return last_pages_; }
  const std::vector<std::string>& LastResults() const { return last_results_; }

 protected:
  void Emit(DrawOp op) override;

 private:
  void StartDocumentIfNeeded();
  void FlushPage();
  double PageLength() const;

  Paper paper_ = Paper::A4();
  PrinterOutput output_;
  std::unique_ptr<PageDevice> device_;
  DrawOps page_ops_;
  int pages_ = 0;
  int last_pages_ = 0;
  std::vector<std::string> last_results_;
};

// The process-wide printer that every PrintIt draws on.
PrinterSurface& SystemPrinter();

// Runs a document routine on the system printer; if it fails, the half-made document is
// abandoned (no partial file) and the error passes on.
template <class Routine>
void PrintOnSystemPrinter(Routine&& routine) {
  PrinterSurface& printer = SystemPrinter();
  try {
    routine(printer);
  } catch (...) {
    printer.KillDoc();
    throw;
  }
}

}  // namespace quorvel

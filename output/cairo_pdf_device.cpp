// The cairo PDF device ("pdf-cairo"): pages painted by cairo, kept to compare the direct writer
// with and to feed print queues.
#include <cairo-pdf.h>

#include "foundation/atomic_file.hpp"
#include "output/cairo_painter.hpp"
#include "output/device.hpp"

namespace quorvel {

namespace {

// Pages stream into the PDF as they finish; cairo keeps only what the fonts need until the end.
class CairoPdfDevice : public CairoPaintingDevice {
 public:
  explicit CairoPdfDevice(const PrinterOutput& output) : file_(output.path) {
    cairo_surface_t* surface = cairo_pdf_surface_create_for_stream(WriteToAtomicFile, &file_, 595, 842);
    if (!output.pdf_creation_date.empty()) {
      cairo_pdf_surface_set_metadata(surface, CAIRO_PDF_METADATA_CREATE_DATE, output.pdf_creation_date.c_str());
      cairo_pdf_surface_set_metadata(surface, CAIRO_PDF_METADATA_MOD_DATE, output.pdf_creation_date.c_str());
    }
    cairo_pdf_surface_set_metadata(surface, CAIRO_PDF_METADATA_CREATOR, "Quorvel");
    Open(surface);
  }
  // The context and surface go before the file they write to.
  ~CairoPdfDevice() override { Release(); }

 protected:
  void BeginPage(const PageInfo& page) override {
    cairo_pdf_surface_set_size(target_, page.width / 20.0, page.height / 20.0);
    cairo_save(cr_);
    BeginTwipsPage(cr_, 1.0 / 20.0, page.width, page.height);
  }
  void EndPage() override {
    cairo_restore(cr_);
    cairo_show_page(cr_);
    Check();
  }
  void EndDocument() override {
    cairo_surface_finish(target_);
    file_.Seal();  // a failed write raises with the system's reason before cairo's plainer one
    Check();
    file_.Commit();
    results_.push_back(file_.Path());
  }

 private:
  void Check() {
    const cairo_status_t status = CairoStatus(cr_);
    if (status == CAIRO_STATUS_WRITE_ERROR) file_.Seal();
    CheckCairo(status, "PDF " + file_.Path());
  }
  AtomicFile file_;
};

}  // namespace

void RegisterCairoPdfDevice() {
  RegisterDevice(FileDevice("pdf-cairo", {".pdf"}, [](const PrinterOutput& output) {
    return std::make_unique<CairoPdfDevice>(output);
  }));
}

}  // namespace quorvel

// The C entry points for surfaces: the system printer, its output and paper, and preview surfaces.
#include <cmath>

#include "automation/document_job.hpp"
#include "capi/c_support.hpp"
#include "foundation/atomic_file.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"
#include "output/escpos/escpos_device.hpp"
#include "output/pdf_attachment.hpp"

namespace capi = quorvel::capi;
using quorvel::PrinterOutput;

namespace {

// Paper first: both setters refuse inside a document, and the paper's refusal comes before
// anything changed.
void ApplyOutput(const PrinterOutput& output, const char* paper) {
  quorvel::PrinterSurface& printer = quorvel::SystemPrinter();
  if (paper) printer.SetPaper(quorvel::Paper::Named(paper));
  printer.SetOutput(output);
}

// The system printer's current output, changed; refused whole when its device cannot take the
// change, so a refused request leaves the output as it was.
template <class Change>
void ChangeOutput(Change&& change) {
  quorvel::PrinterSurface& printer = quorvel::SystemPrinter();
  PrinterOutput output = printer.Output();
  change(output);
  quorvel::CheckArchivalOutput(output);
  printer.SetOutput(output);
}

std::string OptionalText(const char* text) { return text ? text : ""; }

// Largest picture a host may ask for: a 16-bit count of twips, as the surface's positions are.
constexpr double kLargestPreview = 32767.0 * 20;

}  // namespace

extern "C" {

int32_t quorvel_system_printer(quorvel_object** printer) {
  return capi::Guard([&] {
    if (!printer) quorvel::Raise(quorvel::err::kInvalidArgument, "no place for the printer given");
    *printer = capi::NewHandle(quorvel::SystemPrinterRef());
  });
}

int32_t quorvel_printer_set_output(const char* path, const char* paper) {
  return capi::Guard([&] {
    const PrinterOutput output = PrinterOutput::ForPath(capi::TextArg(path, "output path"));
    // A bad folder is reported now, not when the document is already drawn.
    quorvel::CheckOutputWritable(output);
    ApplyOutput(output, paper);
  });
}

int32_t quorvel_printer_set_queue(const char* queue, const char* paper) {
  return capi::Guard([&] {
    PrinterOutput output;
    output.device = "queue";
    output.queue = queue ? queue : "";
    ApplyOutput(output, paper);
  });
}

int32_t quorvel_printer_set_escpos(const char* destination, int32_t paper_mm, int32_t dpi, int32_t cut,
                                   int32_t drawer, int32_t timeout_seconds, const char* paper) {
  return capi::Guard([&] {
    PrinterOutput output;
    output.device = "escpos";
    output.path = capi::TextArg(destination, "ESC/POS destination");
    output.escpos = {paper_mm, dpi, cut != 0, drawer != 0, timeout_seconds};
    quorvel::escpos::CheckEscPosOutput(output);
    ApplyOutput(output, paper);
  });
}

int32_t quorvel_printer_set_pdfa(int32_t on) {
  return capi::Guard([&] { ChangeOutput([&](PrinterOutput& output) { output.pdfa = on != 0; }); });
}

int32_t quorvel_printer_attach(const char* path, const char* mime_type, const char* relationship,
                               const char* description) {
  return capi::Guard([&] {
    quorvel::PdfAttachment attachment = quorvel::ReadAttachment(
        capi::TextArg(path, "attachment path"), OptionalText(mime_type), OptionalText(relationship),
        OptionalText(description));
    ChangeOutput([&](PrinterOutput& output) { quorvel::Attach(output, std::move(attachment)); });
  });
}

int32_t quorvel_printer_clear_attachments(void) {
  return capi::Guard([] { ChangeOutput([](PrinterOutput& output) { output.attachments.clear(); }); });
}

int32_t quorvel_printer_end_doc(void) {
  return capi::Guard([] {
    quorvel::PrinterSurface& printer = quorvel::SystemPrinter();
    if (printer.InDocument()) printer.EndDoc();
  });
}

int32_t quorvel_printer_kill_doc(void) {
  return capi::Guard([] { quorvel::SystemPrinter().KillDoc(); });
}

int32_t quorvel_printer_last_results(char** results, int32_t* pages) {
  return capi::Guard([&] {
    const quorvel::PrinterSurface& printer = quorvel::SystemPrinter();
    if (results) {
      std::string joined;
      for (const std::string& line : printer.LastResults()) joined += (joined.empty() ? "" : "\n") + line;
      *results = capi::CopyText(joined);
    }
    if (pages) *pages = printer.LastPageCount();
  });
}

int32_t quorvel_printer_last_warnings(char** warnings, int32_t* count) {
  return capi::Guard([&] {
    const std::vector<std::string>& list = quorvel::SystemPrinter().LastTextWarnings();
    if (warnings) {
      std::string joined;
      for (const std::string& line : list) joined += (joined.empty() ? "" : "\n") + line;
      *warnings = capi::CopyText(joined);
    }
    if (count) *count = static_cast<int32_t>(list.size());
  });
}

int32_t quorvel_set_strict_text(int32_t strict) {
  return capi::Guard([&] { quorvel::SetStrictText(strict != 0); });
}

int32_t quorvel_preview_create(double width, double height, quorvel_object** preview) {
  return capi::Guard([&] {
    if (!preview) quorvel::Raise(quorvel::err::kInvalidArgument, "no place for the preview given");
    *preview = nullptr;
    for (double extent : {width, height})
      if (!std::isfinite(extent) || extent <= 0 || extent > kLargestPreview)
        quorvel::Raise(quorvel::err::kInvalidArgument, "a preview is 1 to 655340 twips wide and high");
    *preview = capi::NewHandle(quorvel::MakeRef(std::make_shared<quorvel::PreviewSurface>(width, height)));
  });
}

}  // extern "C"

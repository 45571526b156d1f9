// One loaded document job printed to a chosen output, on the system printer or a preview.
#include "automation/job_output.hpp"

#include "foundation/atomic_file.hpp"
#include "foundation/preview_surface.hpp"

namespace quorvel {

PrinterOutput FileOutput(const std::string& path, const std::string& device) {
  PrinterOutput output = PrinterOutput::ForPath(path);
  if (!device.empty()) output.device = device;
  CheckOutputWritable(output);
  return output;
}

namespace {
// A preview is one picture; it goes to the same devices as one page.
JobResult PrintPreview(const DocumentJob& job, const PrinterOutput& output, const Paper& paper) {
  PreviewSurface preview(paper.width, paper.height);
  PrintJobOnSurface(job, preview);
  auto device = OpenDevice(output);
  device->Page(preview.Ops(), paper.width, paper.height);
  device->Finish();
  return {device->Results(), 1};
}
}  // namespace

JobResult PrintJobTo(const DocumentJob& job, const PrinterOutput& output, const Paper& paper, bool preview) {
  if (preview) return PrintPreview(job, output, paper);
  PrinterSurface& printer = SystemPrinter();
  printer.SetPaper(paper);
  printer.SetOutput(output);
  PrintJobOnSystemPrinter(job);
  if (printer.InDocument()) printer.EndDoc();  // a routine that leaves the ending to its host
  return {printer.LastResults(), printer.LastPageCount()};
}

}  // namespace quorvel

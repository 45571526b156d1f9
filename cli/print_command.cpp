// `quorvel print`: a JSON document through the type library onto the printer or a preview.
#include <filesystem>
#include <iostream>

#include "automation/document_job.hpp"
#include "cli/commands.hpp"
#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"

namespace quorvel::cli {

namespace {
void Report(const std::vector<std::string>& results, int pages) {
  for (const std::string& result : results) std::cout << "wrote " << result << "\n";
  std::cout << pages << (pages == 1 ? " page" : " pages") << "\n";
}

// A preview is one picture; it goes to the same devices as one page.
int PrintPreview(const DocumentJob& job, const PrinterOutput& output, const Paper& paper) {
  PreviewSurface preview(paper.width, paper.height);
  PrintJobOnSurface(job, preview);
  auto device = OpenDevice(output);
  device->Page(preview.Ops(), paper.width, paper.height);
  device->Finish();
  Report(device->Results(), 1);
  return 0;
}
}  // namespace

int RunPrint(const PrintOptions& options) {
  const Paper paper = Paper::Named(options.paper);
  PrinterOutput output;
  if (options.to_queue) {
    output.device = "queue";
    output.queue = options.queue;
  } else {
    if (options.output.empty()) Raise(err::kInvalidArgument, "-o OUT is needed (or --printer)");
    output = PrinterOutput::ForPath(options.output);
    CheckOutputWritable(output);
  }
  // Everything is read and checked before anything is drawn.
  const DocumentJob job = LoadDocumentJobFile(options.document);
  if (options.preview) return PrintPreview(job, output, paper);
  PrinterSurface& printer = SystemPrinter();
  printer.SetPaper(paper);
  printer.SetOutput(output);
  PrintJobOnSystemPrinter(job);
  if (printer.InDocument()) printer.EndDoc();  // a routine that leaves the ending to its host
  Report(printer.LastResults(), printer.LastPageCount());
  return 0;
}

}  // namespace quorvel::cli

// `quorvel print`: a JSON document through the type library onto the printer or a preview.
#include <filesystem>
#include <iostream>

#include "automation/document_job.hpp"
#include "cli/commands.hpp"
#include "cli/glyph_check.hpp"
#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"
#include "foundation/page_devices.hpp"
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
// Characters that no installed font has are drawn as the missing-glyph box: say which, and in
// which field; in strict mode refuse the document before anything is drawn.
void CheckGlyphs(const PrintOptions& options) {
  SetStrictText(options.strict);
  const std::vector<std::string> fields = MissingGlyphFields(options.document);
  if (fields.empty()) return;
  std::string list;
  for (const std::string& field : fields) list += (list.empty() ? "" : "; ") + field;
  if (options.strict) Raise(err::kInvalidArgument, "no installed font has the characters of " + list);
  for (const std::string& field : fields)
    std::cerr << "quorvel: warning: no installed font has " << field << " (drawn as boxes)\n";
}
}  // namespace

int RunPrint(const PrintOptions& options) {
  const Paper paper = Paper::Named(options.paper);
  PrinterOutput output;
  if (options.to_queue) {
    output.kind = PrinterOutput::Kind::Queue;
    output.queue = options.queue;
  } else {
    if (options.output.empty()) Raise(err::kInvalidArgument, "-o OUT is needed (or --printer)");
    output = PrinterOutput::ForPath(options.output);
    CheckWritable(output.kind == PrinterOutput::Kind::Png ? output.path + ".check.png" : output.path);
  }
  // Everything is read and checked before anything is drawn.
  const DocumentJob job = LoadDocumentJobFile(options.document);
  CheckGlyphs(options);
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

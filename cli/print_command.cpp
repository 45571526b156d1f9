// `quorvel print`: a JSON document through the type library onto the printer or a preview.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include "automation/document_job.hpp"
#include "automation/job_output.hpp"
#include "cli/commands.hpp"
#include "cli/glyph_check.hpp"
#include "foundation/errors.hpp"
#include "foundation/temp_folder.hpp"
#include "output/escpos/escpos_device.hpp"
#include "output/pdf_attachment.hpp"

namespace quorvel::cli {

namespace {
void Report(std::ostream& out, const JobResult& done) {
  for (const std::string& result : done.results) out << "wrote " << result << "\n";
  out << done.pages << (done.pages == 1 ? " page" : " pages") << "\n";
}

// Standard input is read whole first: the glyph check below reads the same text again.
DocumentJob LoadJob(const std::string& document, std::string& stdin_text) {
  if (document != "-") return LoadDocumentJobFile(document);
  stdin_text.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
  std::istringstream in(stdin_text);
  return LoadDocumentJobStream(in, "standard input");
}

// The whole file in one write; a short write or a failed flush is an error, not a success.
void CopyToStandardOutput(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (!in.good() && !in.eof()) Raise(err::kFileError, "cannot read back " + path);
  if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size() || std::fflush(stdout) != 0)
    Raise(err::kFileError, "cannot write the document to standard output");
}

// `-o -`: the document is rendered into a private folder first and copied out only when it is
// complete, so a failure leaves standard output empty. PNG is one file per page, so it has no
// single stream to write.
int PrintToStandardOutput(const DocumentJob& job, const PrintOptions& options, const PrinterOutput& archival,
                          const Paper& paper) {
  if (options.format == "png") Raise(err::kInvalidArgument, "-o -: PNG makes one file per page; give a file path");
  TempFolder folder("the document");
  PrinterOutput output = FileOutput(folder.Path() + "/document." + options.format, options.device);
  output.pdfa = archival.pdfa;
  output.attachments = archival.attachments;
  const JobResult done = PrintJobTo(job, output, paper, options.preview);
  CopyToStandardOutput(done.results.front());
  Report(std::cerr, {{"standard output"}, done.pages});
  return 0;
}
// Characters that no installed font has are drawn as the missing-glyph box: say which, and in
// which field; in strict mode refuse the document before anything is drawn.
void CheckGlyphs(const PrintOptions& options, const std::string& stdin_text) {
  SetStrictText(options.strict);
  const std::vector<std::string> fields =
      options.document == "-" ? MissingGlyphFieldsOfText(stdin_text) : MissingGlyphFields(options.document);
  if (fields.empty()) return;
  std::string list;
  for (const std::string& field : fields) list += (list.empty() ? "" : "; ") + field;
  if (options.strict) Raise(err::kInvalidArgument, "no installed font has the characters of " + list);
  for (const std::string& field : fields)
    std::cerr << "quorvel: warning: no installed font has " << field << " (drawn as boxes)\n";
}

// The printer options of the command, on an ESC/POS output; checked before anything is drawn.
void ApplyEscPosOptions(const PrintOptions& options, PrinterOutput& output) {
  output.escpos.paper_mm = options.escpos_paper;
  output.escpos.dpi = options.escpos_dpi;
  output.escpos.timeout_seconds = options.escpos_timeout;
  output.escpos.drawer = options.drawer;
  output.escpos.cut = !options.no_cut;
  escpos::CheckEscPosOutput(output);
}

// --pdfa and --attach: each file read now, and refused at once on an output that is not PDF.
void ApplyPdfOptions(const PrintOptions& options, PrinterOutput& output) {
  output.pdfa = options.pdfa;
  for (const std::string& path : options.attach) Attach(output, ReadAttachment(path));
  // Standard output's device is known once its temporary file is named, and checks then,
  // still before anything is drawn.
  if (options.output != "-") CheckArchivalOutput(output);
}
}  // namespace

int RunPrint(const PrintOptions& options) {
  const Paper paper = Paper::Named(options.paper);
  PrinterOutput output;
  if ((options.to_queue ? 1 : 0) + !options.escpos.empty() + !options.output.empty() > 1)
    Raise(err::kInvalidArgument, "choose one output: -o OUT, --printer or --escpos");
  if (!options.device.empty() && options.output.empty())
    Raise(err::kInvalidArgument, "--device chooses the device of -o OUT; give -o");
  if (options.to_queue) {
    output.device = "queue";
    output.queue = options.queue;
  } else if (!options.escpos.empty()) {
    output.device = "escpos";
    output.path = options.escpos;
  } else if (options.output.empty()) {
    Raise(err::kInvalidArgument, "-o OUT is needed (or --printer, or --escpos)");
  } else if (options.output != "-") {
    output = FileOutput(options.output, options.device);
  }
  if (output.device == "escpos") ApplyEscPosOptions(options, output);
  ApplyPdfOptions(options, output);
  // Everything is read and checked before anything is drawn.
  std::string stdin_text;
  const DocumentJob job = LoadJob(options.document, stdin_text);
  CheckGlyphs(options, stdin_text);
  if (!options.to_queue && options.output == "-") return PrintToStandardOutput(job, options, output, paper);
  Report(std::cout, PrintJobTo(job, output, paper, options.preview));
  return 0;
}

}  // namespace quorvel::cli

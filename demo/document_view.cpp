// Printing a JSON document for the document view: pages read back from the printer's ops file, and the PDF.
#include "demo/document_view.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "automation/document_job.hpp"
#include "demo/samples.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"

namespace quorvel::demo {

namespace {

using nlohmann::json;

// The view's names for the samples; a sample without one here (a new one) shows its form caption
// or its file name. Add a line here with the sample's own line in samples.cpp.
std::string TitleOf(const Sample& sample) {
  static const std::map<std::string, std::string> titles = {
      {"letterhead", "Letterhead"},
      {"voucher", "Voucher"},
      {"invoice", "Invoice"},
      {"delivery_note", "Delivery Note"},
      {"delivery_note_long", "Delivery Note (long descriptions)"},
      {"receipt", "Receipt"},
      {"statement", "Statement"},
      {"cheque_list", "Cheque List"},
  };
  const auto found = titles.find(sample.name);
  if (found != titles.end()) return found->second;
  return sample.caption.empty() ? sample.name : sample.caption;
}

std::string ReadWhole(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) Raise(err::kFileError, "cannot read " + path);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// The profile of the caller, put back whatever happens to the print in between.
class KeepProfile {
 public:
  KeepProfile() : saved_(ModuleCompanyInfo::Profile()) {
    CompanyProfile fresh;
    fresh.BottomReserve = 5500;  // as a new ClassCompanyInfo leaves it
    ModuleCompanyInfo::Profile() = fresh;
  }
  ~KeepProfile() { ModuleCompanyInfo::Profile() = saved_; }
  KeepProfile(const KeepProfile&) = delete;
  KeepProfile& operator=(const KeepProfile&) = delete;

 private:
  CompanyProfile saved_;
};

// How far down a roll page was printed: the lowest text foot, line or box, and a little paper.
double RollLength(const DrawOps& ops) {
  PreviewSurface meter;
  double bottom = 0;
  for (const DrawOp& op : ops) {
    if (const auto* text = std::get_if<TextOp>(&op)) {
      meter.Font().Name(text->font);
      meter.Font().Size(text->size);
      meter.Font().Bold(text->bold);
      bottom = std::max(bottom, text->y + meter.LineHeight());
    } else if (const auto* line = std::get_if<LineOp>(&op)) {
      bottom = std::max({bottom, line->y1, line->y2});
    } else if (const auto* box = std::get_if<BoxOp>(&op)) {
      bottom = std::max({bottom, box->y1, box->y2});
    }
  }
  return bottom + 240;
}

std::vector<PrintedPage> SplitPages(const std::string& ops_text, const Paper& paper) {
  std::vector<PrintedPage> pages(1);
  std::istringstream lines(ops_text);
  std::string line;
  while (std::getline(lines, line)) {
    DrawOp op = OpFromJson(line);
    if (std::holds_alternative<PageOp>(op)) pages.emplace_back();
    else if (!std::holds_alternative<EndOp>(op)) pages.back().ops.push_back(std::move(op));
  }
  for (PrintedPage& page : pages) {
    page.width = paper.width;
    page.height = paper.roll ? std::min(RollLength(page.ops), paper.height) : paper.height;
  }
  return pages;
}

Paper PaperFor(const std::string& type) { return type == "receipt" ? Paper::Roll80() : Paper::A4(); }

}  // namespace

std::vector<ViewSample> ViewSamples() {
  std::vector<ViewSample> samples;
  for (const Sample& sample : Samples())
    if (std::filesystem::exists(SamplesDir() + "/" + sample.name + ".json"))
      samples.push_back({sample.name, TitleOf(sample)});
  return samples;
}

std::string SampleText(const std::string& name) {
  for (const Sample& sample : Samples())
    if (sample.name == name) return ReadWhole(SamplesDir() + "/" + name + ".json");
  Raise(err::kFileError, "there is no sample named " + name);
}

std::string CommandMessage(const std::exception& error) { return std::string("quorvel: ") + error.what(); }

// Loads and prints through the system printer into `file`; returns the file's contents.
std::string DocumentPrinter::PrintTo(const std::string& json_text, const std::string& file, std::string* type) const {
  json description;
  try {
    description = json::parse(json_text);
  } catch (const json::exception& e) {
    Raise(err::kInvalidArgument, std::string("the document is not valid JSON: ") + e.what());
  }
  const std::string path = work_dir_ + "/" + file;
  KeepProfile keep;
  const DocumentJob job = LoadDocumentJob(description);
  *type = job.type;
  PrinterSurface& printer = SystemPrinter();
  const Paper previous = printer.GetPaper();
  const PrinterOutput previous_output = printer.Output();
  printer.SetPaper(PaperFor(job.type));
  printer.SetOutput(PrinterOutput::ForPath(path));
  try {
    PrintJobOnSystemPrinter(job);
    if (printer.InDocument()) printer.EndDoc();  // a routine that leaves the ending to its host
  } catch (...) {
    printer.SetPaper(previous);
    printer.SetOutput(previous_output);
    throw;
  }
  printer.SetPaper(previous);
  printer.SetOutput(previous_output);
  std::string written = ReadWhole(path);
  std::filesystem::remove(path);
  return written;
}

PrintedDocument DocumentPrinter::Pages(const std::string& json_text) const {
  PrintedDocument document;
  document.ops_text = PrintTo(json_text, "view.jsonl", &document.type);
  document.pages = SplitPages(document.ops_text, PaperFor(document.type));
  return document;
}

std::string DocumentPrinter::Pdf(const std::string& json_text) const {
  std::string type;
  return PrintTo(json_text, "view.pdf", &type);
}

int PrintedDocuments::Add(PrintedDocument document) {
  const int id = next_id_++;
  documents_[id] = std::make_shared<const PrintedDocument>(std::move(document));
  auto op_count = [this] {
    size_t count = 0;
    for (const auto& [key, kept] : documents_)
      for (const PrintedPage& page : kept->pages) count += page.ops.size();
    return count;
  };
  // The newest always stays, however large: its pages are what the page is about to ask for.
  while (documents_.size() > 1 && (documents_.size() > max_documents_ || op_count() > max_ops_))
    documents_.erase(documents_.begin());
  return id;
}

std::shared_ptr<const PrintedDocument> PrintedDocuments::Find(int id) const {
  const auto found = documents_.find(id);
  return found == documents_.end() ? nullptr : found->second;
}

}  // namespace quorvel::demo

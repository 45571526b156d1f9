// One batch document on the system printer, as `quorvel print` would print it in a new process.
#include "batch/print_job.hpp"

#include <filesystem>

#include "automation/document_job.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"

namespace quorvel::batch {

namespace {

using nlohmann::json;

// A worker prints many documents, but each must look as if printed alone: the profile starts
// empty, and a document with a company gets the BottomReserve that a new process's first
// ClassCompanyInfo sets (the loader keeps one ClassCompanyInfo for the whole process).
void ResetCompanyFor(const json& description) {
  ModuleCompanyInfo::Profile() = CompanyProfile{};
  if (description.is_object() && description.contains("company")) ClassCompanyInfo fresh_process_info;
}

int PrintDescription(const json& description, const std::string& path, const std::string& paper) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::path(path).parent_path();
  std::error_code error;
  if (!folder.empty()) fs::create_directories(folder, error);
  PrinterSurface& printer = SystemPrinter();
  printer.SetPaper(Paper::Named(paper));
  printer.SetOutput(PrinterOutput::ForPath(path));
  ResetCompanyFor(description);
  const DocumentJob job = LoadDocumentJob(description);
  PrintJobOnSystemPrinter(job);
  if (printer.InDocument()) printer.EndDoc();
  // The routines end their document with errors ignored, so a file that could not be written
  // shows only as a result that is not this document's file.
  const auto& results = printer.LastResults();
  if (results.empty() || results.front() != FirstFileOf(path) || !fs::exists(results.front()))
    Raise(err::kFileError, "cannot write " + path + ": the document's output was not written");
  return printer.LastPageCount();
}

}  // namespace

std::string FirstFileOf(const std::string& path) {
  const std::filesystem::path file(path);
  std::string ending = file.extension().string();
  for (char& c : ending) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (ending != ".png") return path;
  return path.substr(0, path.size() - ending.size()) + "-1.png";
}

Outcome PrintJob(const Job& job, const std::string& paper) {
  Outcome outcome{job.id, false, 0, 0, {}};
  try {
    outcome.pages = PrintDescription(json::parse(job.text), job.path, paper);
    outcome.ok = true;
  } catch (const AutomationError& e) {
    outcome.number = e.Number();
    outcome.message = e.what();
  } catch (const json::exception& e) {
    outcome.number = err::kInvalidArgument;
    outcome.message = std::string("not valid JSON: ") + e.what();
  } catch (const std::exception& e) {
    outcome.number = err::kComponent;
    outcome.message = e.what();
  }
  return outcome;
}

}  // namespace quorvel::batch

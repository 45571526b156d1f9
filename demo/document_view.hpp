// The document view of the demonstration: a JSON document printed page by page as the printer prints it.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"

namespace quorvel::demo {

// A sample as the document view offers it: its file stem and the name of its button there.
struct ViewSample {
  std::string name;
  std::string title;  // "Delivery Note (long descriptions)": unlike the form, every title differs
};

// The samples whose files are present, in the demonstration's order.
std::vector<ViewSample> ViewSamples();
// The text of a sample's file; a name that is not a listed sample raises the file error, so no
// request can read any other file.
std::string SampleText(const std::string& name);

struct PrintedPage {
  double width = 0, height = 0;  // twips; a roll page is as long as what was printed on it
  DrawOps ops;
};

struct PrintedDocument {
  std::string type;
  std::vector<PrintedPage> pages;
  std::string ops_text;  // the ops file the printer wrote, JSON Lines
};

// Prints documents on the system printer into files under `work_dir` and reads them back. Each
// print starts from an empty company profile and puts the caller's profile back afterwards, so
// the document shows only its own company and the form's "Set Co Info" stays as it was.
// Raises with the command's message for a document that is not valid JSON or that the loader
// refuses. Not thread-safe (the printer and the profile are process-wide): the caller serialises.
class DocumentPrinter {
 public:
  explicit DocumentPrinter(std::string work_dir) : work_dir_(std::move(work_dir)) {}
  PrintedDocument Pages(const std::string& json_text) const;
  // The document as the PDF the printer writes.
  std::string Pdf(const std::string& json_text) const;

 private:
  std::string PrintTo(const std::string& json_text, const std::string& file, std::string* type) const;
  std::string work_dir_;
};

// The last few printed documents, so that their pages can be fetched one at a time. Bounded in
// documents and in ops: the oldest go first. Not thread-safe: the caller serialises.
class PrintedDocuments {
 public:
  explicit PrintedDocuments(size_t max_documents = 16, size_t max_ops = 400000)
      : max_documents_(max_documents), max_ops_(max_ops) {}
  int Add(PrintedDocument document);
  // Null when the document is unknown or was let go.
  std::shared_ptr<const PrintedDocument> Find(int id) const;

 private:
  std::map<int, std::shared_ptr<const PrintedDocument>> documents_;
  int next_id_ = 1;
  size_t max_documents_, max_ops_;
};

// The message the command prints for an error: "quorvel: " and the error's text.
std::string CommandMessage(const std::exception& error);

}  // namespace quorvel::demo

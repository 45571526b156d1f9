// Documents of every type built in C++ for the benchmarks and the measuring drivers.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/surface.hpp"

namespace quorvel::bench {

// One ready document: its type, the number of lines it was built with, and how to print it.
struct BenchDocument {
  std::string type;  // "invoice", "statement", …
  int lines = 0;
  Paper paper = Paper::A4();
  // Runs the document routine of a fresh printer object on `obj`, as a host that creates one
  // per document: a printer object keeps a little state from its first document (the invoice's
  // expenses heading), so reusing one would make later prints differ from the first.
  std::function<void(Surface& obj)> print;
  std::shared_ptr<void> keep;  // the document the routine prints
};

// Sets the company profile the documents print under (letterhead with every line).
void SetBenchCompany();

// Every document type with `lines` lines (goods, ledger lines, payments or cheques).
BenchDocument MakeDocument(const std::string& type, int lines);
// The types in the order the benchmarks list them.
const std::vector<std::string>& DocumentTypeNames();
// The line counts of the "small" and "large" variants of a type.
int SmallLines(const std::string& type);
int LargeLines(const std::string& type);

// Prints the document on the system printer into `path` (a .pdf or .jsonl), ending it;
// returns the number of pages.
int PrintToFile(const BenchDocument& doc, const std::string& path);
// Prints on a fresh preview surface; returns the number of ops recorded.
size_t PrintToPreview(const BenchDocument& doc);

// A document's finished pages, as the printer handed them to its device.
struct RecordedPage {
  DrawOps ops;
  double width = 0, height = 0;
};
// Records the document once through the ops format: printed to `jsonl_path`, read back.
std::vector<RecordedPage> RecordPages(const BenchDocument& doc, const std::string& jsonl_path);
// Replays recorded pages straight into a cairo PDF written to `pdf_path`: no layout, no measuring.
void ReplayToPdf(const std::vector<RecordedPage>& pages, const std::string& pdf_path);

// Replays recorded pages through a registered device ("pdf", "pdf-cairo") into `path`; returns
// the file's size in bytes.
size_t ReplayToDevice(const std::vector<RecordedPage>& pages, const std::string& device, const std::string& path);

// A fresh temporary directory for one run's files.
std::string BenchTempDir();
// One such directory for the whole benchmark run, removed when the process ends.
const std::string& RunDir();

}  // namespace quorvel::bench

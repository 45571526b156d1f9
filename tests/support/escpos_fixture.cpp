// The receipt-printer test fixture: fixed clock, printer reset, ops pages and PNG pictures.
#include "support/escpos_fixture.hpp"

#include "automation/document_job.hpp"
#include "output/cairo_painter.hpp"
#include "foundation/printer_surface.hpp"
#include "receipts/receipt_clock.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {

void EscPosPrinting::SetUp() {
  dir_ = TempDir("escpos");
  // The receipt prints the time of sale: fixed, so every rendering of it is the same picture.
  SetReceiptClock([] { return std::time_t{1710511509}; });
}

void EscPosPrinting::TearDown() {
  SetReceiptClock({});
  SystemPrinter().KillDoc();
  SystemPrinter().SetOutput(PrinterOutput{});
  SystemPrinter().SetPaper(Paper::A4());
}

PrinterOutput EscPosPrinting::EscPos(const std::string& destination, int timeout_seconds) {
  PrinterOutput output;
  output.device = "escpos";
  output.path = destination;
  output.escpos.timeout_seconds = timeout_seconds;
  return output;
}

void EscPosPrinting::PrintSampleReceipt() {
  PrintJobOnSystemPrinter(LoadDocumentJobFile(kReceiptSample));
}

std::vector<DrawOps> EscPosPrinting::DrawnPages(const std::function<void()>& print) {
  const std::string path = dir_ + "/drawn.jsonl";
  SystemPrinter().SetOutput(PrinterOutput::ForPath(path));
  print();
  std::vector<DrawOps> pages(1);
  for (const DrawOp& op : ReadOpsFile(path)) {
    if (std::holds_alternative<PageOp>(op)) pages.emplace_back();
    else if (!std::holds_alternative<EndOp>(op)) pages.back().push_back(op);
  }
  return pages;
}

Bitmap EscPosPrinting::PngPicture(const DrawOps& page, double width, double height, int dots) {
  const std::string path = dir_ + "/page.png";
  PrinterOutput png;
  png.device = "png";
  png.path = path;
  png.single_picture = true;
  png.dpi = 1440.0 * dots / width;
  auto device = OpenDevice(png);
  device->Page(page, width, height);
  device->Finish();
  return ThresholdPng(path, kBurnBelow);
}

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace quorvel::testing

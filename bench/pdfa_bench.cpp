// PDF/A-3b with an attached Factur-X XML, side by side with the plain direct PDF of the same
// recorded pages: what the metadata, the colour profile and the embedded file cost.
#include <benchmark/benchmark.h>

#include <ctime>
#include <filesystem>
#include <fstream>

#include "bench/bench_documents.hpp"
#include "output/device.hpp"
#include "output/pdf_attachment.hpp"

namespace quorvel::bench {

namespace {

// CPU time of the process: steadier than wall time on a machine shared with other builds.
double CpuSecondsOf(const std::vector<RecordedPage>& pages, const PrinterOutput& output) {
  const std::clock_t start = std::clock();
  std::unique_ptr<PageDevice> device = OpenDevice(output);
  for (const RecordedPage& page : pages) device->Page(page.ops, page.width, page.height);
  device->Finish();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// An invoice XML of about 40 KB, the size of a Factur-X EN 16931 invoice of some 100 lines.
std::string WriteInvoiceXml(const std::string& dir) {
  const std::string path = dir + "/factur-x.xml";
  std::ofstream out(path);
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<rsm:CrossIndustryInvoice>\n";
  for (int line = 1; line <= 100; ++line)
    out << "<ram:IncludedSupplyChainTradeLineItem><ram:LineID>" << line
        << "</ram:LineID><ram:Name>Whiteboard markers, four colours</ram:Name>"
           "<ram:BilledQuantity unitCode=\"C62\">4</ram:BilledQuantity><ram:LineTotalAmount>12.40"
           "</ram:LineTotalAmount></ram:IncludedSupplyChainTradeLineItem>\n";
  out << "</rsm:CrossIndustryInvoice>\n";
  return path;
}

// Each iteration writes the plain PDF and the PDF/A with its attachment in turn, so the same
// machine load falls on both and their ratio holds.
void PdfABesidePlain(benchmark::State& state, int lines) {
  SetBenchCompany();
  const std::string dir = BenchTempDir();
  const std::vector<RecordedPage> pages = RecordPages(MakeDocument("invoice", lines), dir + "/invoice.jsonl");
  PrinterOutput plain;
  plain.device = "pdf";
  plain.path = dir + "/plain.pdf";
  plain.pdf_creation_date = "2026-01-02T03:04:05";
  PrinterOutput archival = plain;
  archival.path = dir + "/archival.pdf";
  archival.pdfa = true;
  Attach(archival, ReadAttachment(WriteInvoiceXml(dir)));
  CpuSecondsOf(pages, archival);  // fonts parsed before the clock runs
  double plain_seconds = 0, archival_seconds = 0;
  for (auto _ : state) {
    plain_seconds += CpuSecondsOf(pages, plain);
    archival_seconds += CpuSecondsOf(pages, archival);
  }
  state.counters["pages"] = static_cast<double>(pages.size());
  state.counters["plain_ms"] = plain_seconds * 1e3 / static_cast<double>(state.iterations());
  state.counters["pdfa_ms"] = archival_seconds * 1e3 / static_cast<double>(state.iterations());
  state.counters["ratio_pdfa_to_plain"] = archival_seconds / plain_seconds;
  state.counters["extra_bytes"] = static_cast<double>(std::filesystem::file_size(archival.path)) -
                                  static_cast<double>(std::filesystem::file_size(plain.path));
  std::filesystem::remove_all(dir);
}

const bool kRegistered = [] {
  for (int lines : {12, 330})
    benchmark::RegisterBenchmark(("PdfA/invoice_beside_plain/" + std::to_string(lines)).c_str(), PdfABesidePlain, lines)
        ->Unit(benchmark::kMillisecond);
  return true;
}();

}  // namespace

}  // namespace quorvel::bench

// `quorvel batch` end to end: a mixed month-end batch with broken documents, the merged PDF,
// and output names from a template with every file kind.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <numeric>

#include "robustness/robustness_helpers.hpp"
#include "support/batch_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

const std::vector<std::string> kTypes = {"voucher", "invoice", "delivery_note", "receipt", "statement"};

std::string CompanyOfLine(int line) {
  switch (line % 3) {
    case 0: return kCompanyA;
    case 1: return kCompanyB;
    default: return "";  // no company: the profile must not keep the previous document's
  }
}

json ReadJson(const std::string& path) {
  std::ifstream in(path);
  return json::parse(in);
}

// 2,000 one-line documents of five types under two companies (and none); lines 501, 1200 and
// 1801 are broken: a number where a text belongs, an unknown type, and a cut-off line.
TEST(BatchCommand, MonthEndBatchPrintsEveryGoodDocumentAndListsTheBrokenOnes) {
  const std::string dir = TempDir("batch-month-end");
  std::vector<std::string> lines;
  std::set<std::string> expected{"batch-summary.json"};
  for (int line = 1; line <= 2000; ++line) {
    const std::string type = kTypes[line % kTypes.size()];
    json document = SmallDocument(type, "T" + std::to_string(line), CompanyOfLine(line));
    if (line == 501) document["document"]["Total"] = 12;
    if (line == 1200) document["type"] = "quote";
    lines.push_back(line == 1801 ? document.dump().substr(0, 40) : document.dump());
    if (line != 501 && line != 1200 && line != 1801) {
      expected.insert(std::to_string(line) + "-" + type + ".pdf");
    }
  }
  WriteJsonLines(dir + "/in.jsonl", lines);
  const CommandResult result = RunQuorvel("batch '" + dir + "/in.jsonl' -o '" + dir + "/out' --jobs 2");
  EXPECT_EQ(result.exit_code, 1) << result.output;
  EXPECT_NE(result.output.find("2000 documents (1997 printed, 0 skipped, 3 failed), 1997 pages"), std::string::npos)
      << result.output;

  // Exactly the good documents' files and the summary: nothing half-written, nothing extra.
  ASSERT_EQ(Entries(dir + "/out"), expected);
  int one_page = 0;
  for (const std::string& name : expected)
    if (name != "batch-summary.json") one_page += QpdfPages(dir + "/out/" + name) == 1;
  EXPECT_EQ(one_page, 1997) << "each one-line document is one valid page";
  for (int line = 7; line <= 2000; line += 199) {
    const std::string name = std::to_string(line) + "-" + kTypes[line % kTypes.size()] + ".pdf";
    EXPECT_EQ(PdfPages(dir + "/out/" + name), 1) << name;
  }

  // Workers print one document after another: each invoice carries its own company's
  // letterhead, and one without a company shows neither, whatever its worker printed before.
  for (int line = 1; line <= 116; line += 5) {
    const std::string text = PageText(dir + "/out/" + std::to_string(line) + "-invoice.pdf", 1);
    EXPECT_NE(text.find("T" + std::to_string(line)), std::string::npos) << line;
    EXPECT_EQ(text.find(kCompanyA) != std::string::npos, CompanyOfLine(line) == kCompanyA) << line << text;
    EXPECT_EQ(text.find(kCompanyB) != std::string::npos, CompanyOfLine(line) == kCompanyB) << line << text;
  }

  const json summary = ReadJson(dir + "/out/batch-summary.json");
  EXPECT_EQ(summary["documents"], 2000);
  EXPECT_EQ(summary["printed"], 1997);
  EXPECT_EQ(summary["pages"], 1997);
  EXPECT_EQ(summary["interrupted"], false);
  ASSERT_EQ(summary["failures"].size(), 3u) << summary.dump(2);
  EXPECT_EQ(summary["failures"][0]["line"], 501);
  EXPECT_EQ(summary["failures"][0]["number"], 13) << "type mismatch";
  EXPECT_NE(summary["failures"][0]["error"].get<std::string>().find("document.Total"), std::string::npos);
  EXPECT_EQ(summary["failures"][1]["line"], 1200);
  EXPECT_NE(summary["failures"][1]["error"].get<std::string>().find("quote"), std::string::npos);
  EXPECT_EQ(summary["failures"][2]["line"], 1801);
  EXPECT_NE(summary["failures"][2]["error"].get<std::string>().find("JSON"), std::string::npos);
}

// One PDF holding every document in input order: its page count is the sum of the documents'
// own, and every document starts on a page of its own with its own page numbers.
TEST(BatchCommand, MergeJoinsTheDocumentsEachFromANewPage) {
  const std::string dir = TempDir("batch-merge");
  std::vector<json> documents = {SmallDocument("invoice", "M1", kCompanyA), SmallDocument("statement", "M2", kCompanyB),
                                 LongInvoice("M3", 80), SmallDocument("delivery_note", "M4", ""),
                                 SmallDocument("statement", "M5", kCompanyA), LongInvoice("M6", 45)};
  std::vector<std::string> lines = Dump(documents);
  lines.insert(lines.begin() + 3, R"({"type": "invoice", "document": {"Nonsense": "x"}})");
  WriteJsonLines(dir + "/in.jsonl", lines);

  // The documents printed one file each first: their page counts, read by pdfinfo.
  ASSERT_EQ(RunQuorvel("batch '" + dir + "/in.jsonl' -o '" + dir + "/single' --name '{document.printTitle}.pdf'").exit_code, 1);
  std::vector<int> pages;
  for (int i = 1; i <= 6; ++i) pages.push_back(PdfPages(dir + "/single/M" + std::to_string(i) + ".pdf"));
  EXPECT_GT(pages[2], 1) << "80 item lines run over more than one page";

  const CommandResult merged = RunQuorvel("batch '" + dir + "/in.jsonl' --merge '" + dir + "/all/month.pdf' -j 2");
  EXPECT_EQ(merged.exit_code, 1) << "the broken line is reported" << merged.output;
  const std::string pdf = dir + "/all/month.pdf";
  const int total = std::accumulate(pages.begin(), pages.end(), 0);
  EXPECT_EQ(PdfPages(pdf), total);
  EXPECT_EQ(QpdfPages(pdf), total);
  int first = 1;
  for (int i = 0; i < 6; ++i) {
    const std::string marker = "M" + std::to_string(i + 1);
    EXPECT_NE(PageText(pdf, first).find(marker), std::string::npos) << marker << " opens page " << first;
    if (pages[i] > 1) {
      EXPECT_NE(PageText(pdf, first + 1).find("Page 2"), std::string::npos) << marker;
    }
    if (i > 0) {
      EXPECT_EQ(PageText(pdf, first - 1).find(marker), std::string::npos) << marker << " shares a page";
    }
    first += pages[i];
  }
  EXPECT_EQ(ReadJson(dir + "/all/batch-summary.json")["failures"][0]["line"], 4);
  EXPECT_EQ(Entries(dir + "/all"), (std::set<std::string>{"batch-summary.json", "month.pdf"})) << "parts removed";
}

// Names from a field: the ending picks the kind, and a name that is used twice, leaves the
// folder or has no device fails as that document only.
TEST(BatchCommand, TemplateNamesPickTheKindAndRefuseBadNames) {
  const std::string dir = TempDir("batch-names");
  std::vector<json> documents;
  for (const std::string number : {"a.svg", "b.jsonl", "c.png", "sub/d.pdf", "../e.pdf", "a.svg", "f.doc"}) {
    documents.push_back(SmallDocument("invoice", "N", kCompanyA));
    documents.back()["document"]["InvoiceNumber"] = number;
  }
  WriteJsonLines(dir + "/in.jsonl", Dump(documents));
  const CommandResult result =
      RunQuorvel("batch '" + dir + "/in.jsonl' -o '" + dir + "/out' --name '{document.InvoiceNumber}'");
  EXPECT_EQ(result.exit_code, 1) << result.output;
  EXPECT_NE(ReadFile(dir + "/out/a.svg").find("<svg"), std::string::npos);
  EXPECT_TRUE(HasText(ReadOpsFile(dir + "/out/b.jsonl"), "N")) << "the title, in the ops file";
  EXPECT_EQ(ReadFile(dir + "/out/c-1.png").substr(1, 3), "PNG");
  EXPECT_EQ(PdfPages(dir + "/out/sub/d.pdf"), 1);
  EXPECT_FALSE(fs::exists(dir + "/e.pdf"));
  const json failures = ReadJson(dir + "/out/batch-summary.json")["failures"];
  ASSERT_EQ(failures.size(), 3u) << failures.dump(2);
  EXPECT_EQ(failures[0]["line"], 5);
  EXPECT_EQ(failures[1]["line"], 6);
  EXPECT_NE(failures[1]["error"].get<std::string>().find("already used by line 1"), std::string::npos);
  EXPECT_EQ(failures[2]["line"], 7);
}

// A folder of document files: outputs named after the files, failures named by file.
TEST(BatchCommand, FolderInputNamesOutputsAndFailuresByFile) {
  const std::string dir = TempDir("batch-folder");
  fs::create_directories(dir + "/in");
  WriteFile(dir + "/in/acme.json", SmallDocument("statement", "F1", kCompanyA).dump(2));
  WriteFile(dir + "/in/broken.json", R"({"type": "statement", "document": {"StatementItems": 3}})");
  WriteFile(dir + "/in/zenith.json", SmallDocument("voucher", "F2", kCompanyB).dump(2));
  WriteFile(dir + "/in/notes.txt", "not a document");
  const CommandResult result = RunQuorvel("batch '" + dir + "/in' -o '" + dir + "/out'");
  EXPECT_EQ(result.exit_code, 1) << result.output;
  EXPECT_EQ(Entries(dir + "/out"), (std::set<std::string>{"acme.pdf", "zenith.pdf", "batch-summary.json"}));
  EXPECT_NE(PageText(dir + "/out/acme.pdf", 1).find("F1"), std::string::npos);
  const json summary = ReadJson(dir + "/out/batch-summary.json");
  EXPECT_EQ(summary["documents"], 3);
  ASSERT_EQ(summary["failures"].size(), 1u);
  EXPECT_EQ(summary["failures"][0]["file"], "broken.json");
  EXPECT_EQ(summary["failures"][0]["number"], 13) << "an array was expected";
}

TEST(BatchCommand, BadOptionsStopBeforeAnythingIsPrinted) {
  const std::string dir = TempDir("batch-options");
  EXPECT_EQ(RunQuorvel("batch '" + dir + "/missing.jsonl' -o '" + dir + "/out'").exit_code, 2);
  WriteJsonLines(dir + "/in.jsonl", Dump({SmallDocument("invoice", "X", "")}));
  EXPECT_EQ(RunQuorvel("batch '" + dir + "/in.jsonl'").exit_code, 2) << "no output given";
  EXPECT_EQ(RunQuorvel("batch '" + dir + "/in.jsonl' --merge '" + dir + "/m.pdf' --skip-existing").exit_code, 2);
  EXPECT_FALSE(fs::exists(dir + "/m.pdf"));
}

}  // namespace
}  // namespace quorvel::testing

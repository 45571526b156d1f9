// quorvel print on hostile documents: a clear error and no file, or a whole and valid PDF.
#include <gtest/gtest.h>
#include <unistd.h>

#include <vector>

#include "robustness/robustness_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {
namespace {

using nlohmann::json;

// Prints `doc` from DIR/doc.json to DIR/out.pdf.
CommandResult PrintDocument(const std::string& dir, const json& doc) {
  WriteFile(dir + "/doc.json", doc.dump());
  return RunQuorvel("print '" + dir + "/doc.json' -o '" + dir + "/out.pdf'");
}

std::string Repeated(const std::string& sentence, size_t bytes) {
  std::string text;
  while (text.size() < bytes) text += sentence;
  return text.substr(0, bytes);
}

TEST(HostileCli, InvalidUtf8InTheDocumentFileIsRefusedBeforeAnythingIsWritten) {
  const std::string dir = TempDir("rob-utf8");
  std::string bytes = LoadSample("receipt").dump();
  bytes.replace(bytes.find("Corner Tea House"), 6, "Co\xff\xfe\xc3(");  // stray bytes, a cut sequence
  WriteFile(dir + "/doc.json", bytes);
  const CommandResult result = RunQuorvel("print '" + dir + "/doc.json' -o '" + dir + "/out.pdf'");
  EXPECT_NE(result.exit_code, 0);
  EXPECT_NE(result.output.find("is not valid JSON"), std::string::npos) << result.output;
  EXPECT_NE(result.output.find("UTF-8"), std::string::npos) << result.output;
  EXPECT_EQ(Entries(dir), (std::set<std::string>{"doc.json"}));
}

TEST(HostileCli, AMegabyteDescriptionPrintsAWholePdf) {
  const std::string dir = TempDir("rob-1mb");
  const std::string description = Repeated("Galvanised steel shelving, five shelves, bolt-free assembly. ", 1 << 20);
  json invoice = LoadSample("invoice");
  invoice["document"]["InvoiceItems"] = json::array(
      {{{"ItemName", "BIG"}, {"Description", description}, {"Quantity", "1"}, {"UnitPrice", "9.00"}, {"Total", "9.00"}},
       {{"ItemName", "NEXT"}, {"Description", "after the long one"}, {"Quantity", "1"}, {"UnitPrice", "1.00"}, {"Total", "1.00"}}});
  json note = LoadSample("delivery_note");
  note["document"]["items"] = json::array(
      {{{"ItemName", "BIG"}, {"Description", description + "\r\n" + description}, {"Quantity", "1"}, {"PKG", "1"}, {"Unit", "pcs"}}});
  for (const json& doc : {invoice, note}) {
    const CommandResult result = PrintDocument(dir, doc);
    ASSERT_EQ(result.exit_code, 0) << result.output;
    EXPECT_GE(PdfPages(dir + "/out.pdf"), 1);
    // The long line runs past the foot of its page: its start is printed, and so is what follows.
    const std::string text = RunCommand("pdftotext '" + dir + "/out.pdf' -");
    EXPECT_NE(text.find("Galvanised steel shelving"), std::string::npos);
    EXPECT_NE(text.find(doc["type"] == "invoice" ? "NEXT" : "Received"), std::string::npos) << text.substr(0, 2000);
    EXPECT_EQ(Entries(dir), (std::set<std::string>{"doc.json", "out.pdf"}));
  }
}

// The statement's count through the command is LoaderLineLimits' case; the invoice's goods here.
TEST(HostileCli, FortyThousandLinesFailWithTheOverflowErrorAndLeaveNoFile) {
  const std::string dir = TempDir("rob-40k");
  const json line = {{"ItemName", "I"}, {"Description", "d"}, {"Quantity", "1"}, {"UnitPrice", "1"}, {"Total", "1"}};
  json invoice = LoadSample("invoice");
  invoice["document"]["InvoiceItems"] = json::array();
  for (int i = 0; i < 40000; ++i) invoice["document"]["InvoiceItems"].push_back(line);
  const CommandResult result = PrintDocument(dir, invoice);
  EXPECT_NE(result.exit_code, 0);
  EXPECT_NE(result.output.find("error 6: Overflow"), std::string::npos) << result.output;
  EXPECT_NE(result.output.find("InvoiceItems holds 40000 lines"), std::string::npos) << result.output;
  EXPECT_EQ(Entries(dir), (std::set<std::string>{"doc.json"}));
}

TEST(HostileCli, AMissingOrUnusableOutputDirectoryIsNamedAndNothingIsWritten) {
  const std::string dir = TempDir("rob-outdir");
  WriteFile(dir + "/doc.json", LoadSample("receipt").dump());
  WriteFile(dir + "/plain-file", "not a directory");
  std::vector<std::string> outputs = {dir + "/missing/out.pdf", dir + "/plain-file/out.pdf"};
  // A directory without write permission stops everyone but root, who writes anywhere.
  std::filesystem::create_directory(dir + "/read-only");
  std::filesystem::permissions(dir + "/read-only", std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
  if (geteuid() != 0) outputs.push_back(dir + "/read-only/out.pdf");
  for (const std::string& out : outputs) {
    const CommandResult result = RunQuorvel("print '" + dir + "/doc.json' -o '" + out + "'");
    EXPECT_NE(result.exit_code, 0);
    EXPECT_NE(result.output.find("error 75"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("cannot write " + out), std::string::npos) << result.output;
  }
  EXPECT_EQ(Entries(dir), (std::set<std::string>{"doc.json", "plain-file", "read-only"}));
  EXPECT_TRUE(Entries(dir + "/read-only").empty());
}

TEST(HostileCli, ValuesOfTheWrongTypeNameTheFieldAndWriteNothing) {
  const std::string dir = TempDir("rob-types");
  struct Case {
    const char* pointer;
    json value;
    const char* message;
  };
  const Case cases[] = {
      {"/document/InvoiceNumber", 1001, "document.InvoiceNumber: expected a text"},
      {"/document/hasBilling", "yes", "document.hasBilling: expected true or false"},
      {"/document/InvoiceItems", {{"ItemName", "x"}}, "document.InvoiceItems: expected an array of objects"},
      {"/document/InvoiceItems/0", "a line", "document.InvoiceItems[0]: expected an object"},
      {"/printHeader", "true", "printHeader: expected true or false"},
  };
  for (const Case& c : cases) {
    json invoice = LoadSample("invoice");
    invoice[json::json_pointer(c.pointer)] = c.value;
    const CommandResult result = PrintDocument(dir, invoice);
    EXPECT_EQ(result.exit_code, 2) << c.pointer;
    EXPECT_NE(result.output.find("error 13: Type mismatch"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find(c.message), std::string::npos) << result.output;
    EXPECT_EQ(Entries(dir), (std::set<std::string>{"doc.json"}));
  }
}

}  // namespace
}  // namespace quorvel::testing

// Documents with Arabic, mixed and Chinese texts printed by the command: the drawn glyph runs
// against hb-shape, the PDF's extracted text against the logical text, and the PNG written.
#include <gtest/gtest.h>

#include "foundation/utf8.hpp"
#include "robustness/robustness_helpers.hpp"
#include "support/ops_helpers.hpp"
#include "support/shaping_helpers.hpp"

namespace quorvel::testing {
namespace {

using nlohmann::json;

struct Printed {
  DrawOps ops;
  std::string pdf_text;
};

// Prints `doc` to ops, PDF and PNG; every output must be written.
Printed PrintAll(const std::string& name, const json& doc) {
  const std::string dir = TempDir("shaped-" + name);
  WriteFile(dir + "/doc.json", doc.dump());
  Printed printed;
  for (const char* extension : {"jsonl", "pdf", "png"}) {
    const CommandResult result = RunQuorvel("print '" + dir + "/doc.json' -o '" + dir + "/out." + extension + "'");
    EXPECT_EQ(result.exit_code, 0) << result.output;
    EXPECT_EQ(result.output.find("warning"), std::string::npos) << result.output;
  }
  printed.ops = ReadOpsFile(dir + "/out.jsonl");
  printed.pdf_text = PdfText(dir + "/out.pdf");
  EXPECT_EQ(ReadFile(dir + "/out-1.png").substr(0, 4), "\x89PNG");  // one picture per page
  return printed;
}

// Each drawn line that is not plain ASCII is shaped as hb-shape shapes it, without boxes.
int CheckShapedTexts(const DrawOps& ops) {
  int shaped = 0;
  for (const TextOp& text : Texts(ops)) {
    if (std::all_of(text.text.begin(), text.text.end(), [](char c) { return (c & 0x80) == 0; })) continue;
    ExpectRunsShapedAsHbShape(text);
    ++shaped;
  }
  return shaped;
}

// A sample with one text replaced (`field` a JSON pointer), printed to every output.
Printed PrintSampleWith(const std::string& sample, const std::string& field, const std::string& text) {
  json doc = LoadSample(sample);
  doc[json::json_pointer(field)] = text;
  const Printed printed = PrintAll(sample, doc);
  EXPECT_GE(CheckShapedTexts(printed.ops), 1);
  return printed;
}

TEST(ShapedDocuments, ArabicLetterhead) {
  const std::string name = "شركة النور للتجارة";
  const Printed printed = PrintAll("letterhead", json{{"type", "letterhead"}, {"company", {{"CompanyName", name}}}});
  const TextOp drawn = FindText(printed.ops, name);  // the ops keep the logical text
  EXPECT_EQ(CheckShapedTexts(printed.ops), 1);
  // Drawn by Noto Sans Arabic: Liberation Sans has no Arabic letters.
  for (const GlyphRun& run : GlyphRunsOf(drawn)) EXPECT_NE(run.face->File().find("NotoSansArabic-Regular"), std::string::npos);
  EXPECT_NE(printed.pdf_text.find(name), std::string::npos) << printed.pdf_text;
}

TEST(ShapedDocuments, InvoiceWithArabicAndLatinInOneDescription) {
  const std::string description = "ورق طباعة A4 80gsm عدد 5 رزم";
  const Printed printed = PrintSampleWith("invoice", "/document/InvoiceItems/0/Description", description);
  EXPECT_TRUE(HasText(printed.ops, description));
  for (const char* word : {"ورق", "طباعة", "A4", "80gsm", "عدد", "رزم"})
    EXPECT_NE(printed.pdf_text.find(word), std::string::npos) << word << "\n" << printed.pdf_text;
}

TEST(ShapedDocuments, ReceiptWithAnArabicStoreName) {
  const std::string store = "مقهى الزاوية";
  const Printed printed = PrintSampleWith("receipt", "/company/CompanyName", store);
  EXPECT_TRUE(HasText(printed.ops, store));
  EXPECT_NE(printed.pdf_text.find(store), std::string::npos) << printed.pdf_text;
}

TEST(ShapedDocuments, StatementLineInChinese) {
  const std::string description = "发票 INV-2400 办公用品";
  const Printed printed = PrintSampleWith("statement", "/document/StatementItems/0/Description", description);
  const TextOp drawn = FindText(printed.ops, " " + description);  // the column starts with a blank
  // The Chinese words come from the CJK fallback, the invoice number stays in Liberation Sans.
  for (const GlyphRun& run : GlyphRunsOf(drawn)) {
    const std::u32string text = LogicalText(run);
    const bool latin = std::all_of(text.begin(), text.end(), [](char32_t cp) { return cp < 0x2E80; });
    EXPECT_NE(run.face->File().find(latin ? "LiberationSans-Regular" : "DroidSansFallback"), std::string::npos)
        << run.face->File();
  }
  EXPECT_NE(printed.pdf_text.find(description), std::string::npos) << printed.pdf_text;
}

TEST(ShapedDocuments, MissingCharactersAreReportedByFieldAndStrictModeWritesNothing) {
  // U+1FAE8 (Unicode 15) is in none of the fonts the project installs.
  const std::string dir = TempDir("shaped-missing");
  json invoice = LoadSample("invoice");
  invoice["document"]["CustomerShortName"] = "Corbel \U0001FAE8 Finch";
  WriteFile(dir + "/doc.json", invoice.dump());
  const CommandResult warned = RunQuorvel("print '" + dir + "/doc.json' -o '" + dir + "/out.pdf'");
  EXPECT_EQ(warned.exit_code, 0) << warned.output;
  EXPECT_NE(warned.output.find("warning: no installed font has document.CustomerShortName: U+1FAE8"), std::string::npos)
      << warned.output;
  EXPECT_EQ(Entries(dir), (std::set<std::string>{"doc.json", "out.pdf"}));

  const CommandResult strict = RunQuorvel("print --strict '" + dir + "/doc.json' -o '" + dir + "/strict.pdf'");
  EXPECT_NE(strict.exit_code, 0);
  EXPECT_NE(strict.output.find("document.CustomerShortName: U+1FAE8"), std::string::npos) << strict.output;
  EXPECT_EQ(Entries(dir), (std::set<std::string>{"doc.json", "out.pdf"}));
}

}  // namespace
}  // namespace quorvel::testing

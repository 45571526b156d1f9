// The document view without a browser: pages read back from the printer, the PDF, errors, the bounded store.
#include "demo/document_view.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "demo/samples.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::demo {
namespace {

using testing::LineAt;

// A voucher without letterhead: its title stands twelve 10-point lines below the top margin.
const char* kVoucher = R"({
  "type": "voucher", "printHeader": false,
  "company": {"CompanyName": "Orrin Fieldworks"},
  "printer": {"Title": "DEMO VOUCHER"},
  "document": {"Amount": "10.00", "Number": "PV-1", "PayeeName": "Tamsin Leck"}
})";

std::string SampleFile(const std::string& name) {
  std::ifstream in(std::string(QUORVEL_SOURCE_DIR) + "/demo/samples/" + name + ".json");
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

class DocumentViewTest : public ::testing::Test {
 protected:
  void SetUp() override {
    saved_ = ModuleCompanyInfo::Profile();
    saved_dir_ = SamplesDir();
    SetSamplesDir(std::string(QUORVEL_SOURCE_DIR) + "/demo/samples");
  }
  void TearDown() override {
    ModuleCompanyInfo::Profile() = saved_;
    SetSamplesDir(saved_dir_);
  }
  DocumentPrinter printer_{testing::TempDir("document-view")};
  CompanyProfile saved_;
  std::string saved_dir_;
};

TEST_F(DocumentViewTest, APageIsTheA4PageWithTheDocumentsOwnMargins) {
  // The form's "Set Co Info" margin must neither move this document nor be lost by it.
  ModuleCompanyInfo::Profile().TopMargin = 500;
  const PrintedDocument printed = printer_.Pages(kVoucher);
  EXPECT_EQ(printed.type, "voucher");
  ASSERT_EQ(printed.pages.size(), 1u);
  EXPECT_EQ(printed.pages[0].width, 11906);
  EXPECT_EQ(printed.pages[0].height, 16838);
  // The pages come back through the ops file, whose twips have two decimals.
  EXPECT_NEAR(testing::FindText(printed.pages[0].ops, "DEMO VOUCHER").y, 12 * LineAt(10), 0.005);
  EXPECT_EQ(ModuleCompanyInfo::Profile().TopMargin, 500);
  EXPECT_TRUE(printed.ops_text.ends_with("\n{\"op\":\"end\"}\n"));
}

TEST_F(DocumentViewTest, TheLongInvoiceSplitsWhereThePrinterNumbersItsPages) {
  const PrintedDocument printed = printer_.Pages(SampleFile("invoice"));
  ASSERT_GT(printed.pages.size(), 1u);
  // A document of several pages carries "Page N" at the foot of page N, and only there.
  for (size_t i = 0; i < printed.pages.size(); ++i) {
    std::vector<std::string> numbers;
    for (const TextOp& t : testing::Texts(printed.pages[i].ops))
      if (t.text.rfind("Page ", 0) == 0) numbers.push_back(t.text);
    EXPECT_EQ(numbers, std::vector<std::string>{"Page " + std::to_string(i + 1)}) << "page " << i + 1;
  }
}

TEST_F(DocumentViewTest, AReceiptPageIsTheRollAsLongAsWhatWasPrinted) {
  const PrintedDocument printed = printer_.Pages(SampleFile("receipt"));
  ASSERT_EQ(printed.pages.size(), 1u);
  const PrintedPage& slip = printed.pages[0];
  EXPECT_EQ(slip.width, 4535);
  double lowest = 0;
  for (const TextOp& t : testing::Texts(slip.ops)) lowest = std::max(lowest, t.y + LineAt(t.size));
  EXPECT_GE(slip.height, lowest);
  EXPECT_LT(slip.height, lowest + 1000);
}

TEST_F(DocumentViewTest, ThePdfIsWholeAndErrorsReadAsTheCommandsOwn) {
  const std::string pdf = printer_.Pdf(kVoucher);
  EXPECT_EQ(pdf.rfind("%PDF-", 0), 0u);
  EXPECT_NE(pdf.find("%%EOF", pdf.size() - 8), std::string::npos);
  try {
    printer_.Pages("{ not json");
    FAIL() << "bad JSON was printed";
  } catch (const AutomationError& e) {
    EXPECT_EQ(CommandMessage(e).rfind("quorvel: ", 0), 0u);
    EXPECT_NE(CommandMessage(e).find("the document is not valid JSON"), std::string::npos) << e.what();
  }
  std::string misspelt = kVoucher;
  misspelt.replace(misspelt.find("PayeeName"), 9, "PayeName");
  try {
    printer_.Pages(misspelt);
    FAIL() << "a misspelt field was printed";
  } catch (const AutomationError& e) {
    EXPECT_NE(std::string(e.what()).find("PayeName"), std::string::npos) << e.what();
  }
}

TEST_F(DocumentViewTest, SamplesHaveDifferentTitlesAndNoOtherFileCanBeRead) {
  std::set<std::string> titles;
  for (const ViewSample& sample : ViewSamples()) titles.insert(sample.title);
  EXPECT_EQ(titles.size(), ViewSamples().size());
  EXPECT_TRUE(titles.count("Delivery Note (long descriptions)"));
  EXPECT_EQ(SampleText("voucher"), SampleFile("voucher"));
  EXPECT_THROW(SampleText("../../etc/passwd"), AutomationError);
  EXPECT_THROW(SampleText("nosuch"), AutomationError);
}

TEST_F(DocumentViewTest, TheStoreKeepsTheNewestDocumentsWithinItsBounds) {
  auto document = [](size_t ops) {
    PrintedDocument printed;
    printed.pages.push_back({11906, 16838, DrawOps(ops, LineOp{})});
    return printed;
  };
  PrintedDocuments store(/*max_documents=*/2, /*max_ops=*/100);
  const int first = store.Add(document(10));
  const int second = store.Add(document(10));
  const int third = store.Add(document(10));
  EXPECT_EQ(store.Find(first), nullptr);
  EXPECT_NE(store.Find(second), nullptr);
  EXPECT_NE(store.Find(third), nullptr);
  // Too many ops: the older go, but the newest stays however large.
  const int large = store.Add(document(500));
  EXPECT_EQ(store.Find(third), nullptr);
  ASSERT_NE(store.Find(large), nullptr);
  EXPECT_EQ(store.Find(large)->pages[0].ops.size(), 500u);
  EXPECT_EQ(store.Find(0), nullptr);
}

}  // namespace
}  // namespace quorvel::demo

// Output names of batch documents: the template filled from the document, and names that would
// leave the output folder refused.
#include <gtest/gtest.h>

#include "batch/batch_input.hpp"
#include "foundation/errors.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::batch {
namespace {

using nlohmann::json;
using testing::ErrorNumberOf;

const json kInvoice = {{"type", "invoice"},
                       {"copies", 2},
                       {"document", {{"InvoiceNumber", "INV-00318"}, {"HasDiscount", true}, {"Items", json::array()}}}};
const BatchSource kLine{42, ""};
const BatchSource kFile{0, "march/acme.json"};

TEST(BatchNames, FieldsBuiltInsAndBracesAreFilledIn) {
  EXPECT_EQ(OutputName("{document.InvoiceNumber}.pdf", kInvoice, kLine), "INV-00318.pdf");
  EXPECT_EQ(OutputName("{line}-{type}.svg", kInvoice, kLine), "42-invoice.svg");
  EXPECT_EQ(OutputName("{name}.pdf", kInvoice, kFile), "acme.pdf");
  EXPECT_EQ(OutputName("{type}/{copies}-{document.HasDiscount}.jsonl", kInvoice, kLine), "invoice/2-true.jsonl");
  EXPECT_EQ(OutputName("{{x}}.pdf", kInvoice, kLine), "{x}.pdf");
  EXPECT_EQ(DefaultNameTemplate(false), "{line}-{type}.pdf");
  EXPECT_EQ(DefaultNameTemplate(true), "{name}.pdf");
}

TEST(BatchNames, MissingOrNonScalarFieldsAndBrokenTemplatesAreInvalidArguments) {
  std::string context;
  EXPECT_EQ(ErrorNumberOf([] { OutputName("{document.Number}.pdf", kInvoice, kLine); }, &context),
            err::kInvalidArgument);
  EXPECT_NE(context.find("{document.Number}"), std::string::npos) << context;
  EXPECT_EQ(ErrorNumberOf([] { OutputName("{document.Items}.pdf", kInvoice, kLine); }), err::kInvalidArgument);
  EXPECT_EQ(ErrorNumberOf([] { OutputName("{name}.pdf", kInvoice, kLine); }), err::kInvalidArgument)
      << "a JSON Lines document has no file name";
  EXPECT_EQ(ErrorNumberOf([] { OutputName("{type.pdf", kInvoice, kLine); }), err::kInvalidArgument);
  EXPECT_EQ(ErrorNumberOf([] { OutputName("type}.pdf", kInvoice, kLine); }), err::kInvalidArgument);
}

TEST(BatchNames, NamesThatLeaveTheOutputFolderAreRefused) {
  const auto refused = [](const std::string& number) {
    json document = kInvoice;
    document["document"]["InvoiceNumber"] = number;
    return ErrorNumberOf([&] { OutputName("{document.InvoiceNumber}", document, kLine); }) == err::kInvalidArgument;
  };
  for (const char* name : {"../escape.pdf", "a/../../escape.pdf", "/etc/escape.pdf", "a//b.pdf", "./a.pdf", "folder/",
                           "", "a\nb.pdf"})
    EXPECT_TRUE(refused(name)) << name;
  EXPECT_FALSE(refused("2024/march/INV..1.pdf")) << "dots inside a name are not a step up";
}

}  // namespace
}  // namespace quorvel::batch

// Mistakes of a host or a user get a clear error: handles used after release, unreadable input
// files, bad UTF-8 named by field, and lists longer than 32,767 lines refused before building.
#include <gtest/gtest.h>


#include "automation/document_file.hpp"
#include "foundation/errors.hpp"
#include "robustness/robustness_helpers.hpp"
#include "support/capi_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {
namespace {

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(Handles, AReleasedHandleIsRefusedNotFollowed) {
  quorvel_object* invoice = nullptr;
  ASSERT_EQ(quorvel_create("Quorvel.ClassInvoice", &invoice), QUORVEL_OK);
  quorvel_variant number = CText("INV-1");
  ASSERT_EQ(quorvel_put(invoice, "InvoiceNumber", &number), QUORVEL_OK);
  ASSERT_EQ(quorvel_release(invoice), QUORVEL_OK);

  quorvel_variant value{};
  EXPECT_EQ(quorvel_get(invoice, "InvoiceNumber", &value), err::kObjectNotSet);
  EXPECT_TRUE(Contains(LastError(), "released or never given out")) << LastError();
  EXPECT_EQ(quorvel_put(invoice, "InvoiceNumber", &number), err::kObjectNotSet);
  EXPECT_EQ(quorvel_call(invoice, "AddItem", nullptr, 0, nullptr), err::kObjectNotSet);
  EXPECT_EQ(quorvel_release(invoice), err::kObjectNotSet);  // released twice
  EXPECT_EQ(LastErrorNumber(), err::kObjectNotSet);

  // A handle passed as an argument is checked too, and a made-up one is refused like a released one.
  CObject printer = Create("Quorvel.ClassInvoicePrinter");
  std::vector<quorvel_variant> args{quorvel_variant{}, CBool(true)};
  args[0].type = QUORVEL_OBJECT;
  args[0].value.object = invoice;
  EXPECT_EQ(quorvel_call(printer.get(), "PrintIt", args.data(), 2, nullptr), err::kObjectNotSet);
  int32_t same = -1;
  EXPECT_EQ(quorvel_same_object(printer.get(), reinterpret_cast<quorvel_object*>(&same), &same), err::kObjectNotSet);
  // A new object never reuses the released handle.
  CObject next = Create("Quorvel.ClassInvoice");
  EXPECT_NE(next.get(), invoice);
  EXPECT_EQ(quorvel_release(nullptr), QUORVEL_OK);
}

TEST(InputFiles, UnreadableInputNamesTheFileAndTheSystemsReason) {
  const std::string dir = TempDir("input-errors");
  CommandResult result = RunQuorvel("print '" + dir + "' -o '" + dir + "/out.pdf'");
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_TRUE(Contains(result.output, "error 75")) << result.output;
  EXPECT_TRUE(Contains(result.output, "cannot read " + dir + ": Is a directory")) << result.output;
  EXPECT_FALSE(Contains(result.output, "basic_filebuf")) << result.output;
  result = RunQuorvel("print '" + dir + "/nosuch.json' -o '" + dir + "/out.pdf'");
  EXPECT_TRUE(Contains(result.output, "cannot read " + dir + "/nosuch.json: No such file or directory")) << result.output;
  EXPECT_TRUE(Entries(dir).empty());
}

TEST(InputFiles, InvalidUtf8IsNamedByItsField) {
  std::string text = LoadSample("invoice").dump();
  const size_t at = text.find("\"Description\":\"") + 15;
  text.insert(at, "\xc3(");
  std::string context;
  EXPECT_EQ(ErrorNumberOf([&] { ParseDocumentText(text, "doc.json"); }, &context), err::kInvalidArgument);
  EXPECT_TRUE(Contains(context, "document.InvoiceItems[0].Description: the text is not valid UTF-8")) << context;
  text = LoadSample("receipt").dump();
  text.insert(text.find("\"Store\":\"") + 9, "\xff");
  ErrorNumberOf([&] { ParseDocumentText(text, "doc.json"); }, &context);
  EXPECT_TRUE(Contains(context, "document.Store: the text is not valid UTF-8")) << context;
}

// The count is read before any line is built, so a million lines cost no memory; 32,767 is the
// last count a 16-bit host index reaches.
TEST(LoaderLineLimits, PastSixteenBitsIsRefusedWithTheOverflowErrorAndNothingWritten) {
  const std::string dir = TempDir("million");
  EXPECT_EQ(ReadDocumentFile(StatementWithLines(dir, 32767))["document"]["StatementItems"].size(), 32767u);
  EXPECT_EQ(ErrorNumberOf([&] { ReadDocumentFile(StatementWithLines(dir, 32768)); }), err::kOverflow);
  const std::string file = StatementWithLines(dir, 1000000);
  std::string context;
  EXPECT_EQ(ErrorNumberOf([&] { ReadDocumentFile(file); }, &context), err::kOverflow);
  EXPECT_EQ(context, "document.StatementItems holds 1000000 lines, more than 32767");
  const CommandResult result = RunQuorvel("print '" + file + "' -o '" + dir + "/out.pdf'");
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_TRUE(Contains(result.output, "error 6: Overflow")) << result.output;
  EXPECT_EQ(Entries(dir), (std::set<std::string>{"lines.json"}));
}

}  // namespace
}  // namespace quorvel::testing

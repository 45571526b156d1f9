// Nothing drawn is lost silently: positions that are not on any page and texts holding a NUL are
// refused naming the member or field, a backend drawing error fails the output, and a roll longer
// than a device page goes on over further pages instead of being cut.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "foundation/errors.hpp"
#include "output/device.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/roll_pages.hpp"
#include "invoices/invoice.hpp"
#include "receipts/receipt_printer.hpp"
#include "robustness/robustness_helpers.hpp"
#include "support/documents_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {
namespace {

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(Refusals, PositionsOffAnyPageAndNulTextsAreRefusedNamingTheMember) {
  PreviewSurface preview;
  const double inf = std::numeric_limits<double>::infinity(), nan = std::nan("");
  struct Case {
    std::function<void()> call;
    const char* member;
  };
  const Case cases[] = {
      {[&] { preview.CurrentX(inf); }, "CurrentX: inf twips"},
      {[&] { preview.CurrentY(nan); }, "CurrentY: nan twips"},
      {[&] { preview.CurrentX(1e308); }, "CurrentX: 1e+308 twips"},
      {[&] { preview.CurrentY(-2e10); }, "CurrentY: -2e+10 twips"},
      {[&] { preview.Line(4, 0, 0, inf, 10); }, "Line x2: inf twips"},
      {[&] { preview.Line(20, 0, -nan, 10, 10); }, "Line y1: "},
      // A NUL would cut the text short in every backend: the whole text is refused instead.
      {[&] { preview.Print(std::string("Corner\0Tea", 10)); }, "NUL character at byte 7"},
  };
  for (const Case& c : cases) {
    std::string context;
    EXPECT_EQ(ErrorNumberOf(c.call, &context), err::kInvalidArgument) << c.member;
    EXPECT_TRUE(Contains(context, c.member)) << context;
  }
  EXPECT_TRUE(preview.Ops().empty());
  EXPECT_EQ(preview.CurrentX(), 0);
  // The far end of what is allowed still draws: a long roll reaches millions of twips.
  preview.CurrentY(kFarthest);
  preview.Line(4, 0, -kFarthest, 10, kFarthest);
  EXPECT_EQ(Lines(preview.Ops()).size(), 1u);
}

TEST(Refusals, TheCommandNamesTheFieldOfANulAndAnOffPageMarginFailsTheReceipt) {
  const std::string dir = TempDir("refusals");
  nlohmann::json receipt = LoadSample("receipt");
  receipt["document"]["Store"] = std::string("Corner\0Tea", 10);
  WriteFile(dir + "/nul.json", receipt.dump());
  CommandResult result = RunQuorvel("print '" + dir + "/nul.json' -o '" + dir + "/out.jsonl'");
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_TRUE(Contains(result.output, "document.Store: the text holds a NUL character")) << result.output;

  // The slip ignores each failed step; the printer still knows the document is spoilt.
  receipt = LoadSample("receipt");
  receipt["printer"]["POS_Left_Margin"] = "1e308";
  WriteFile(dir + "/margin.json", receipt.dump());
  result = RunQuorvel("print '" + dir + "/margin.json' -o '" + dir + "/out.jsonl'");
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_TRUE(Contains(result.output, "error 5")) << result.output;
  EXPECT_TRUE(Contains(result.output, "CurrentX: 1e+308 twips is not a position on the page")) << result.output;
  EXPECT_EQ(Entries(dir), (std::set<std::string>{"margin.json", "nul.json"}));
}

TEST(DrawingErrors, AnOpTheBackendCannotDrawFailsTheFileInsteadOfLeavingItOut) {
  const std::string dir = TempDir("drawing-error");
  for (const char* name : {"/out.pdf", "/out.png", "/out.svg"}) {
    auto device = OpenDevice(PrinterOutput::ForPath(dir + name));
    // Ops read from a file may hold what the surfaces refuse: a bad UTF-8 text is refused by the
    // text layout every device draws through, and the file is not written without it.
    const DrawOps ops = {TextOp{100, 100, "Arial", 10, false, "bad \xff text"}, LineOp{0, 0, 100, 100}};
    std::string context;
    EXPECT_EQ(ErrorNumberOf([&] {
                device->Page(ops, 11906, 16838);
                device->Finish();
              }, &context),
              err::kInvalidArgument)
        << name;
    EXPECT_TRUE(Contains(context, "UTF-8")) << context;
  }
  EXPECT_TRUE(Entries(dir).empty());
}

// Text ops of 10 pt, one every `step` twips from y = 0; the line height per point is 23.
DrawOps Column(int count, double step) {
  DrawOps ops;
  for (int i = 0; i < count; ++i) ops.push_back(TextOp{0, i * step, "Arial", 10, false, "row " + std::to_string(i)});
  return ops;
}

TEST(RollPieces, ALongRollIsCutBetweenOpsAndEveryPieceFits) {
  // A page that fits is one piece, unchanged, as long as the pen below its last row.
  const auto whole = CutRoll(Column(3, 300), 23, 900, 1000);
  ASSERT_EQ(whole.size(), 1u);
  EXPECT_EQ(whole[0].ops, Column(3, 300));
  EXPECT_EQ(whole[0].length, 900);
  // Rows at 0, 300, …, 2700, each 230 high; pieces of at most 1000: rows 0–2 (0 to 830), rows
  // 3–5 from 900 (to 1730), rows 6–8 from 1800, row 9 from 2700, with the pen at 3000.
  const auto pieces = CutRoll(Column(10, 300), 23, 3000, 1000);
  ASSERT_EQ(pieces.size(), 4u);
  const double lengths[] = {830, 830, 830, 300};
  const size_t rows[] = {3, 3, 3, 1};
  for (size_t p = 0; p < pieces.size(); ++p) {
    EXPECT_EQ(pieces[p].length, lengths[p]) << p;
    ASSERT_EQ(pieces[p].ops.size(), rows[p]) << p;
    EXPECT_EQ(std::get<TextOp>(pieces[p].ops[0]).y, 0) << p;
    EXPECT_EQ(std::get<TextOp>(pieces[p].ops[0]).text, "row " + std::to_string(p * 3));
  }
  // A rule longer than a piece cannot be drawn whole anywhere.
  EXPECT_EQ(ErrorNumberOf([] { CutRoll({LineOp{0, 0, 0, 5000}}, 23, 0, 1000); }), err::kInvalidArgument);
}

TEST(RollPieces, AReceiptOfEighteenHundredItemsKeepsItsTotalsAndChange) {
  ResetProfileWithCompany();
  const std::string path = TempDir("long-roll") + "/slip.jsonl";
  SystemPrinter().SetOutput(PrinterOutput::ForPath(path));
  ClassInvoice receipt;
  receipt.Store = "Corner Tea House";
  for (int i = 0; i < 1800; ++i) {
    auto item = MakeItem("Green tea", "Green tea 250 g", "30.00");
    item->Quantity = "12";  // as the sample slip: a line with quantity and unit price under each item
    item->UnitPrice = "2.50";
    receipt.AddItem(item);
  }
  receipt.Total = "8,100.00";
  receipt.Received = "8,200.00";
  receipt.Change = "100.00";
  ReceiptPrinter().PrintIt(receipt);
  const DrawOps ops = ReadOpsFile(path);
  SystemPrinter().SetOutput(PrinterOutput{});
  // 1,800 items of two lines each are more than 32,767 points: two pieces or more.
  EXPECT_GE(CountOps(ops, "page"), 1);
  EXPECT_EQ(SystemPrinter().LastPageCount(), CountOps(ops, "page") + 1);
  for (const char* text : {"8,100.00", "8,200.00", "100.00", "Corner Tea House"}) EXPECT_TRUE(HasText(ops, text)) << text;
  EXPECT_TRUE(HasText(ops, "         Change"));
  for (const TextOp& text : Texts(ops)) ASSERT_LE(text.y, kLongestRollPage);
}

}  // namespace
}  // namespace quorvel::testing

// The amount in words: split at the first blank past the width, never hanging, never repeated.
#include <gtest/gtest.h>

#include "foundation/preview_surface.hpp"
#include "support/ops_helpers.hpp"
#include "support/voucher_helpers.hpp"
#include "vouchers/voucher_printer.hpp"

namespace quorvel {
namespace {

using testing::FindText;
using testing::LineAt;
using testing::Measure;

const double L = LineAt(10);
constexpr double kWordsWidth = 11906 - 1000 - 1000 - 1500;  // 8406

// The texts printed on the words' lines, in order: everything between the currency word and
// the "BY" line.
std::vector<TextOp> WordLines(const DrawOps& ops, const std::string& currency) {
  std::vector<TextOp> out;
  bool inside = false;
  for (const TextOp& t : testing::Texts(ops)) {
    if (t.text.rfind("BY   ", 0) == 0) break;
    if (inside) out.push_back(t);
    if (t.text == currency) inside = true;
  }
  return out;
}

class VoucherWordsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::ResetVoucherProfile();
    voucher.PayeeName = "Ilsabet Marrow";
    voucher.PaymentMethod = "Cash";
  }
  // Prints the voucher with `words` and returns the word lines, checking their x and rhythm.
  std::vector<std::string> Print(const std::string& words) {
    voucher.SumofAmount = words;
    PreviewSurface s;
    printer.PrintReceiptVoucher(s, voucher, false, false);
    const TextOp currency = FindText(s.Ops(), "Dollars   ");
    std::vector<std::string> texts;
    for (const TextOp& t : WordLines(s.Ops(), "Dollars   ")) {
      EXPECT_EQ(t.x, 1000 + Measure("Dollars   ")) << t.text;
      EXPECT_NEAR(t.y, currency.y + texts.size() * L, 1e-6) << t.text;
      texts.push_back(t.text);
    }
    // One empty line after the words, then the BY line.
    EXPECT_NEAR(FindText(s.Ops(), "BY   Cash  NO.   ").y, currency.y + (texts.size() + 1) * L, 1e-6);
    return texts;
  }
  ClassVoucher voucher;
  ClassVoucherPrinter printer;
};

TEST_F(VoucherWordsTest, LongWordsBreakAtTheFirstBlankPastTheWidth) {
  std::string words;
  for (int k = 0; k < 12; ++k) words += "Seventy Thousand ";
  words += "Only";
  // The first line is the shortest head that ends with a blank and is at least 8406 wide.
  size_t p = words.find(' ') + 1;
  while (Measure(words.substr(0, p)) < kWordsWidth) p = words.find(' ', p) + 1;
  const std::vector<std::string> expected = {words.substr(0, p), words.substr(p)};
  EXPECT_EQ(Print(words), expected);
  EXPECT_GE(Measure(expected[0]), kWordsWidth);
}

TEST_F(VoucherWordsTest, TextsWithoutALateBlankPrintWithoutHanging) {
  const std::string tail(120, 'X');  // 120 × 133.4 twips, far past the width
  // Blanks only within the first 8406: no head can end at a blank past the width.
  EXPECT_EQ(Print("One Two " + tail), std::vector<std::string>{"One Two " + tail});
  // A single long word.
  EXPECT_EQ(Print(tail), std::vector<std::string>{tail});
  // The first blank lies past the width: the head is the long word with its blank.
  EXPECT_EQ(Print(tail + " Only"), (std::vector<std::string>{tail + " ", "Only"}));
  // A text that fits stays whole.
  EXPECT_EQ(Print("Ten Only"), std::vector<std::string>{"Ten Only"});
}

TEST_F(VoucherWordsTest, ASecondVoucherShowsOnlyItsOwnWords) {
  std::string first;
  for (int k = 0; k < 12; ++k) first += "Ninety Nine ";
  ASSERT_EQ(Print(first).size(), 2u);
  EXPECT_EQ(Print("Five Only"), std::vector<std::string>{"Five Only"});
}

TEST_F(VoucherWordsTest, CurrencySignStandsInWhenThereIsNoName) {
  ModuleCompanyInfo::Profile().DefaultCurrencyName = "";
  voucher.SumofAmount = "Five Only";
  PreviewSurface s;
  printer.PrintReceiptVoucher(s, voucher, false, false);
  const TextOp sign = FindText(s.Ops(), "$");
  EXPECT_EQ(sign.x, 1000);
  const TextOp words = FindText(s.Ops(), "Five Only");
  EXPECT_EQ(words.x, 1000 + Measure("$"));
  EXPECT_EQ(words.y, sign.y);
}

}  // namespace
}  // namespace quorvel

// The PDF writer's syntax: numbers as the content streams write them, and escaped strings.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "foundation/errors.hpp"
#include "output/pdf_writer.hpp"

namespace quorvel::testing {
namespace {

std::string Number(double value, int decimals = 3) {
  std::string out;
  pdf::AppendNumber(out, value, decimals);
  return out;
}

TEST(PdfNumbers, RoundedToTheirPlacesWithoutTrailingZeros) {
  EXPECT_EQ(Number(12), "12");
  EXPECT_EQ(Number(-2.0), "-2");
  EXPECT_EQ(Number(0.5), "0.5");
  EXPECT_EQ(Number(-3.125), "-3.125");
  EXPECT_EQ(Number(1.23456), "1.235");
  EXPECT_EQ(Number(0.1 + 0.2), "0.3");
  EXPECT_EQ(Number(0.05), "0.05");
  EXPECT_EQ(Number(1000.0004), "1000");
  EXPECT_EQ(Number(-0.0004), "0");  // no "-0"
  EXPECT_EQ(Number(0.0001, 4), "0.0001");
  EXPECT_EQ(Number(841.8898, 4), "841.8898");
  EXPECT_EQ(Number(16838.0 / 20.0, 4), "841.9");
  EXPECT_EQ(Number(2.5, 0), "3");
  EXPECT_EQ(Number(123456789.25, 2), "123456789.25");
}

TEST(PdfNumbers, ANonFiniteValueIsRefused) {
  std::string out;
  EXPECT_THROW(pdf::AppendNumber(out, std::numeric_limits<double>::infinity()), AutomationError);
  EXPECT_THROW(pdf::AppendNumber(out, std::nan("")), AutomationError);
}

TEST(PdfStrings, DelimitersAndCarriageReturnsAreEscapedBinaryKept) {
  std::string out;
  pdf::AppendLiteral(out, std::string_view("a(b)c\\d\re\0\xff", 11));
  EXPECT_EQ(out, std::string("(a\\(b\\)c\\\\d\\re\0\xff)", 17));
}

}  // namespace
}  // namespace quorvel::testing

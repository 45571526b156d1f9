// The runtime rules: 16-bit conversion, num(t), Int(x), number texts, collections, UTF-8. The
// 16-bit count of a collection is checked on every document's collections by LineLimits.
#include <gtest/gtest.h>

#include "foundation/collection.hpp"
#include "foundation/errors.hpp"
#include "foundation/runtime.hpp"
#include "foundation/utf8.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel {
namespace {

using testing::ErrorNumberOf;

TEST(Runtime, SixteenBitConversionRoundsHalvesToEven) {
  EXPECT_EQ(ToInt16(2.5), 2);
  EXPECT_EQ(ToInt16(3.5), 4);
  EXPECT_EQ(ToInt16(-2.5), -2);
  EXPECT_EQ(ToInt16(1699.4), 1699);
  EXPECT_EQ(ToInt16(32767.4), 32767);
  EXPECT_EQ(ToInt16(-32768), -32768);
  EXPECT_EQ(ErrorNumberOf([] { ToInt16(32767.5); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { ToInt16(-32769); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { AddInt16(32767, 1); }), 6);
  EXPECT_EQ(AddInt16(-5, 3), -2);
}

TEST(Runtime, NumTakesTheNumericPrefix) {
  EXPECT_EQ(Num(" 300"), 300);
  EXPECT_EQ(Num("1abc"), 1);
  EXPECT_EQ(Num("1.9"), 1.9);
  EXPECT_EQ(Num("abc"), 0);
  EXPECT_EQ(Num(""), 0);
  EXPECT_EQ(Num("  -12.5kg"), -12.5);
  EXPECT_EQ(Num("2e3x"), 2000);
  EXPECT_EQ(Num("2e"), 2);
  EXPECT_EQ(Num("-"), 0);
  EXPECT_EQ(Num(".5"), 0.5);
  EXPECT_EQ(Int(1.9), 1);
  EXPECT_EQ(Int(-0.5), -1);
  EXPECT_EQ(SignedText(300), " 300");
  EXPECT_EQ(SignedText(-4), "-4");
}

TEST(Runtime, CollectionIsOneBasedAndShared) {
  Collection<std::string> c;
  auto a = std::make_shared<std::string>("a");
  c.Add(a);
  c.Add(a);
  EXPECT_EQ(c.Count(), 2);
  EXPECT_EQ(c.Item(2).get(), a.get());  // the same object, not a copy
  EXPECT_EQ(ErrorNumberOf([&] { c.Item(0); }), 9);
  EXPECT_EQ(ErrorNumberOf([&] { c.Remove(3); }), 9);
  EXPECT_EQ(c.Count(), 2);
  c.Remove(1);
  EXPECT_EQ(c.Count(), 1);
  CollectionRef<std::string> lazy;
  EXPECT_EQ(LazyCollection(lazy)->Count(), 0);
  EXPECT_EQ(LazyCollection(lazy).get(), lazy.get());
}

TEST(Runtime, Utf8IsCheckedAndDecodedByCodePoint) {
  EXPECT_TRUE(IsValidUtf8("Gr\xC3\xBC\xC3\x9F \xE2\x80\xA6 \xF0\x9F\x98\x80"));
  EXPECT_FALSE(IsValidUtf8("\xC3"));          // cut short
  EXPECT_FALSE(IsValidUtf8("\xC0\xAF"));      // overlong
  EXPECT_FALSE(IsValidUtf8("\xED\xA0\x80"));  // surrogate
  EXPECT_FALSE(IsValidUtf8("\xF4\x90\x80\x80"));  // past U+10FFFF
  EXPECT_EQ(DecodeUtf8("a\xE2\x80\xA6").size(), 2u);
  EXPECT_EQ(EncodeUtf8(U"\u2026\U0001F600"), "\xE2\x80\xA6\xF0\x9F\x98\x80");
  try {
    RequireUtf8("\xFF", "ItemName");
    FAIL();
  } catch (const AutomationError& e) {
    EXPECT_NE(e.Context().find("ItemName"), std::string::npos);
  }
}

}  // namespace
}  // namespace quorvel

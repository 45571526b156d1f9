// The surface contract: measuring with real Liberation Sans metrics, Print forms, Line forms.
#include <gtest/gtest.h>

#include "foundation/errors.hpp"
#include "foundation/preview_surface.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel {
namespace {

using testing::LineAt;

TEST(Surface, StartsAtOriginInArialTenPointAndMeasuresWithLiberationSansAdvances) {
  PreviewSurface s;
  EXPECT_EQ(s.CurrentX(), 0);
  EXPECT_EQ(s.CurrentY(), 0);
  EXPECT_EQ(s.Font().Name(), "Arial");
  EXPECT_EQ(s.Font().Size(), 10);
  EXPECT_FALSE(s.Font().Bold());
  // Advances in font units (unitsPerEm 2048): W 1933, A 1366, "a" 1139, blank 569.
  EXPECT_DOUBLE_EQ(s.TextWidth("W"), 1933 * 200.0 / 2048);
  EXPECT_DOUBLE_EQ(s.TextWidth("Aa a"), (1366 + 1139 + 569 + 1139) * 200.0 / 2048);
  EXPECT_EQ(s.TextWidth(""), 0);
  // A CRLF text measures its widest line, not the sum.
  EXPECT_DOUBLE_EQ(s.TextWidth("a\r\nWW\r\nA"), 2 * 1933 * 200.0 / 2048);
  s.Font().Bold(true);  // bold "W" is 1933 too, bold "a" 1139: other letters differ
  EXPECT_DOUBLE_EQ(s.TextWidth("b"), 1251 * 200.0 / 2048);
  s.Font().Size(20);
  EXPECT_DOUBLE_EQ(s.TextHeight("x"), LineAt(20));
  EXPECT_DOUBLE_EQ(s.TextHeight("x\r\ny\r\nz"), 3 * LineAt(20));
  EXPECT_NEAR(LineAt(10), 229.98, 0.005);
}

TEST(Surface, PrintFormsMoveThePen) {
  PreviewSurface s;
  s.CurrentX(500);
  s.Print("");  // form 1 with "": only moves down
  EXPECT_EQ(s.CurrentX(), 0);
  EXPECT_DOUBLE_EQ(s.CurrentY(), LineAt(10));
  EXPECT_TRUE(s.Ops().empty());

  s.CurrentX(1000);
  const double aa = s.TextWidth("Aa");
  s.PrintSameLine("Aa");  // form 3: stays on the line, after the text
  EXPECT_DOUBLE_EQ(s.CurrentX(), 1000 + aa);
  EXPECT_DOUBLE_EQ(s.CurrentY(), LineAt(10));

  s.Font().Size(20);
  s.Print("B");  // a larger size moves further down
  EXPECT_DOUBLE_EQ(s.CurrentY(), LineAt(10) + LineAt(20));
  s.Print();  // form 2
  EXPECT_DOUBLE_EQ(s.CurrentY(), LineAt(10) + 2 * LineAt(20));

  const auto texts = testing::Texts(s.Ops());
  ASSERT_EQ(texts.size(), 2u);
  EXPECT_DOUBLE_EQ(texts[1].x, 1000 + aa);  // "B" follows "Aa" on its line
  EXPECT_EQ(texts[1].size, 20);
}

TEST(Surface, CrLfTextDrawsSeveralLinesFromTheLeftEdge) {
  PreviewSurface s;
  s.CurrentX(3050);
  s.CurrentY(100);
  s.Print("one\r\ntwo\r\n\r\nfour");
  const auto texts = testing::Texts(s.Ops());
  ASSERT_EQ(texts.size(), 3u);  // the empty third line draws nothing
  EXPECT_EQ(texts[0].x, 3050);
  EXPECT_EQ(texts[1].x, 0);
  EXPECT_DOUBLE_EQ(texts[1].y, 100 + LineAt(10));
  EXPECT_DOUBLE_EQ(texts[2].y, 100 + 3 * LineAt(10));
  EXPECT_DOUBLE_EQ(s.CurrentY(), 100 + 4 * LineAt(10));
}

TEST(Surface, LineFormsAndEndPoint) {
  PreviewSurface s;
  s.Print("inside");
  s.Line(20, 0, 0, 2000, 500, 0);
  s.Line(4, 10, 20, 30, 40, 0);
  EXPECT_EQ(s.CurrentX(), 30);
  EXPECT_EQ(s.CurrentY(), 40);
  ASSERT_EQ(s.Ops().size(), 3u);
  EXPECT_TRUE(std::holds_alternative<TextOp>(s.Ops()[0]));  // the box does not cover the text
  EXPECT_EQ(std::get<BoxOp>(s.Ops()[1]), (BoxOp{0, 0, 2000, 500}));
  EXPECT_EQ(std::get<LineOp>(s.Ops()[2]), (LineOp{10, 20, 30, 40}));
  EXPECT_THROW(s.Line(5, 0, 0, 1, 1, 0), AutomationError);
}

TEST(Surface, MissingMembersRaise438InvalidUtf8IsRefusedAndPreviewEndDocIsHarmless) {
  PreviewSurface s;
  try {
    s.NewPage();
    FAIL() << "a preview has no NewPage";
  } catch (const AutomationError& e) {
    EXPECT_EQ(e.Number(), 438);
    EXPECT_EQ(e.Description(), "Object doesn't support this property or method");
  }
  try {
    s.CallByName("Printtempstring");
    FAIL();
  } catch (const AutomationError& e) {
    EXPECT_EQ(e.Number(), 438);
  }
  EXPECT_NO_THROW(s.EndDoc());
  EXPECT_NO_THROW(s.CallByName("enddoc"));
  // Invalid UTF-8 is refused before anything is drawn (a font that is not installed is covered
  // with the other hostile inputs).
  EXPECT_THROW(s.Print("bad \xC3\x28 text"), AutomationError);
  EXPECT_TRUE(s.Ops().empty());
}

TEST(Ops, JsonLinesRoundTwipsToTwoDecimals) {
  EXPECT_EQ(OpToJson(TextOp{1000, 1459.9609375, "Arial", 20, false, "A \"q\""}),
            R"({"op":"text","x":1000,"y":1459.96,"font":"Arial","size":20,"bold":false,"text":"A \"q\""})");
  EXPECT_EQ(OpToJson(LineOp{1000, 229.98046875, 10906, 229.98046875}),
            R"({"op":"line","x1":1000,"y1":229.98,"x2":10906,"y2":229.98})");
  EXPECT_EQ(OpToJson(BoxOp{1, 2, 3, 4}), R"({"op":"box","x1":1,"y1":2,"x2":3,"y2":4})");
  EXPECT_EQ(OpToJson(PageOp{}), R"({"op":"page"})");
  EXPECT_EQ(OpToJson(EndOp{}), R"({"op":"end"})");
  const DrawOp back = OpFromJson(R"({"op":"text","x":5,"y":6,"font":"Arial","size":8.25,"bold":true,"text":"é"})");
  EXPECT_EQ(std::get<TextOp>(back), (TextOp{5, 6, "Arial", 8.25, true, "é"}));
}

}  // namespace
}  // namespace quorvel

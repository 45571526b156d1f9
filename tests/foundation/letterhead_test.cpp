// Company profile and letterhead: Y positions from the line-height rule, the line order, margins.
#include <gtest/gtest.h>

#include "foundation/company_info.hpp"
#include "foundation/preview_surface.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel {
namespace {

using testing::LineAt;

class Letterhead : public ::testing::Test {
 protected:
  void SetUp() override { ModuleCompanyInfo::Profile() = CompanyProfile{}; }
  CompanyProfile& profile() { return ModuleCompanyInfo::Profile(); }
};

TEST_F(Letterhead, FullProfileLinesAndPositions) {
  ClassCompanyInfo info;
  info.SetCompanyInfo("Harbour Tools", "Unit 4", "Quay Road", "", "Port Elm", "Westland", "555-0100",
                      "sales@example.test", "555-0101", "www.example.test", "$", "Dollar");
  PreviewSurface s;
  s.Font().Size(12);  // the caller's size: the two blank lines use it
  s.CurrentY(700);
  ModuleCompanyInfo::PrintLetterhead(s);

  const auto texts = testing::Texts(s.Ops());
  const std::vector<std::string> expected = {"Harbour Tools", "Unit 4", "Quay Road",
                                             "Port Elm, Westland", "Tel: 555-0100", "Fax: 555-0101",
                                             "Email: sales@example.test", "Website: www.example.test"};
  ASSERT_EQ(texts.size(), expected.size());
  const double name_y = 700 + 2 * LineAt(12);
  EXPECT_DOUBLE_EQ(texts[0].y, name_y);
  EXPECT_EQ(texts[0].size, 20);
  for (size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(texts[i].text, expected[i]);
    EXPECT_EQ(texts[i].x, 1000);
    if (i > 0) {
      EXPECT_EQ(texts[i].size, 10);
      EXPECT_DOUBLE_EQ(texts[i].y, name_y + LineAt(20) + (i - 1) * LineAt(10));
    }
  }
  const double rule_y = name_y + LineAt(20) + 7 * LineAt(10);
  const auto lines = testing::Lines(s.Ops());
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0], (LineOp{1000, rule_y, 11906 - 1000, rule_y}));
  EXPECT_DOUBLE_EQ(s.CurrentY(), rule_y + LineAt(10));  // one blank line at 10 pt
  EXPECT_EQ(s.CurrentX(), 0);
  EXPECT_EQ(s.Font().Size(), 12);  // restored
}

TEST_F(Letterhead, OnlyNameAndOptionalLineRules) {
  PreviewSurface s;
  ModuleCompanyInfo::PrintLetterhead(s);  // before any SetCompanyInfo: empty name line, rule
  EXPECT_TRUE(testing::Texts(s.Ops()).empty());
  ASSERT_EQ(testing::Lines(s.Ops()).size(), 1u);
  EXPECT_DOUBLE_EQ(testing::Lines(s.Ops())[0].y1, 2 * LineAt(10) + LineAt(20));

  ClassCompanyInfo info;
  info.SetCompanyInfo("Name", "", "", "", "", "Westland", "", "", "555-0101", "", "", "");
  PreviewSurface t;
  ModuleCompanyInfo::PrintLetterhead(t);
  EXPECT_TRUE(testing::HasText(t.Ops(), "Westland"));  // country alone when City is empty
  EXPECT_TRUE(testing::HasText(t.Ops(), "Fax: 555-0101"));
  EXPECT_EQ(testing::Texts(t.Ops()).size(), 3u);  // no "Tel: " line for an empty phone

  profile().City = "Port Elm";
  profile().Country = "";
  profile().Address1 = " ";  // blanks are not empty
  PreviewSurface u;
  ModuleCompanyInfo::PrintLetterhead(u);
  EXPECT_TRUE(testing::HasText(u.Ops(), "Port Elm"));
  EXPECT_TRUE(testing::HasText(u.Ops(), " "));
}

TEST_F(Letterhead, TopMarginMovesTheHeadAndTheBottomReserve) {
  EXPECT_EQ(profile().BottomReserve, 0);  // no ClassCompanyInfo yet
  ClassCompanyInfo info;
  EXPECT_EQ(profile().BottomReserve, 5500);
  info.SetTopMargin(1000);
  EXPECT_EQ(profile().TopMargin, 1000);
  EXPECT_EQ(profile().BottomReserve, 4500);
  PreviewSurface s;  // a head without letterhead: twelve blank lines under the margin, no ink
  StartDocumentHead(s, false);
  EXPECT_DOUBLE_EQ(s.CurrentY(), 1000 + 12 * LineAt(10));
  EXPECT_TRUE(s.Ops().empty());
  ClassCompanyInfo second;  // restores the reserve, keeps the shifted top
  EXPECT_EQ(profile().TopMargin, 1000);
  EXPECT_EQ(profile().BottomReserve, 5500);
  info.SetTopMargin(2000);
  info.SetTopMargin(0);  // always computed from 5500
  EXPECT_EQ(profile().TopMargin, 0);
  EXPECT_EQ(profile().BottomReserve, 5500);
}

}  // namespace
}  // namespace quorvel

// The page flow's rules: lines while they fit, never an empty page, page numbers and page breaks.
#include <gtest/gtest.h>

#include "foundation/page_flow.hpp"
#include "foundation/preview_surface.hpp"
#include "support/documents_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel {
namespace {

using testing::HasText;

// A preview that says it breaks pages and counts the breaks, as a printer would make them.
struct PagedPreview : PreviewSurface {
  bool BreaksPages() const override { return true; }
  void NewPage() override { ++new_pages; }
  int new_pages = 0;
};

// With the reserve of 5500 on A4 the foot lies at 11338. The head puts the table top at 1000;
// every line moves down by `advance` and the flow adds 100 under it.
class PageFlowTest : public ::testing::Test {
 protected:
  void SetUp() override { testing::ResetProfile(); }

  PageFlow Flow(Surface& surface, int32_t count, double height, double advance) {
    PageFlow flow;
    flow.head = [&surface, this] {
      ++heads;
      surface.CurrentY(1000);
    };
    LineSection lines;
    lines.count = count;
    lines.estimated_height = [height](int32_t) { return height; };
    lines.print = [&surface, advance, this](int32_t index) {
      printed.push_back({index, surface.CurrentY()});
      surface.CurrentY(surface.CurrentY() + advance);
    };
    flow.sections.push_back(lines);
    return flow;
  }

  int heads = 0;
  std::vector<std::pair<int32_t, double>> printed;  // index and the y it started at
};

TEST_F(PageFlowTest, LinesFillEachPageWhileTheyFitAndOnlyAPrinterBreaksPages) {
  // Lines start at 1000, 4100, 7200, 10300: the fourth ends at 11300, below the foot of 11338;
  // a fifth at 13400 would not. Ten lines make pages of 4, 4 and 2.
  PagedPreview paged;
  EXPECT_EQ(RunPageFlow(paged, Flow(paged, 10, 1000, 3000)), 3);
  EXPECT_EQ(heads, 3);
  EXPECT_EQ(paged.new_pages, 2);
  ASSERT_EQ(printed.size(), 10u);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(printed[i].first, i + 1);
    EXPECT_DOUBLE_EQ(printed[i].second, 1000 + (i % 4) * 3100) << i;
  }
  for (const char* label : {"Page 1", "Page 2", "Page 3"}) EXPECT_TRUE(HasText(paged.Ops(), label)) << label;

  // A preview gets the same pages drawn over each other and no NewPage (it has none).
  PreviewSurface preview;
  printed.clear();
  EXPECT_EQ(RunPageFlow(preview, Flow(preview, 10, 1000, 3000)), 3);
  EXPECT_EQ(printed.size(), 10u);
  EXPECT_TRUE(HasText(preview.Ops(), "Page 3"));
}

TEST_F(PageFlowTest, OnePageIsNotNumberedUnlessAskedAndAnEmptyListStillGetsItsPage) {
  PagedPreview surface;
  EXPECT_EQ(RunPageFlow(surface, Flow(surface, 0, 1000, 3000)), 1);
  EXPECT_EQ(heads, 1);
  EXPECT_TRUE(printed.empty());
  EXPECT_EQ(testing::CountOps(surface.Ops(), "text"), 0);

  PageFlow numbered = Flow(surface, 2, 1000, 3000);
  numbered.numbering.always = true;
  numbered.first_page = 7;
  numbered.numbering.label = [](int16_t page) { return "Sheet " + std::to_string(page); };
  EXPECT_EQ(RunPageFlow(surface, numbered), 7);
  EXPECT_TRUE(HasText(surface.Ops(), "Sheet 7"));
  EXPECT_EQ(surface.new_pages, 0);
}

TEST_F(PageFlowTest, ALineTallerThanAPageGetsAPageOfItsOwnAndTheFlowEnds) {
  // Every line claims 20000, more than any page holds: each is printed first on a page of its
  // own, past the foot, instead of asking for an empty page forever.
  PagedPreview surface;
  EXPECT_EQ(RunPageFlow(surface, Flow(surface, 3, 20000, 500)), 3);
  ASSERT_EQ(printed.size(), 3u);
  for (const auto& [index, y] : printed) EXPECT_DOUBLE_EQ(y, 1000) << index;
  EXPECT_EQ(surface.new_pages, 2);
}

TEST_F(PageFlowTest, ALineEndingExactlyAtTheFootFitsOnlyWhereTheDocumentSaysSo) {
  // The first line moves the pen to 10138, plus 100: the second starts at 10238 and, 1100
  // high, ends at the foot of 11338 exactly.
  for (bool fits_at_limit : {true, false}) {
    PagedPreview surface;
    printed.clear();
    PageFlow flow = Flow(surface, 2, 1100, 9138);
    flow.fits_at_limit = fits_at_limit;
    EXPECT_EQ(RunPageFlow(surface, flow), fits_at_limit ? 1 : 2);
    ASSERT_EQ(printed.size(), 2u);
    EXPECT_DOUBLE_EQ(printed[1].second, fits_at_limit ? 10238 : 1000);
  }
}

TEST_F(PageFlowTest, ASectionIsAskedOnEveryPageWhetherToEnter) {
  // Goods of 6 (pages of 4 and 2), then a second section that refuses a full page: it starts
  // on the second page, after the goods.
  PagedPreview surface;
  PageFlow flow = Flow(surface, 6, 1000, 3000);
  std::vector<bool> asked;
  LineSection extra;
  extra.count = 1;
  extra.estimated_height = [](int32_t) { return 1000.0; };
  extra.print = [&](int32_t) { printed.push_back({100, surface.CurrentY()}); };
  extra.enter = [&](bool page_full) {
    asked.push_back(page_full);
    return !page_full;
  };
  flow.sections.push_back(extra);
  EXPECT_EQ(RunPageFlow(surface, flow), 2);
  EXPECT_EQ(asked, (std::vector<bool>{true, false}));
  ASSERT_EQ(printed.size(), 7u);
  EXPECT_EQ(printed.back().first, 100);
  EXPECT_DOUBLE_EQ(printed.back().second, 1000 + 2 * 3100);
}

}  // namespace
}  // namespace quorvel

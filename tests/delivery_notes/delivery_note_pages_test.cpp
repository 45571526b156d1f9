// Delivery notes over several pages: where a page breaks, page numbers, and printed PDFs.
#include <gtest/gtest.h>

#include <cmath>

#include "delivery_notes/delivery_note_printer.hpp"
#include "foundation/company_info.hpp"
#include "foundation/printer_surface.hpp"
#include "support/notes_receipts_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel {
namespace {

using testing::AllTexts;
using testing::FindText;
using testing::HasText;
using testing::LineAt;

class DeliveryNotePages : public ::testing::Test {
 protected:
  void SetUp() override {
    ModuleCompanyInfo::Profile() = CompanyProfile{};
    ClassCompanyInfo reserve;
  }

  // Lines with empty descriptions: each takes one line plus the 100 added after it, and its
  // height estimate is 0.
  static void AddLines(ClassDeliveryNote& note, int count, const std::string& description = "") {
    for (int i = 0; i < count; ++i) {
      auto item = std::make_shared<ClassInvoiceItem>();
      item->ItemName = "Line" + std::to_string(note.items()->Count() + 1);
      item->Description = description;
      note.AddItem(item);
    }
  }

  const double L = LineAt(10);
  // Twelve blank lines, two for the number block, two blank, the address block of six, the
  // invoice row, two blank, the captions: the first row starts 26 lines down.
  const double first_row = 26 * L;
  const double limit = 16838 - 5500;
  // The largest i with first_row + (i − 1)(L + 100) ≤ limit: a row may start on the limit.
  const int per_page = static_cast<int>(std::floor((limit - first_row) / (L + 100))) + 1;
};

TEST_F(DeliveryNotePages, AFullPageBreaksBeforeTheLineThatStartsPastTheFoot) {
  ASSERT_EQ(per_page, 17);  // (11338 − 5979.49) / 329.98 = 16.2
  ClassDeliveryNote one_page;
  AddLines(one_page, per_page);
  PreviewSurface a;
  ClassDeliveryNotePrinter().PrintDeliveryNote(a, one_page, false);
  EXPECT_FALSE(HasText(a.Ops(), "Page 1"));  // a one-page note carries no number

  ClassDeliveryNote two_pages;
  AddLines(two_pages, per_page + 1);
  PreviewSurface b;
  ClassDeliveryNotePrinter().PrintDeliveryNote(b, two_pages, false);
  const DrawOps& ops = b.Ops();
  EXPECT_EQ(testing::CountOps(ops, "page"), 0);  // a preview gets no NewPage: pages overprint
  EXPECT_DOUBLE_EQ(FindText(ops, "Line17").y, first_row + 16 * (L + 100));
  EXPECT_DOUBLE_EQ(FindText(ops, "Line18").y, first_row);  // top of the second page
  EXPECT_EQ(FindText(ops, "18").x, 1000);                  // the serial number runs on
  EXPECT_EQ(AllTexts(ops, "S.No").size(), 2u);
  // Both pages are numbered at the foot, four lines under the limit, in 8 pt.
  PreviewSurface measure;
  measure.Font().Size(8);
  for (const char* label : {"Page 1", "Page 2"}) {
    const TextOp number = FindText(ops, label);
    EXPECT_EQ(number.size, 8);
    EXPECT_DOUBLE_EQ(number.x, 11906 - 1000 - measure.TextWidth("Page xx"));
    EXPECT_DOUBLE_EQ(number.y, limit + 4 * L);
  }
  EXPECT_FALSE(HasText(ops, "Page 3"));
  EXPECT_EQ(AllTexts(ops, "Notes:").size(), 1u);  // the footer follows the last page only
}

TEST_F(DeliveryNotePages, TheHeightEstimateIsTheDescriptionWidthOver4400) {
  PreviewSurface measure;
  const double last_start = first_row + (per_page - 1) * (L + 100);
  const double room = limit - last_start;  // about 79
  const std::string narrow = "Bolt", wide = "Galvanised steel brackets";
  ASSERT_LT(L * measure.TextWidth(narrow) / 4400, room);
  ASSERT_GT(L * measure.TextWidth(wide) / 4400, room);
  ASSERT_LT(measure.TextWidth(wide), 4400 - measure.TextWidth("W"));  // still one wrapped line

  for (const auto& [description, pages] : {std::pair{narrow, 1}, std::pair{wide, 2}}) {
    ClassDeliveryNote note;
    AddLines(note, per_page - 1);
    AddLines(note, 1, description);
    PreviewSurface surface;
    ClassDeliveryNotePrinter().PrintDeliveryNote(surface, note, false);
    const TextOp last = FindText(surface.Ops(), "Line17");
    EXPECT_DOUBLE_EQ(last.y, pages == 1 ? last_start : first_row) << description;
    EXPECT_EQ(HasText(surface.Ops(), "Page 2"), pages == 2) << description;
  }
}

TEST_F(DeliveryNotePages, ALineThatFitsNoPageIsPrintedRatherThanLoopingOnEmptyPages) {
  // The header alone already passes the foot: every page can take only the line it starts with.
  ModuleCompanyInfo::Profile().BottomReserve = 16000;
  ClassDeliveryNote note;
  AddLines(note, 3);
  PreviewSurface surface;
  ClassDeliveryNotePrinter().PrintDeliveryNote(surface, note, false);
  for (const char* text : {"Line1", "Line2", "Line3", "Page 1", "Page 2", "Page 3"})
    EXPECT_TRUE(HasText(surface.Ops(), text)) << text;
  EXPECT_FALSE(HasText(surface.Ops(), "Page 4"));

  // A description taller than a whole page goes on a page of its own and is printed whole.
  ClassCompanyInfo reserve;
  ClassDeliveryNote tall;
  AddLines(tall, 1);
  AddLines(tall, 1, std::string(6000, 'm'));
  PreviewSurface second;
  ClassDeliveryNotePrinter().PrintDeliveryNote(second, tall, false);
  EXPECT_TRUE(HasText(second.Ops(), "Page 2"));
  EXPECT_FALSE(HasText(second.Ops(), "Page 3"));
  size_t printed = 0;
  for (const TextOp& t : testing::Texts(second.Ops()))
    if (t.x == 3050 && t.text.find_first_not_of('m') == std::string::npos) printed += t.text.size();
  EXPECT_EQ(printed, 6000u);
}

TEST_F(DeliveryNotePages, PrintItGivesAPdfPageForEachPage) {
  SystemPrinter().SetPaper(Paper::A4());
  const std::string dir = testing::TempDir("delivery-note-pages");
  SystemPrinter().SetOutput(PrinterOutput::ForPath(dir + "/note.pdf"));
  ClassDeliveryNote note;
  note.printTitle = "Delivery Note";
  AddLines(note, 2 * per_page + 1);  // 17 + 17 + 1
  ClassDeliveryNotePrinter().PrintIt(note, false);
  EXPECT_EQ(SystemPrinter().LastPageCount(), 3);
  const std::string info = testing::RunCommand("pdfinfo " + dir + "/note.pdf");
  EXPECT_EQ(testing::PdfInfoField(info, "Pages"), "3") << info;
  const std::string text = testing::RunCommand("pdftotext -layout " + dir + "/note.pdf -");
  EXPECT_NE(text.find("Page 3"), std::string::npos);
  EXPECT_NE(text.find("Line35"), std::string::npos);
}

}  // namespace
}  // namespace quorvel

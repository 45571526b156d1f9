// Delivery notes: the data model, the header blocks, captions, rows, frame, footer, pages and PDF.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "delivery_notes/delivery_note_printer.hpp"
#include "foundation/company_info.hpp"
#include "foundation/printer_surface.hpp"
#include "support/documents_helpers.hpp"

namespace quorvel {
namespace {

using testing::AllTexts;
using testing::EndOf;
using testing::ExpectAt;
using testing::FindText;
using testing::HasText;
using testing::LineAt;
using testing::Measure;

const double L = LineAt(10);
const double y0 = 12 * L;  // top margin 0 and twelve blank lines instead of a letterhead
// Under the header and the captions' rule (y0 + 13 lines) the rows start.
const double kFirstRow = y0 + 14 * L;
constexpr double kLimit = 16838 - 5500;

std::shared_ptr<ClassInvoiceItem> Item(std::string name, std::string qty, std::string unit, std::string pkg,
                                       std::string description = "") {
  return testing::Share(ClassInvoiceItem{
      .ItemName = name, .Quantity = qty, .Description = description, .Unit = unit, .PKG = pkg});
}

TEST(DeliveryNoteModel, StartsWithBillingOnAndKeepsTheHostsItemsInOrder) {
  ClassDeliveryNote note;
  EXPECT_TRUE(note.hasBilling);
  EXPECT_FALSE(note.PrintFooter);
  EXPECT_TRUE(ClassDeliveryNotePrinter().printItemsTable);
  const auto items = note.items();
  ASSERT_NE(items, nullptr);
  EXPECT_EQ(items->Count(), 0);
  auto first = Item("A", "1", "", ""), second = Item("B", "2", "", "");
  note.AddItem(first);
  note.AddItem(second);
  note.AddItem(first);
  EXPECT_EQ(note.items(), items);  // the same list on every read
  ASSERT_EQ(items->Count(), 3);
  EXPECT_EQ(items->Item(2), second);
  EXPECT_EQ(items->Item(3), first);

  auto own = std::make_shared<Collection<ClassInvoiceItem>>();
  note.items(own);
  note.AddItem(first);
  EXPECT_EQ(note.items(), own);
  EXPECT_EQ(own->Count(), 1);
}

class DeliveryNoteLayout : public ::testing::Test {
 protected:
  void SetUp() override { testing::ResetProfile(); }

  static ClassDeliveryNote Note(int items) {
    ClassDeliveryNote note;
    note.printTitle = "Delivery Note";
    note.NumberTitle = "Note No.";
    note.NoteNumber = "DN-7";
    note.NoteDate = "03/15/2024";
    note.InvoiceNumber = "INV-31";
    note.Billing1 = "Harbour Fittings";
    note.Billing2 = "12 Quay Road";
    note.CustomerNote1 = "Deliver with care";
    for (int i = 1; i <= items; ++i) note.AddItem(Item("P" + std::to_string(i), "3", "Each", "Box"));
    return note;
  }

  static DrawOps Printed(ClassDeliveryNote& note, double width = 11906) {
    PreviewSurface surface(width, 16838);
    ClassDeliveryNotePrinter().PrintDeliveryNote(surface, note, false);
    return surface.Ops();
  }
};

TEST_F(DeliveryNoteLayout, HeaderBlocksFollowOneAnother) {
  ClassDeliveryNote note = Note(1);
  const DrawOps ops = Printed(note);
  const TextOp title = FindText(ops, "Delivery Note");
  ExpectAt(title, 1000, y0);
  EXPECT_EQ(title.size, 24);
  const double xn = 11906 - 1000 - 1400, xd = xn - 1515;
  ExpectAt(FindText(ops, " Note No."), xn, y0);
  ExpectAt(FindText(ops, " DN-7"), xn, y0 + L);
  ExpectAt(FindText(ops, " Date"), xd, y0);
  ExpectAt(FindText(ops, " 03/15/2024"), xd, y0 + L);
  // Two blank lines under the block, then the bold caption and the address from x 1000.
  const TextOp deliver = FindText(ops, "Deliver To:");
  ExpectAt(deliver, 1000, y0 + 4 * L);
  EXPECT_TRUE(deliver.bold);
  ExpectAt(FindText(ops, "12 Quay Road"), 1000, y0 + 6 * L);
  // The invoice row comes after the five address lines: caption 1500 + 1400 in from the right
  // margin, number in the number column; two blank lines, then the captions.
  ExpectAt(FindText(ops, "Invoice No."), 11906 - 1000 - 1500 - 1400, y0 + 10 * L);
  ExpectAt(FindText(ops, " INV-31"), xn, y0 + 10 * L);
  EXPECT_DOUBLE_EQ(FindText(ops, "S.No").y, y0 + 13 * L);

  // Without billing the address block is left out and the rest moves up six lines.
  note.hasBilling = false;
  const DrawOps bare = Printed(note);
  EXPECT_FALSE(HasText(bare, "Deliver To:") || HasText(bare, "Harbour Fittings"));
  EXPECT_DOUBLE_EQ(FindText(bare, "Invoice No.").y, y0 + 4 * L);
  EXPECT_DOUBLE_EQ(FindText(bare, "S.No").y, y0 + 7 * L);
}

TEST_F(DeliveryNoteLayout, CaptionsAreCentredOnTheirColumnAnchors) {
  for (double width : {11906.0, 12240.0}) {
    ClassDeliveryNote note = Note(1);
    const DrawOps ops = Printed(note, width);
    const double y = y0 + 13 * L;
    const std::pair<const char*, double> captions[] = {
        {"S.No", 1000 + 650 / 2}, {"Item", 1650 + 1400 / 2},
        // Over a 4400 column starting with the item column, not over the text that starts at 3050.
        {"Description", 1650 + 4400 / 2}, {"Package", 7450 + 1300 / 2}, {"Unit", 8750 + 1000 / 2},
        {"Qty", std::floor((width - 1000 - 9750) / 2) + 9750}};  // 10328 on A4, 10495 on Letter
    for (const auto& [caption, anchor] : captions)
      ExpectAt(FindText(ops, caption), anchor - std::floor(Measure(caption) / 2), y);
    EXPECT_EQ(testing::Lines(ops).front(), (LineOp{1000, y + L, width - 1000, y + L}));
  }
}

TEST_F(DeliveryNoteLayout, RowsPrintEachFieldFittedInItsColumn) {
  ClassDeliveryNote note = Note(0);
  note.AddItem(Item("BOLT-12", "1,250", "Carton", "Pallet 4", "Zinc bolts"));
  // The second row's fields are each just wider than their length: cut to it.
  const std::string wide[] = {testing::JustWider(1400), testing::JustWider(1300), testing::JustWider(1000),
                              testing::JustWider(1470)};
  note.AddItem(Item(wide[0], wide[3], wide[2], wide[1]));
  const DrawOps ops = Printed(note);
  ExpectAt(FindText(ops, "1"), 1000, kFirstRow);  // the serial number counts the lines from 1
  ExpectAt(FindText(ops, "BOLT-12"), 1650, kFirstRow);
  ExpectAt(FindText(ops, "Zinc bolts"), 3050, kFirstRow);
  ExpectAt(FindText(ops, "Pallet 4"), 7450, kFirstRow);
  ExpectAt(FindText(ops, "Carton"), 8750, kFirstRow);
  ExpectAt(FindText(ops, "1,250"), 11906 - 1000 - Measure("1,250"), kFirstRow);

  const std::string quantity = testing::Fitted(wide[3], 1470);
  ASSERT_NE(quantity, wide[3]);
  const std::pair<double, std::string> cells[] = {{1000, "2"}, {1650, testing::Fitted(wide[0], 1400)},
      {7450, testing::Fitted(wide[1], 1300)}, {8750, testing::Fitted(wide[2], 1000)},
      {11906 - 1000 - Measure(quantity), quantity}};
  std::vector<TextOp> row;
  for (const TextOp& t : testing::Texts(ops))
    if (t.y == kFirstRow + L + 100) row.push_back(t);
  ASSERT_EQ(row.size(), 5u);
  for (size_t k = 0; k < 5; ++k) {
    EXPECT_EQ(row[k].text, cells[k].second);
    EXPECT_DOUBLE_EQ(row[k].x, cells[k].first) << cells[k].second;
  }
}

TEST_F(DeliveryNoteLayout, DescriptionsWrapTo4400FromX3050) {
  ClassDeliveryNote note = Note(0);
  std::string description;
  for (int i = 0; i < 30; ++i) description += (i ? " word" : "word") + std::to_string(i);
  note.AddItem(Item("W", "1", "Each", "Box", description));
  note.AddItem(Item("Next", "1", "Each", "Box"));
  const DrawOps ops = Printed(note);

  const std::vector<std::string> expected = testing::Wrapped(description, 4400);
  ASSERT_GE(expected.size(), 3u);
  for (size_t i = 0; i < expected.size(); ++i) ExpectAt(FindText(ops, expected[i]), 3050, kFirstRow + i * L);
  // The next row starts under the last description line, 100 further down.
  EXPECT_DOUBLE_EQ(FindText(ops, "Next").y, kFirstRow + expected.size() * L + 100);
}

TEST_F(DeliveryNoteLayout, FrameRulesTheColumnsAndBoxesTheHeaderBlocks) {
  ClassDeliveryNote note = Note(2);
  const DrawOps ops = Printed(note);
  const double top = y0 + 13 * L;
  for (double x : {1000, 1650, 3050, 7450, 8750, 9750, 10906})
    EXPECT_TRUE(testing::HasLine(ops, x, top, x, kLimit)) << x;
  const auto boxes = testing::Boxes(ops);
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_EQ(boxes[0], (BoxOp{11906 - 1000 - 1400 - 1515, y0, 11906 - 1000, y0 + 500}));
  EXPECT_DOUBLE_EQ(boxes[1].y1, y0 + 10 * L);
  EXPECT_DOUBLE_EQ(boxes[1].y2, y0 + 10 * L + 250);
  // Each box holds its texts whole.
  for (const char* text : {" Date", " 03/15/2024", " Note No.", " DN-7", "Invoice No.", " INV-31"}) {
    const TextOp t = FindText(ops, text);
    const BoxOp& box = t.y < y0 + 5 * L ? boxes[0] : boxes[1];
    EXPECT_TRUE(t.x >= box.x1 && EndOf(t) <= box.x2 && t.y >= box.y1 && t.y + L <= box.y2) << text;
  }

  // A number wider than its column is printed whole: it starts further left so that it ends at
  // the right margin, the row's divider moving with it, and never over its caption.
  note.InvoiceNumber = "INV-2026-11873";
  const DrawOps wide = Printed(note);
  const TextOp number = FindText(wide, " INV-2026-11873");
  const double width = Measure(" INV-2026-11873");
  ASSERT_GT(width, 1400);
  EXPECT_DOUBLE_EQ(number.x, 11906 - 1000 - width);
  EXPECT_GE(number.x, EndOf(FindText(wide, "Invoice No.")));
  EXPECT_TRUE(testing::HasLine(wide, number.x, number.y, number.x, number.y + 250));

  ClassDeliveryNotePrinter bare;
  bare.printItemsTable = false;
  PreviewSurface surface;
  bare.PrintDeliveryNote(surface, note, false);
  EXPECT_TRUE(testing::Boxes(surface.Ops()).empty());
  EXPECT_EQ(testing::Lines(surface.Ops()).size(), 1u);  // only the rule under the captions

  // A note without items prints no captions, but its frame and both boxes.
  ClassDeliveryNote empty = Note(0);
  const DrawOps none = Printed(empty);
  for (const char* caption : {"S.No", "Item", "Description", "Package", "Unit", "Qty", "1"})
    EXPECT_FALSE(HasText(none, caption)) << caption;
  EXPECT_FALSE(testing::Lines(none).empty());
  EXPECT_EQ(testing::Boxes(none).size(), 2u);
}

TEST(CrossingCheck, SeesARuleThroughATextButNotOneAlongItsEdge) {
  PreviewSurface s;
  s.CurrentX(1000);
  s.CurrentY(1000);
  s.Print("Text");
  s.Line(4, 900, 1000, 3000, 1000, 0);   // along the top edge
  s.Line(4, 1000, 500, 1000, 2000, 0);   // along the left edge
  EXPECT_TRUE(testing::RulesCrossingTexts(s.Ops()).empty());
  s.Line(4, 1050, 500, 1050, 2000, 0);   // through the first letter
  EXPECT_EQ(testing::RulesCrossingTexts(s.Ops()).size(), 1u);
  s.Line(20, 900, 1100, 3000, 3000, 0);  // a box whose top runs through it
  EXPECT_EQ(testing::RulesCrossingTexts(s.Ops()).size(), 2u);
}

TEST_F(DeliveryNoteLayout, NoRuleCrossesAnyText) {
  testing::ResetProfileWithCompany();
  ClassDeliveryNote note = Note(3);
  note.PrintFooter = true;
  note.Employee = "Dana Whitlock";
  note.AddItem(Item("LONG", "2", "Carton", "Crate", std::string(300, 'x')));
  PreviewSurface surface;
  ClassDeliveryNotePrinter().PrintDeliveryNote(surface, note, true);
  EXPECT_EQ(testing::RulesCrossingTexts(surface.Ops()), std::vector<std::string>{});
}

TEST_F(DeliveryNoteLayout, FooterPrintsNotesAndSignatures) {
  ClassDeliveryNote note = Note(1);
  note.CustomerNote2 = "Do not return";
  note.PrintFooter = true;
  note.Employee = "Dana Whitlock";
  const DrawOps ops = Printed(note);
  const TextOp notes = FindText(ops, "Notes:");
  EXPECT_TRUE(notes.bold);
  ExpectAt(notes, 1000, kLimit + L);
  ExpectAt(FindText(ops, "Deliver with care"), 1000, kLimit + 2 * L);
  ExpectAt(FindText(ops, "Do not return"), 1000, kLimit + 3 * L);
  // Third note (empty), two blank lines, then the signatures.
  const double sign_y = kLimit + 7 * L;
  const double delivered = Measure("Delivered By"), received = Measure("Received By");
  ExpectAt(FindText(ops, "Delivered By"), 1000, sign_y);
  ExpectAt(FindText(ops, "Received By"), 11906 - 1000 - 3 * received - 100, sign_y);
  const auto lines = testing::Lines(ops);
  const LineOp& before = lines[lines.size() - 2];
  EXPECT_EQ(before, (LineOp{1000 + delivered + 100, sign_y + L, 1000 + 3 * delivered + 100, sign_y + L}));
  EXPECT_DOUBLE_EQ(lines.back().x2, 11906 - 1000);
  ExpectAt(FindText(ops, "Dana Whitlock"), before.x1, sign_y + L);

  note.PrintFooter = false;
  const DrawOps plain = Printed(note);
  EXPECT_TRUE(HasText(plain, "Notes:"));
  EXPECT_FALSE(HasText(plain, "Delivered By") || HasText(plain, "Dana Whitlock"));
}

// Lines with empty descriptions: each takes one line plus the 100 added after it, and its
// height estimate is 0.
void AddLines(ClassDeliveryNote& note, int count, const std::string& description = "") {
  for (int i = 0; i < count; ++i)
    note.AddItem(Item("Line" + std::to_string(note.items()->Count() + 1), "", "", "", description));
}

class DeliveryNotePages : public DeliveryNoteLayout {
 protected:
  // Twelve blank lines, two for the number block, two blank, the address block of six, the
  // invoice row, two blank, the captions: the first row starts 26 lines down.
  const double first_row = 26 * L;
  // The largest i with first_row + (i − 1)(L + 100) ≤ limit: a row may start on the limit.
  const int per_page = static_cast<int>(std::floor((kLimit - first_row) / (L + 100))) + 1;
};

TEST_F(DeliveryNotePages, AFullPageBreaksBeforeTheLineThatStartsPastTheFoot) {
  ASSERT_EQ(per_page, 17);  // (11338 − 5979.49) / 329.98 = 16.2
  ClassDeliveryNote one_page;
  AddLines(one_page, per_page);
  EXPECT_FALSE(HasText(Printed(one_page), "Page 1"));  // a one-page note carries no number

  ClassDeliveryNote two_pages;
  AddLines(two_pages, per_page + 1);
  const DrawOps ops = Printed(two_pages);
  EXPECT_EQ(testing::CountOps(ops, "page"), 0);  // a preview gets no NewPage: pages overprint
  EXPECT_DOUBLE_EQ(FindText(ops, "Line17").y, first_row + 16 * (L + 100));
  EXPECT_DOUBLE_EQ(FindText(ops, "Line18").y, first_row);  // top of the second page
  EXPECT_EQ(FindText(ops, "18").x, 1000);                  // the serial number runs on
  EXPECT_EQ(AllTexts(ops, "S.No").size(), 2u);
  // Both pages are numbered at the foot, four lines under the limit, in 8 pt.
  for (const char* label : {"Page 1", "Page 2"}) {
    const TextOp number = FindText(ops, label);
    EXPECT_EQ(number.size, 8);
    ExpectAt(number, 11906 - 1000 - Measure("Page xx", 8), kLimit + 4 * L);
  }
  EXPECT_FALSE(HasText(ops, "Page 3"));
  EXPECT_EQ(AllTexts(ops, "Notes:").size(), 1u);  // the footer follows the last page only
}

TEST_F(DeliveryNotePages, TheHeightEstimateIsTheDescriptionWidthOver4400) {
  // The last line of a full page gets a description; the foot is put where its width / 4350
  // lines are left under it (it fits), then where width / 4450 are (it moves).
  const std::string description = "Galvanised steel brackets";
  const double last_start = first_row + (per_page - 1) * (L + 100), w = Measure(description);
  for (const auto& [divisor, moves] : {std::pair{4350.0, false}, std::pair{4450.0, true}}) {
    ModuleCompanyInfo::Profile().BottomReserve = 16838 - (last_start + L * w / divisor);
    ClassDeliveryNote note;
    AddLines(note, per_page - 1);
    AddLines(note, 1, description);
    const DrawOps ops = Printed(note);
    EXPECT_DOUBLE_EQ(FindText(ops, "Line17").y, moves ? first_row : last_start) << divisor;
    EXPECT_EQ(HasText(ops, "Page 2"), moves) << divisor;
  }
}

TEST_F(DeliveryNotePages, ALineThatFitsNoPageIsPrintedRatherThanLoopingOnEmptyPages) {
  // The header alone already passes the foot: every page can take only the line it starts with.
  ModuleCompanyInfo::Profile().BottomReserve = 16000;
  ClassDeliveryNote note;
  AddLines(note, 3);
  const DrawOps ops = Printed(note);
  for (const char* text : {"Line1", "Line2", "Line3", "Page 1", "Page 2", "Page 3"})
    EXPECT_TRUE(HasText(ops, text)) << text;
  EXPECT_FALSE(HasText(ops, "Page 4"));

  // A description taller than a whole page goes on a page of its own and is printed whole.
  ClassCompanyInfo reserve;
  ClassDeliveryNote tall;
  AddLines(tall, 1);
  AddLines(tall, 1, std::string(6000, 'm'));
  const DrawOps second = Printed(tall);
  EXPECT_TRUE(HasText(second, "Page 2"));
  EXPECT_FALSE(HasText(second, "Page 3"));
  size_t printed = 0;
  for (const TextOp& t : testing::Texts(second))
    if (t.x == 3050 && t.text.find_first_not_of('m') == std::string::npos) printed += t.text.size();
  EXPECT_EQ(printed, 6000u);
}

TEST_F(DeliveryNotePages, PrintItGivesAPdfPageForEachPage) {
  SystemPrinter().SetPaper(Paper::A4());
  const std::string pdf = testing::TempDir("delivery-note-pages") + "/note.pdf";
  SystemPrinter().SetOutput(PrinterOutput::ForPath(pdf));
  ClassDeliveryNote note;
  note.printTitle = "Delivery Note";
  AddLines(note, 2 * per_page + 1);  // 17 + 17 + 1
  ClassDeliveryNotePrinter().PrintIt(note, false);
  EXPECT_EQ(SystemPrinter().LastPageCount(), 3);
  EXPECT_EQ(testing::PdfInfoField(testing::RunCommand("pdfinfo " + pdf), "Pages"), "3");
  const std::string text = testing::RunCommand("pdftotext -layout " + pdf + " -");
  EXPECT_NE(text.find("Page 3"), std::string::npos);
  EXPECT_NE(text.find("Line35"), std::string::npos);
}

TEST(DeliveryNoteInvoiceNumber, TwentyCharactersPrintWholeOnEveryPage) {
  testing::ResetProfile();
  ClassDeliveryNote note;
  note.printTitle = "Delivery Note";
  note.InvoiceNumber = "INV-2026-11873-00042";  // 20 characters
  const auto item = testing::MakeItem("GOODS", "");
  for (int i = 0; i < 90; ++i) note.AddItem(item);
  PreviewSurface surface;
  ClassDeliveryNotePrinter().PrintDeliveryNote(surface, note, false);
  const std::vector<DrawOps> pages = testing::PagesOf(surface.Ops(), "Delivery Note");
  ASSERT_GE(pages.size(), 3u);
  for (const DrawOps& page : pages) {
    const TextOp caption = FindText(page, "Invoice No.");
    const TextOp number = FindText(page, " INV-2026-11873-00042");
    EXPECT_DOUBLE_EQ(number.y, caption.y);
    // Wider than the room between its caption and the margin: it starts right after the caption
    // and runs on past the margin rather than losing characters.
    EXPECT_DOUBLE_EQ(number.x, std::max(11906 - 1000 - Measure(number.text), EndOf(caption)));
  }
}

}  // namespace
}  // namespace quorvel

// Delivery notes: the data model, the header blocks, captions, rows, frame and footer.
#include <gtest/gtest.h>

#include <cmath>

#include "delivery_notes/delivery_note_printer.hpp"
#include "foundation/company_info.hpp"
#include "foundation/text_fitting.hpp"
#include "support/notes_receipts_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel {
namespace {

using testing::FindText;
using testing::HasText;
using testing::LineAt;

std::shared_ptr<ClassInvoiceItem> Item(std::string name, std::string qty, std::string unit,
                                       std::string pkg, std::string description) {
  auto item = std::make_shared<ClassInvoiceItem>();
  item->ItemName = std::move(name);
  item->Quantity = std::move(qty);
  item->Unit = std::move(unit);
  item->PKG = std::move(pkg);
  item->Description = std::move(description);
  return item;
}

TEST(DeliveryNoteModel, StartsWithBillingOnAndAnEmptyList) {
  ClassDeliveryNote note;
  EXPECT_TRUE(note.hasBilling);
  EXPECT_FALSE(note.PrintFooter);
  ASSERT_NE(note.items(), nullptr);
  EXPECT_EQ(note.items()->Count(), 0);
  EXPECT_EQ(note.items().get(), note.items().get());  // the same list on every read
  ClassDeliveryNotePrinter printer;
  EXPECT_TRUE(printer.printItemsTable);
}

TEST(DeliveryNoteModel, KeepsTheHostsOwnItemsInOrder) {
  ClassDeliveryNote note;
  auto first = Item("A", "1", "", "", "");
  auto second = Item("B", "2", "", "", "");
  note.AddItem(first);
  note.AddItem(second);
  note.AddItem(first);
  ASSERT_EQ(note.items()->Count(), 3);
  EXPECT_EQ(note.items()->Item(1), first);
  EXPECT_EQ(note.items()->Item(2), second);
  EXPECT_EQ(note.items()->Item(3), first);
  first->ItemName = "changed later";
  EXPECT_EQ(note.items()->Item(1)->ItemName, "changed later");

  auto own = std::make_shared<Collection<ClassInvoiceItem>>();
  own->Add(second);
  note.items(own);
  EXPECT_EQ(note.items(), own);
  note.AddItem(first);
  EXPECT_EQ(own->Count(), 2);
}

class DeliveryNoteLayout : public ::testing::Test {
 protected:
  void SetUp() override {
    ModuleCompanyInfo::Profile() = CompanyProfile{};
    ClassCompanyInfo reserve;  // BottomReserve 5500: the page is full below 16838 − 5500 = 11338
  }

  ClassDeliveryNote Note(int items) {
    ClassDeliveryNote note;
    note.printTitle = "Delivery Note";
    note.NumberTitle = "Note No.";
    note.NoteNumber = "DN-7";
    note.NoteDate = "03/15/2024";
    note.InvoiceNumber = "INV-31";
    note.Billing1 = "Harbour Fittings";
    note.Billing2 = "12 Quay Road";
    note.CustomerNote1 = "Deliver with care";
    for (int i = 1; i <= items; ++i) note.AddItem(Item("P" + std::to_string(i), "3", "Each", "Box", ""));
    return note;
  }

  DrawOps Printed(ClassDeliveryNote& note, double width = 11906) {
    PreviewSurface surface(width, 16838);
    ClassDeliveryNotePrinter printer;
    printer.PrintDeliveryNote(surface, note, false);
    return surface.Ops();
  }

  const double L = LineAt(10);
  const double y0 = 12 * L;  // top margin 0 and twelve blank lines instead of a letterhead
};

TEST_F(DeliveryNoteLayout, HeaderBlocksFollowOneAnother) {
  ClassDeliveryNote note = Note(1);
  const DrawOps ops = Printed(note);
  const TextOp title = FindText(ops, "Delivery Note");
  EXPECT_EQ(title.x, 1000);
  EXPECT_DOUBLE_EQ(title.y, y0);
  EXPECT_EQ(title.size, 24);
  const double xn = 11906 - 1000 - 1400, xd = xn - 1515;
  EXPECT_EQ(FindText(ops, " Note No.").x, xn);
  EXPECT_DOUBLE_EQ(FindText(ops, " Note No.").y, y0);
  EXPECT_DOUBLE_EQ(FindText(ops, " DN-7").y, y0 + L);
  EXPECT_EQ(FindText(ops, " Date").x, xd);
  EXPECT_DOUBLE_EQ(FindText(ops, " 03/15/2024").y, y0 + L);
  // Two blank lines under the block, then the bold caption and the address from x 1000.
  const TextOp deliver = FindText(ops, "Deliver To:");
  EXPECT_EQ(deliver.x, 1000);
  EXPECT_TRUE(deliver.bold);
  EXPECT_DOUBLE_EQ(deliver.y, y0 + 4 * L);
  EXPECT_DOUBLE_EQ(FindText(ops, "12 Quay Road").y, y0 + 6 * L);
  // The invoice row comes after the five address lines: caption 1500 + 1400 in from the right
  // margin, number in the number column.
  const TextOp invoice = FindText(ops, "Invoice No.");
  EXPECT_EQ(invoice.x, 11906 - 1000 - 1500 - 1400);
  EXPECT_DOUBLE_EQ(invoice.y, y0 + 10 * L);
  EXPECT_EQ(FindText(ops, " INV-31").x, xn);
  EXPECT_DOUBLE_EQ(FindText(ops, " INV-31").y, y0 + 10 * L);
  // Two blank lines, then the captions.
  EXPECT_DOUBLE_EQ(FindText(ops, "S.No").y, y0 + 13 * L);
}

TEST_F(DeliveryNoteLayout, WithoutBillingTheAddressBlockIsLeftOut) {
  ClassDeliveryNote note = Note(1);
  note.hasBilling = false;
  const DrawOps ops = Printed(note);
  EXPECT_FALSE(HasText(ops, "Deliver To:"));
  EXPECT_FALSE(HasText(ops, "Harbour Fittings"));
  EXPECT_DOUBLE_EQ(FindText(ops, "Invoice No.").y, y0 + 4 * L);
  EXPECT_DOUBLE_EQ(FindText(ops, "S.No").y, y0 + 7 * L);
}

TEST_F(DeliveryNoteLayout, CaptionsAreCentredOnTheirColumnAnchors) {
  for (double width : {11906.0, 12240.0}) {
    ClassDeliveryNote note = Note(1);
    const DrawOps ops = Printed(note, width);
    PreviewSurface measure;
    const double y = y0 + 13 * L;
    auto expect_at = [&](const std::string& caption, double anchor) {
      const TextOp t = FindText(ops, caption);
      EXPECT_EQ(t.x, anchor - std::floor(measure.TextWidth(caption) / 2)) << caption;
      EXPECT_DOUBLE_EQ(t.y, y) << caption;
    };
    expect_at("S.No", 1000 + 650 / 2);
    expect_at("Item", 1650 + 1400 / 2);
    // Over a 4400 column starting with the item column, not over the text that starts at 3050.
    expect_at("Description", 1650 + 4400 / 2);
    expect_at("Package", 7450 + 1300 / 2);
    expect_at("Unit", 8750 + 1000 / 2);
    expect_at("Qty", std::floor((width - 1000 - 9750) / 2) + 9750);  // 10328 on A4, 10495 on Letter
    const LineOp rule = testing::Lines(ops).front();
    EXPECT_EQ(rule.x1, 1000);
    EXPECT_EQ(rule.x2, width - 1000);
    EXPECT_DOUBLE_EQ(rule.y1, y + L);
  }
}

TEST_F(DeliveryNoteLayout, ARowPrintsEachFieldInItsColumn) {
  ClassDeliveryNote note = Note(0);
  note.AddItem(Item("BOLT-12", "1,250", "Carton", "Pallet 4", "Zinc bolts"));
  const DrawOps ops = Printed(note);
  const double y = y0 + 14 * L;  // the first row starts under the captions' rule
  auto expect_at = [&](const std::string& text, double x) {
    const TextOp t = FindText(ops, text);
    EXPECT_EQ(t.x, x) << text;
    EXPECT_DOUBLE_EQ(t.y, y) << text;
  };
  expect_at("1", 1000);  // the serial number counts the lines from 1
  expect_at("BOLT-12", 1650);
  expect_at("Zinc bolts", 3050);
  expect_at("Pallet 4", 7450);
  expect_at("Carton", 8750);
  EXPECT_DOUBLE_EQ(testing::EndOf(FindText(ops, "1,250")), 11906 - 1000);
  EXPECT_DOUBLE_EQ(FindText(ops, "1,250").y, y);
}

TEST_F(DeliveryNoteLayout, LongFieldsAreShortenedToTheirColumns) {
  ClassDeliveryNote note = Note(0);
  const std::string long_text = "Extraordinarily long field text";
  note.AddItem(Item(long_text, "12345678901234567890", long_text, long_text, ""));
  const DrawOps ops = Printed(note);
  const double y = y0 + 14 * L;
  struct Column { double x, length; };
  for (const Column& c : {Column{1650, 1400}, Column{7450, 1300}, Column{8750, 1000}}) {
    bool found = false;
    for (const TextOp& t : testing::Texts(ops)) {
      if (t.x != c.x || t.y != y) continue;
      found = true;
      EXPECT_LE(testing::WidthOf(t), c.length);
      EXPECT_EQ(t.text.substr(t.text.size() - 3), "...");
    }
    EXPECT_TRUE(found) << "column at " << c.x;
  }
  bool quantity = false;
  for (const TextOp& t : testing::Texts(ops)) {
    if (t.text.rfind("1234", 0) != 0) continue;
    quantity = true;
    EXPECT_LE(testing::WidthOf(t), 1470);
    EXPECT_DOUBLE_EQ(testing::EndOf(t), 11906 - 1000);
  }
  EXPECT_TRUE(quantity);
}

TEST_F(DeliveryNoteLayout, DescriptionsWrapTo4400FromX3050) {
  ClassDeliveryNote note = Note(0);
  std::string description;
  for (int i = 0; i < 30; ++i) description += (i ? " word" : "word") + std::to_string(i);
  note.AddItem(Item("W", "1", "Each", "Box", description));
  note.AddItem(Item("Next", "1", "Each", "Box", ""));
  const DrawOps ops = Printed(note);

  PreviewSurface measure;
  std::string copy = description;
  int16_t width = 4400;
  std::vector<std::string> expected;
  WrapText(measure, copy, width, expected);
  ASSERT_GE(expected.size(), 3u);
  const double y = y0 + 14 * L;
  std::string joined;
  for (size_t i = 0; i < expected.size(); ++i) {
    const TextOp line = FindText(ops, expected[i]);
    EXPECT_EQ(line.x, 3050);
    EXPECT_DOUBLE_EQ(line.y, y + static_cast<double>(i) * L);
    EXPECT_LE(testing::EndOf(line), 3050 + 4400);
    joined += (i ? " " : "") + line.text;
  }
  EXPECT_EQ(joined, description);
  // The next row starts under the last description line, 100 further down.
  EXPECT_DOUBLE_EQ(FindText(ops, "Next").y, y + static_cast<double>(expected.size()) * L + 100);
}

TEST_F(DeliveryNoteLayout, ANoteWithoutItemsPrintsNoCaptionsButItsFrame) {
  ClassDeliveryNote note = Note(0);
  const DrawOps ops = Printed(note);
  for (const char* caption : {"S.No", "Item", "Description", "Package", "Unit", "Qty", "1"})
    EXPECT_FALSE(HasText(ops, caption)) << caption;
  EXPECT_FALSE(testing::Lines(ops).empty());
  EXPECT_EQ(testing::Boxes(ops).size(), 2u);
}

TEST_F(DeliveryNoteLayout, FrameRulesTheColumnsAndBoxesTheHeaderBlocks) {
  ClassDeliveryNote note = Note(2);
  const DrawOps ops = Printed(note);
  const double top = y0 + 13 * L, bottom = 16838 - 5500;
  int verticals = 0;
  for (const LineOp& l : testing::Lines(ops))
    if (l.x1 == l.x2 && l.y1 == top && l.y2 == bottom) ++verticals;
  EXPECT_EQ(verticals, 7);  // 1000, 1650, 3050, 7450, 8750, 9750 and 10906
  const auto boxes = testing::Boxes(ops);
  ASSERT_EQ(boxes.size(), 2u);
  const double xd = 11906 - 1000 - 1400 - 1515;
  EXPECT_EQ(boxes[0].x1, xd);
  EXPECT_DOUBLE_EQ(boxes[0].y1, y0);
  EXPECT_EQ(boxes[0].x2, 11906 - 1000);
  EXPECT_DOUBLE_EQ(boxes[0].y2, y0 + 500);
  EXPECT_DOUBLE_EQ(boxes[1].y1, y0 + 10 * L);
  EXPECT_DOUBLE_EQ(boxes[1].y2, y0 + 10 * L + 250);
  // Each box holds its texts whole.
  for (const char* text : {" Date", " 03/15/2024", " Note No.", " DN-7", "Invoice No.", " INV-31"}) {
    const TextOp t = FindText(ops, text);
    const BoxOp& box = t.y < y0 + 5 * L ? boxes[0] : boxes[1];
    EXPECT_GE(t.x, box.x1) << text;
    EXPECT_LE(testing::EndOf(t), box.x2) << text;
    EXPECT_GE(t.y, box.y1) << text;
    EXPECT_LE(t.y + L, box.y2) << text;
  }

  note.InvoiceNumber = "INV-2024-000031-REV-B-FINAL";
  TextOp long_number;
  for (const TextOp& t : testing::Texts(Printed(note)))
    if (t.text.rfind(" INV-2024", 0) == 0) long_number = t;
  ASSERT_FALSE(long_number.text.empty());
  EXPECT_EQ(long_number.text.substr(long_number.text.size() - 3), "...");
  EXPECT_LE(testing::EndOf(long_number), 11906 - 1000);

  ClassDeliveryNotePrinter bare;
  bare.printItemsTable = false;
  PreviewSurface surface;
  bare.PrintDeliveryNote(surface, note, false);
  EXPECT_TRUE(testing::Boxes(surface.Ops()).empty());
  EXPECT_EQ(testing::Lines(surface.Ops()).size(), 1u);  // only the rule under the captions
}

TEST(CrossingCheck, SeesARuleThroughATextButNotOneAlongItsEdge) {
  PreviewSurface s;
  s.CurrentX(1000);
  s.CurrentY(1000);
  s.Print("Text");
  s.Line(4, 900, 1000, 3000, 1000, 0);                      // along the top edge
  s.Line(4, 1000, 500, 1000, 2000, 0);                      // along the left edge
  EXPECT_TRUE(testing::RulesCrossingTexts(s.Ops()).empty());
  s.Line(4, 1050, 500, 1050, 2000, 0);                      // through the first letter
  EXPECT_EQ(testing::RulesCrossingTexts(s.Ops()).size(), 1u);
  s.Line(20, 900, 1100, 3000, 3000, 0);                     // a box whose top runs through it
  EXPECT_EQ(testing::RulesCrossingTexts(s.Ops()).size(), 2u);
}

TEST_F(DeliveryNoteLayout, NoRuleCrossesAnyText) {
  ClassCompanyInfo().SetCompanyInfo("Northwind Haulage", "4 Mill Lane", "", "", "Easton", "Avalon",
                                    "555-0100", "", "", "", "$", "Dollar");
  ClassDeliveryNote note = Note(3);
  note.PrintFooter = true;
  note.Employee = "Dana Whitlock";
  note.AddItem(Item("LONG", "2", "Carton", "Crate", std::string(300, 'x')));
  PreviewSurface surface;
  ClassDeliveryNotePrinter printer;
  printer.PrintDeliveryNote(surface, note, true);
  const auto crossings = testing::RulesCrossingTexts(surface.Ops());
  EXPECT_TRUE(crossings.empty()) << crossings.front();
}

TEST_F(DeliveryNoteLayout, FooterPrintsNotesAndSignatures) {
  ClassDeliveryNote note = Note(1);
  note.CustomerNote2 = "Do not return";
  note.PrintFooter = true;
  note.Employee = "Dana Whitlock";
  const DrawOps ops = Printed(note);
  const double foot = 16838 - 5500;
  const TextOp notes = FindText(ops, "Notes:");
  EXPECT_TRUE(notes.bold);
  EXPECT_EQ(notes.x, 1000);
  EXPECT_DOUBLE_EQ(notes.y, foot + L);
  EXPECT_DOUBLE_EQ(FindText(ops, "Deliver with care").y, foot + 2 * L);
  EXPECT_DOUBLE_EQ(FindText(ops, "Do not return").y, foot + 3 * L);
  // Third note (empty), two blank lines, then the signatures.
  const double sign_y = foot + 7 * L;
  PreviewSurface measure;
  const double delivered = measure.TextWidth("Delivered By"), received = measure.TextWidth("Received By");
  EXPECT_EQ(FindText(ops, "Delivered By").x, 1000);
  EXPECT_DOUBLE_EQ(FindText(ops, "Delivered By").y, sign_y);
  const TextOp receiver = FindText(ops, "Received By");
  EXPECT_DOUBLE_EQ(receiver.x, 11906 - 1000 - 3 * received - 100);
  EXPECT_DOUBLE_EQ(receiver.y, sign_y);
  const auto lines = testing::Lines(ops);
  const LineOp& last = lines[lines.size() - 1];
  const LineOp& before = lines[lines.size() - 2];
  EXPECT_DOUBLE_EQ(before.x1, 1000 + delivered + 100);
  EXPECT_DOUBLE_EQ(before.x2, 1000 + 3 * delivered + 100);
  EXPECT_DOUBLE_EQ(before.y1, sign_y + L);
  EXPECT_DOUBLE_EQ(last.x2, 11906 - 1000);
  const TextOp employee = FindText(ops, "Dana Whitlock");
  EXPECT_DOUBLE_EQ(employee.x, before.x1);
  EXPECT_DOUBLE_EQ(employee.y, sign_y + L);

  note.PrintFooter = false;
  const DrawOps plain = Printed(note);
  EXPECT_TRUE(HasText(plain, "Notes:"));
  EXPECT_FALSE(HasText(plain, "Delivered By"));
  EXPECT_FALSE(HasText(plain, "Dana Whitlock"));
}

}  // namespace
}  // namespace quorvel

// The demonstration form without a browser: its buttons, the shared picture, "Set Co Info".
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include <nlohmann/json.hpp>

#include "demo/demo_form.hpp"
#include "demo/samples.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::demo {
namespace {

using nlohmann::json;
using testing::LineAt;

// A voucher without letterhead: its title stands twelve 10-point lines below the top margin.
json SmallVoucher() {
  return json::parse(R"({
    "type": "voucher", "printHeader": false,
    "company": {"CompanyName": "Orrin Fieldworks"},
    "printer": {"Title": "DEMO VOUCHER"},
    "document": {"Amount": "10.00", "Number": "PV-1", "PayeeName": "Tamsin Leck"}
  })");
}

class DemoFormTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ModuleCompanyInfo::Profile() = CompanyProfile{};
    saved_dir_ = SamplesDir();
    dir_ = testing::TempDir("demo-form");
    SetSamplesDir(dir_);
  }
  void TearDown() override { SetSamplesDir(saved_dir_); }

  void WriteSample(const std::string& name, const json& sample) {
    std::ofstream(dir_ + "/" + name + ".json") << sample.dump(2);
  }
  // The voucher behind "Voucher", and behind "Statement" the same voucher titled "SECOND TITLE":
  // the button only names the file, and the second print differs from the first by one text.
  void WriteTwoVouchers() {
    WriteSample("voucher", SmallVoucher());
    json other = SmallVoucher();
    other["printer"]["Title"] = "SECOND TITLE";
    WriteSample("statement", other);
  }
  // The y of every "DEMO VOUCHER" title on the picture, in print order.
  static std::vector<double> TitleYs(const DemoForm& form) {
    std::vector<double> ys;
    for (const TextOp& t : testing::Texts(form.PictureOps()))
      if (t.text == "DEMO VOUCHER") ys.push_back(t.y);
    return ys;
  }

  std::string saved_dir_, dir_;
};

TEST_F(DemoFormTest, EightButtonsInTheFormsOrderWithTheirCaptions) {
  std::vector<std::string> controls, captions;
  for (const FormButton& b : FormButtons()) {
    controls.push_back(b.control);
    captions.push_back(b.caption);
  }
  EXPECT_EQ(controls, (std::vector<std::string>{"Command1", "Command2", "Command3", "Command4", "Command5",
                                                "Command6", "Command7", "Command8"}));
  EXPECT_EQ(captions, (std::vector<std::string>{"Voucher", "Invoice", "Set Co Info", "Delivery Note",
                                                "Delivery Note", "Receipt", "Statement", "Checks"}));
  // The two "Delivery Note" buttons print different samples; "Set Co Info" prints none.
  EXPECT_EQ(FormButtons()[3].sample, "delivery_note");
  EXPECT_EQ(FormButtons()[4].sample, "delivery_note_long");
  EXPECT_EQ(FormButtons()[2].sample, "");
}

TEST_F(DemoFormTest, PrintsStackOnOnePictureEachOpOnceInLayersOfTheirOwn) {
  WriteTwoVouchers();
  DemoForm form;
  ASSERT_TRUE(form.Press("Command1").ok);
  const DrawOps voucher = form.PictureOps();
  ASSERT_TRUE(form.Press("Command7").ok);
  // The first print is still there, below; the second print's layer is what it added: its
  // title, and nothing the first had drawn.
  const DrawOps both = form.PictureOps();
  ASSERT_EQ(both.size(), voucher.size() + 1);
  EXPECT_TRUE(std::equal(voucher.begin(), voucher.end(), both.begin()));
  ASSERT_EQ(form.Layers().size(), 2u);
  ASSERT_EQ(form.Layers()[1].ops.size(), 1u);
  EXPECT_EQ(std::get<TextOp>(form.Layers()[1].ops[0]).text, "SECOND TITLE");
  // The page is the printer's A4 page, and the text list tells which print drew each text.
  const json state = form.State();
  EXPECT_EQ(state["width"], 11906);
  EXPECT_EQ(state["height"], 16838);
  std::vector<int> title_prints;
  for (const json& t : state["texts"])
    if (t["size"] == 16) title_prints.push_back(t["print"]);
  EXPECT_EQ(title_prints, (std::vector<int>{1, 2}));

  // A layer is transparent: no white page under it, unlike the whole picture.
  const int second = form.Layers()[1].id;
  const std::string white = "fill:rgb(100%,100%,100%)";
  EXPECT_NE(form.PictureSvg().find(white), std::string::npos);
  EXPECT_EQ(form.LayerSvg(second).find(white), std::string::npos);
  EXPECT_NE(form.LayerSvg(second).find("<use"), std::string::npos);
  EXPECT_THROW(form.LayerSvg(second + 1), AutomationError);
  EXPECT_THROW(form.LayerSvg(0), AutomationError);
  // The texts above the first layer are the second voucher's only.
  std::vector<std::string> titles;
  const json from_second = form.State(second - 1);  // kept: the loop must not walk a temporary's member
  for (const json& t : from_second["texts"]) {
    EXPECT_EQ(t["print"], 2);
    if (t["size"] == 16) titles.push_back(t["text"]);
  }
  EXPECT_EQ(titles, (std::vector<std::string>{"SECOND TITLE"}));
  EXPECT_EQ(form.State(second)["prints"], 2);
  EXPECT_EQ(form.State(second)["layers"].size(), 2u);

  // Three hundred more presses of the two add nothing; the count of prints goes on.
  for (int i = 0; i < 300; ++i) ASSERT_TRUE(form.Press(i % 2 ? "Command1" : "Command7").ok);
  EXPECT_EQ(form.Prints(), 302);
  EXPECT_EQ(form.PictureOps(), both);
  // The latest print (the voucher) is told whole, with its number, though it added nothing.
  const json latest_state = form.State(form.Layers().back().id);
  EXPECT_TRUE(latest_state["texts"].empty());
  std::vector<std::string> latest, voucher_texts;
  for (const json& t : latest_state["latest"]) {
    EXPECT_EQ(t["print"], 302);
    latest.push_back(t["text"]);
  }
  for (const TextOp& t : testing::Texts(voucher)) voucher_texts.push_back(t.text);
  EXPECT_EQ(latest, voucher_texts);
}

TEST_F(DemoFormTest, OnlySetCoInfoMovesTheTopMarginAndEveryLaterPrintGoesDownBy500) {
  // The sample's own TopMargin is not applied: the form keeps the profile's.
  json sample = SmallVoucher();
  sample["company"]["TopMargin"] = 2000;
  WriteSample("voucher", sample);
  DemoForm form;
  ASSERT_TRUE(form.Press("Command1").ok);
  EXPECT_EQ(ModuleCompanyInfo::Profile().TopMargin, 0);
  ASSERT_TRUE(form.Press("Command3").ok);
  EXPECT_EQ(ModuleCompanyInfo::Profile().TopMargin, 500);
  EXPECT_EQ(ModuleCompanyInfo::Profile().BottomReserve, 5500 - 500);
  ASSERT_TRUE(form.Press("Command1").ok);
  const double title = 12 * LineAt(10);
  const std::vector<double> ys = TitleYs(form);
  ASSERT_EQ(ys.size(), 2u);
  EXPECT_NEAR(ys[0], 0 + title, 1e-9);
  EXPECT_NEAR(ys[1], 500 + title, 1e-9);
  ASSERT_TRUE(form.Press("Command1").ok);  // the margin stays for every later print
  EXPECT_EQ(TitleYs(form), ys);            // the same ink again, at 500 + title
  EXPECT_EQ(form.Prints(), 3);  // "Set Co Info" prints nothing

  // Pressed before the first print, applying the sample's company must not reset the margins.
  ModuleCompanyInfo::Profile() = CompanyProfile{};
  DemoForm fresh;
  ASSERT_TRUE(fresh.Press("Command3").ok);
  ASSERT_TRUE(fresh.Press("Command1").ok);
  EXPECT_EQ(ModuleCompanyInfo::Profile().TopMargin, 500);
  EXPECT_EQ(ModuleCompanyInfo::Profile().BottomReserve, 5000);
  EXPECT_EQ(ModuleCompanyInfo::Profile().CompanyName, "Orrin Fieldworks");
}

TEST_F(DemoFormTest, MissingAndBrokenSamplesAreReportedAndLeaveThePictureAlone) {
  WriteSample("voucher", SmallVoucher());
  std::ofstream(dir_ + "/statement.json") << "{ not json";
  WriteSample("cheque_list", json{{"type", "cheque_list"}, {"printer", {{"NoSuchSwitch", true}}}});
  DemoForm form;
  ASSERT_TRUE(form.Press("Command1").ok);
  const size_t before = form.PictureOps().size();
  const std::pair<const char*, std::vector<std::string>> failures[] = {
      {"Command2", {"\"Invoice\"", "invoice.json"}},  // no such file
      {"Command7", {"statement.json is not valid JSON"}},
      {"Command8", {"NoSuchSwitch"}}};
  for (const auto& [control, words] : failures) {
    const PressResult result = form.Press(control);
    EXPECT_FALSE(result.ok) << control;
    for (const std::string& word : words) EXPECT_NE(result.message.find(word), std::string::npos) << result.message;
  }
  EXPECT_FALSE(form.Press("Command9").ok);
  EXPECT_EQ(form.PictureOps().size(), before);
  EXPECT_EQ(form.Prints(), 1);
}

TEST_F(DemoFormTest, AFullPictureIsClearedBeforeTheNextPrint) {
  WriteSample("voucher", SmallVoucher());
  DemoForm form(/*max_ops=*/1);
  ASSERT_TRUE(form.Press("Command1").ok);
  const size_t one_print = form.PictureOps().size();
  const PressResult second = form.Press("Command1");
  EXPECT_TRUE(second.ok);
  EXPECT_NE(second.message.find("cleared"), std::string::npos) << second.message;
  EXPECT_EQ(form.PictureOps().size(), one_print);
  EXPECT_EQ(form.Prints(), 1);

  // The picture is served as an SVG page of the same size: twips are twentieths of a point, so
  // 11906 × 16838 twips is 595.3 × 841.9 points.
  const std::string svg = form.PictureSvg();
  EXPECT_EQ(svg.rfind("<?xml", 0), 0u);
  EXPECT_NE(svg.find("width=\"595.3pt\" height=\"841.9pt\""), std::string::npos);
  EXPECT_NE(svg.find("<symbol"), std::string::npos);  // the glyphs of the texts, used by reference
  EXPECT_NE(svg.find("<use"), std::string::npos);
  EXPECT_NE(svg.rfind("</svg>"), std::string::npos);
}

}  // namespace
}  // namespace quorvel::demo

// The demonstration form's buttons and the picture they print on.
#include "demo/demo_form.hpp"

#include <filesystem>
#include <fstream>

#include "automation/document_job.hpp"
#include "demo/page_svg.hpp"
#include "demo/samples.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"

namespace quorvel::demo {

namespace {

using nlohmann::json;

std::string CaptionOf(const std::string& sample) {
  for (const Sample& s : Samples())
    if (s.name == sample) return s.caption;
  return sample;
}

FormButton SampleButton(std::string control, std::string sample) {
  std::string caption = CaptionOf(sample);
  return {std::move(control), std::move(caption), std::move(sample)};
}

}  // namespace

const std::vector<FormButton>& FormButtons() {
  static const std::vector<FormButton> buttons = {
      SampleButton("Command1", "voucher"),
      SampleButton("Command2", "invoice"),
      {"Command3", "Set Co Info", ""},
      SampleButton("Command4", "delivery_note"),
      SampleButton("Command5", "delivery_note_long"),
      SampleButton("Command6", "receipt"),
      SampleButton("Command7", "statement"),
      SampleButton("Command8", "cheque_list"),
  };
  return buttons;
}

DemoForm::DemoForm(size_t max_ops) : max_ops_(max_ops) {
  // The loader makes its one ClassCompanyInfo when it first applies a company, and making one
  // resets BottomReserve to 5500. Make it now, so that it cannot undo a "Set Co Info" pressed
  // before the first print. The profile is empty at this point anyway.
  LoadDocumentJob(json{{"type", "letterhead"}, {"company", json::object()}});
}

PressResult DemoForm::Press(const std::string& control) {
  for (const FormButton& button : FormButtons()) {
    if (button.control != control) continue;
    if (!button.sample.empty()) return PrintSample(button);
    // Like the form: a new ClassCompanyInfo, only the top margin; it lasts for the process.
    ClassCompanyInfo info;
    info.SetTopMargin(500);
    return {true, "Top margin set to 500: every later page head starts 500 twips lower."};
  }
  return {false, "The form has no button " + control + "."};
}

PressResult DemoForm::PrintSample(const FormButton& button) {
  const std::string file = button.sample + ".json";
  const std::string path = SamplesDir() + "/" + file;
  if (!std::filesystem::exists(path))
    return {false, "No sample for \"" + button.caption + "\" yet: " + file + " is not in " + SamplesDir() + "."};
  std::ifstream in(path);
  json description = json::parse(in, nullptr, false);
  if (description.is_discarded()) return {false, file + " is not valid JSON."};
  // On the form only "Set Co Info" sets the top margin; a sample's own margin would undo it.
  if (description.contains("company") && description["company"].is_object())
    description["company"].erase("TopMargin");
  PressResult result;
  std::string note;
  if (picture_.Ops().size() >= max_ops_) {
    picture_.Clear();
    print_starts_.clear();
    result.cleared = true;
    note = " The picture was full and was cleared first.";
  }
  try {
    const DocumentJob job = LoadDocumentJob(description);
    print_starts_.push_back(picture_.Ops().size());
    result.printed = true;
    PrintJobOnSurface(job, picture_);
  } catch (const std::exception& e) {
    // What was drawn before the failure stays on the picture, as it would on the form.
    result.message = "Printing " + file + " failed: " + e.what() + note;
    return result;
  }
  result.ok = true;
  result.message = "Printed " + file + " (print " + std::to_string(Prints()) + ")." + note;
  return result;
}

std::string DemoForm::PictureSvg() const {
  return PageSvg(picture_.Ops(), picture_.Width(), picture_.Height());
}

std::string DemoForm::PrintSvg(int print) const {
  if (print < 1 || print > Prints()) Raise(err::kSubscript, "print " + std::to_string(print));
  const DrawOps& ops = picture_.Ops();
  const size_t end = print < Prints() ? print_starts_[print] : ops.size();
  const DrawOps drawn(ops.begin() + print_starts_[print - 1], ops.begin() + end);
  return PageSvg(drawn, picture_.Width(), picture_.Height(), /*paper=*/false);
}

json DemoForm::State(int first_print) const {
  json texts = json::array();
  PreviewSurface meter;  // measures with the same metrics the printers laid the texts out with
  const DrawOps& ops = picture_.Ops();
  size_t print = 0;
  const size_t first = first_print >= 1 && first_print <= Prints() ? print_starts_[first_print - 1] : ops.size();
  for (size_t i = 0; i < ops.size(); ++i) {
    while (print < print_starts_.size() && print_starts_[print] <= i) ++print;
    const auto* text = std::get_if<TextOp>(&ops[i]);
    if (!text || i < first) continue;
    meter.Font().Name(text->font);
    meter.Font().Size(text->size);
    meter.Font().Bold(text->bold);
    texts.push_back({{"print", print},
                     {"x", text->x},
                     {"y", text->y},
                     {"w", meter.TextWidth(text->text)},
                     {"size", text->size},
                     {"bold", text->bold},
                     {"text", text->text}});
  }
  return {{"width", picture_.Width()},
          {"height", picture_.Height()},
          {"prints", Prints()},
          {"topMargin", ModuleCompanyInfo::Profile().TopMargin},
          {"texts", std::move(texts)}};
}

}  // namespace quorvel::demo

// The demonstration form's buttons and the picture they print on.
#include "demo/demo_form.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "automation/document_job.hpp"
#include "demo/page_svg.hpp"
#include "demo/samples.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/surface.hpp"

namespace quorvel::demo {

// The picture box: an A4 page with no NewPage, whose font and position carry from one print to
// the next as on the form. Each print's ops are taken out after it, so they can be kept as layers.
class DemoForm::Meter : public Surface {
 public:
  double Width() const override { return 11906; }
  double Height() const override { return 16838; }

 protected:
  void Emit(DrawOp) override {}
};

class DemoForm::Picture : public Surface {
 public:
  double Width() const override { return 11906; }
  double Height() const override { return 16838; }
  void EndDoc() override {}
  DrawOps Take() { return std::exchange(drawn_, {}); }

 protected:
  void Emit(DrawOp op) override { drawn_.push_back(std::move(op)); }

 private:
  DrawOps drawn_;
};

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

DemoForm::DemoForm(size_t max_ops) : picture_(std::make_unique<Picture>()), max_ops_(max_ops) {
  // The loader makes its one ClassCompanyInfo when it first applies a company, and making one
  // resets BottomReserve to 5500. Make it now, so that it cannot undo a "Set Co Info" pressed
  // before the first print. The profile is empty at this point anyway.
  LoadDocumentJob(json{{"type", "letterhead"}, {"company", json::object()}});
}

DemoForm::~DemoForm() = default;

double DemoForm::Width() const { return picture_->Width(); }
double DemoForm::Height() const { return picture_->Height(); }

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
  if (OpCount() >= max_ops_) {
    Clear();
    result.cleared = true;
    note = " The picture was full and was cleared first.";
  }
  try {
    const DocumentJob job = LoadDocumentJob(description);
    result.printed = true;
    PrintJobOnSurface(job, *picture_);
  } catch (const std::exception& e) {
    // What was drawn before the failure stays on the picture, as it would on the form.
    if (result.printed) AddPrint(picture_->Take());
    result.message = "Printing " + file + " failed: " + e.what() + note;
    return result;
  }
  AddPrint(picture_->Take());
  result.ok = true;
  result.message = "Printed " + file + " (print " + std::to_string(Prints()) + ")." + note;
  return result;
}

void DemoForm::AddPrint(DrawOps ops) {
  ++prints_;
  latest_texts_.clear();
  DrawOps added;
  for (DrawOp& op : ops) {
    if (const auto* text = std::get_if<TextOp>(&op)) latest_texts_.push_back(*text);
    if (on_picture_.insert(OpToJson(op)).second) added.push_back(std::move(op));
  }
  if (!added.empty()) layers_.push_back({next_layer_++, prints_, std::move(added)});
}

void DemoForm::Clear() {
  layers_.clear();
  on_picture_.clear();
  latest_texts_.clear();
  prints_ = 0;
}

size_t DemoForm::OpCount() const {
  size_t count = 0;
  for (const PictureLayer& layer : layers_) count += layer.ops.size();
  return count;
}

DrawOps DemoForm::PictureOps() const {
  DrawOps all;
  all.reserve(OpCount());
  for (const PictureLayer& layer : layers_) all.insert(all.end(), layer.ops.begin(), layer.ops.end());
  return all;
}

std::string DemoForm::PictureSvg() const { return PageSvg(PictureOps(), Width(), Height()); }

std::string DemoForm::LayerSvg(int id) const {
  for (const PictureLayer& layer : layers_)
    if (layer.id == id) return PageSvg(layer.ops, Width(), Height(), /*paper=*/false);
  Raise(err::kSubscript, "layer " + std::to_string(id));
}

namespace {
json TextJson(const TextOp& text, int layer, int print, DemoForm::Meter& meter) {
  meter.Font().Name(text.font);
  meter.Font().Size(text.size);
  meter.Font().Bold(text.bold);
  return {{"layer", layer}, {"print", print},   {"x", text.x},       {"y", text.y},
          {"w", meter.TextWidth(text.text)},    {"size", text.size}, {"bold", text.bold},
          {"text", text.text}};
}
}  // namespace

json DemoForm::State(int known_layer) const {
  json layers = json::array();
  json texts = json::array();
  json latest = json::array();
  Meter meter;  // measures with the same metrics the printers laid the texts out with
  for (const PictureLayer& layer : layers_) {
    layers.push_back({{"id", layer.id}, {"print", layer.print}});
    if (layer.id <= known_layer) continue;
    for (const DrawOp& op : layer.ops)
      if (const auto* text = std::get_if<TextOp>(&op)) texts.push_back(TextJson(*text, layer.id, layer.print, meter));
  }
  for (const TextOp& text : latest_texts_) latest.push_back(TextJson(text, 0, prints_, meter));
  return {{"width", Width()},
          {"height", Height()},
          {"prints", Prints()},
          {"topMargin", ModuleCompanyInfo::Profile().TopMargin},
          {"layers", std::move(layers)},
          {"texts", std::move(texts)},
          {"latest", std::move(latest)}};
}

}  // namespace quorvel::demo

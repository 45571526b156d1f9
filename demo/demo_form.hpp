// The demonstration form without its window: eight buttons that print samples onto one picture.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "foundation/preview_surface.hpp"

namespace quorvel::demo {

// One button of the form; `sample` names the sample file it prints (empty for "Set Co Info").
struct FormButton {
  std::string control;  // "Command1" … "Command8"
  std::string caption;
  std::string sample;
};

// The buttons in the form's order.
const std::vector<FormButton>& FormButtons();

// What a button press did, in words for the page.
struct PressResult {
  bool ok = false;
  std::string message;
  bool printed = false;  // a print was made (it is the latest, number Prints())
  bool cleared = false;  // the picture was cleared before it
};

// The form's state: one page picture that every print draws on. Nothing clears it between
// prints, so a print lands on top of what earlier prints left (and a document's later pages on
// its first), as on a picture box that is never cleared. Not thread-safe: the caller serialises.
class DemoForm {
 public:
  // `max_ops` bounds the picture: a print that would start beyond it clears the picture first.
  explicit DemoForm(size_t max_ops = 200000);

  PressResult Press(const std::string& control);

  const PreviewSurface& Picture() const { return picture_; }
  int Prints() const { return static_cast<int>(print_starts_.size()); }
  // The picture as an SVG document the size of the page.
  std::string PictureSvg() const;
  // What print `print` (1-based) drew, on a transparent page; the subscript error when there is
  // no such print. The pictures of prints 1 to Prints(), laid in order over a white page, make
  // the picture.
  std::string PrintSvg(int print) const;
  // Page size, print count, top margin, and the texts of prints `first_print` onwards, each with
  // the print that drew it ("print"), its top-left corner, its measured width ("w"), font size
  // and boldness.
  nlohmann::json State(int first_print = 1) const;

 private:
  PressResult PrintSample(const FormButton& button);

  PreviewSurface picture_;
  std::vector<size_t> print_starts_;  // index of each print's first op in the picture
  size_t max_ops_;
};

}  // namespace quorvel::demo

// The demonstration form without its window: eight buttons that print samples onto one picture.
#pragma once

#include <cstddef>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <unordered_set>
#include <vector>

#include "foundation/draw_ops.hpp"

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

// What one print added to the picture: only the ops that were not on it already. `id` never
// changes and is never reused.
struct PictureLayer {
  int id = 0;
  int print = 0;
  DrawOps ops;
};

// The form's state: one page picture that every print draws on. Nothing clears it between
// prints, so a print lands on top of what earlier prints left (and a document's later pages on
// its first), as on a picture box that is never cleared. All ink is black, so an op drawn again
// where it already is changes nothing that can be seen: the picture keeps each different op
// once, and a print keeps, as its layer, only what it added. The fixed samples draw a bounded
// set of ops (a receipt adds its new time), so the picture stays small however often the
// buttons are pressed. Not thread-safe: the caller serialises.
class DemoForm {
 public:
  // `max_ops` bounds the picture: a print that would start beyond it clears the picture first.
  explicit DemoForm(size_t max_ops = 200000);
  ~DemoForm();

  PressResult Press(const std::string& control);

  int Prints() const { return prints_; }
  double Width() const;
  double Height() const;
  // The layers from the bottom up: drawn in this order they make the picture.
  const std::vector<PictureLayer>& Layers() const { return layers_; }
  // Every op on the picture, bottom layer first.
  DrawOps PictureOps() const;
  // The picture as an SVG document the size of the page.
  std::string PictureSvg() const;
  // What layer `id` drew, on a transparent page; the subscript error when there is no such layer.
  std::string LayerSvg(int id) const;
  // Page size, print count, top margin, the layers (id and print, bottom up), the texts of the
  // layers whose id is above `known_layer` ("texts") and every text of the latest print
  // ("latest"), each with its layer (0 in "latest"), the print that drew it ("print"), its
  // top-left corner, its measured width ("w"), font size and boldness.
  nlohmann::json State(int known_layer = 0) const;

 // A surface that only measures texts, in the printers' metrics.
  class Meter;

 private:
  class Picture;
  PressResult PrintSample(const FormButton& button);
  void AddPrint(DrawOps ops);
  size_t OpCount() const;
  void Clear();

  std::unique_ptr<Picture> picture_;  // the surface every print draws on
  std::vector<PictureLayer> layers_;
  std::unordered_set<std::string> on_picture_;  // every op on the picture, in the ops format
  std::vector<TextOp> latest_texts_;            // what the latest print wrote, all of it
  int prints_ = 0;
  int next_layer_ = 1;
  size_t max_ops_;
};

}  // namespace quorvel::demo

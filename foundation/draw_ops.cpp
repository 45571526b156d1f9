// The ops text format: stable JSON Lines that tests and users read to check a layout.
#include "foundation/draw_ops.hpp"

#include <cmath>
#include <nlohmann/json.hpp>

#include "foundation/errors.hpp"
#include "foundation/font_metrics.hpp"
#include "foundation/text_shaping.hpp"
#include "foundation/utf8.hpp"
#include "foundation/runtime.hpp"

namespace quorvel {

namespace {

// Twips rounded to 2 decimals, written without trailing zeros (1000, 1459.96).
std::string Twips(double v) {
  double rounded = std::round(v * 100.0) / 100.0;
  if (rounded == 0) rounded = 0;  // no "-0"
  return NumberText(rounded);
}

std::string Coordinates(const char* op, double x1, double y1, double x2, double y2) {
  return std::string("{\"op\":\"") + op + "\",\"x1\":" + Twips(x1) + ",\"y1\":" + Twips(y1) +
         ",\"x2\":" + Twips(x2) + ",\"y2\":" + Twips(y2) + "}";
}

// A text that is not drawn glyph for glyph in its own font (right-to-left, fallback fonts,
// shaping) carries its paragraph direction, so that a reader knows its glyphs are not its
// characters in order. Plain texts keep the line exactly as it always was.
std::string DirectionField(const TextOp& t) {
  if (!IsValidUtf8(t.text)) return "";
  try {
    const FontFace& face = FontFace::Get(t.font, t.bold);
    int64_t units = 0;
    if (face.PlainAdvanceUnits(t.text, units)) return "";
    return ShapeLine(DecodeUtf8(t.text), face, t.bold)->rtl ? ",\"dir\":\"rtl\"" : ",\"dir\":\"ltr\"";
  } catch (const AutomationError&) {
    return "";  // a font this machine lacks: the op is written as it was read
  }
}

struct JsonWriter {
  std::string operator()(const TextOp& t) const {
    return "{\"op\":\"text\",\"x\":" + Twips(t.x) + ",\"y\":" + Twips(t.y) +
           ",\"font\":" + nlohmann::json(t.font).dump() + ",\"size\":" + NumberText(t.size) +
           ",\"bold\":" + (t.bold ? "true" : "false") +
           ",\"text\":" + nlohmann::json(t.text).dump() + DirectionField(t) + "}";
  }
  std::string operator()(const LineOp& l) const { return Coordinates("line", l.x1, l.y1, l.x2, l.y2); }
  std::string operator()(const BoxOp& b) const { return Coordinates("box", b.x1, b.y1, b.x2, b.y2); }
  std::string operator()(const QrOp& q) const {
    return "{\"op\":\"qr\",\"x\":" + Twips(q.x) + ",\"y\":" + Twips(q.y) + ",\"module\":" + Twips(q.module) +
           ",\"data\":" + nlohmann::json(q.data).dump() + "}";
  }
  std::string operator()(const ImageOp& i) const {
    std::string box = Coordinates("image", i.x1, i.y1, i.x2, i.y2);
    box.pop_back();
    return box + ",\"source\":" + nlohmann::json(i.source).dump() + "}";
  }
  std::string operator()(const PageOp&) const { return "{\"op\":\"page\"}"; }
  std::string operator()(const EndOp&) const { return "{\"op\":\"end\"}"; }
};

}  // namespace

std::string OpToJson(const DrawOp& op) { return std::visit(JsonWriter{}, op); }

DrawOp OpFromJson(const std::string& line) {
  try {
    const auto j = nlohmann::json::parse(line);
    const std::string kind = j.at("op").get<std::string>();
    if (kind == "text")
      return TextOp{j.at("x").get<double>(), j.at("y").get<double>(), j.at("font").get<std::string>(),
                    j.at("size").get<double>(), j.at("bold").get<bool>(), j.at("text").get<std::string>()};
    if (kind == "line" || kind == "box") {
      const double x1 = j.at("x1"), y1 = j.at("y1"), x2 = j.at("x2"), y2 = j.at("y2");
      if (kind == "line") return LineOp{x1, y1, x2, y2};
      return BoxOp{x1, y1, x2, y2};
    }
    if (kind == "qr")
      return QrOp{j.at("x").get<double>(), j.at("y").get<double>(), j.at("module").get<double>(),
                  j.at("data").get<std::string>()};
    if (kind == "image")
      return ImageOp{j.at("x1").get<double>(), j.at("y1").get<double>(), j.at("x2").get<double>(),
                     j.at("y2").get<double>(), j.at("source").get<std::string>()};
    if (kind == "page") return PageOp{};
    if (kind == "end") return EndOp{};
    Raise(err::kInvalidArgument, "unknown op \"" + kind + "\"");
  } catch (const nlohmann::json::exception& e) {
    Raise(err::kInvalidArgument, std::string("ops line: ") + e.what());
  }
}

bool operator==(const TextOp& a, const TextOp& b) {
  return a.x == b.x && a.y == b.y && a.font == b.font && a.size == b.size && a.bold == b.bold &&
         a.text == b.text;
}
bool operator==(const LineOp& a, const LineOp& b) {
  return a.x1 == b.x1 && a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2;
}
bool operator==(const QrOp& a, const QrOp& b) {
  return a.x == b.x && a.y == b.y && a.module == b.module && a.data == b.data;
}
bool operator==(const ImageOp& a, const ImageOp& b) {
  return a.x1 == b.x1 && a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2 && a.source == b.source;
}
bool operator==(const BoxOp& a, const BoxOp& b) {
  return a.x1 == b.x1 && a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2;
}

}  // namespace quorvel

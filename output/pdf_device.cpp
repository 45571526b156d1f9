// The direct PDF device ("pdf", the default for .pdf): pages written as they arrive, text as
// glyph ids of Identity-H fonts at the positions the layout measured, fonts subset at the end.
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <map>
#include <memory>

#include "foundation/atomic_file.hpp"
#include "foundation/errors.hpp"
#include "foundation/glyph_runs.hpp"
#include "foundation/qr_code.hpp"
#include "foundation/raster_image.hpp"
#include "foundation/utf8.hpp"
#include "output/device.hpp"
#include "output/pdf_archive.hpp"
#include "output/pdf_fonts.hpp"
#include "output/pdf_writer.hpp"

namespace quorvel {

namespace {

constexpr double kPenTwips = 10;        // the default thin pen: half a point
constexpr double kAdvanceSlack = 1e-6;  // twips; closer than this, the font's advance is ours

// "YYYY-MM-DDThh:mm:ss" (or now, in UTC) as a PDF date "D:YYYYMMDDhhmmssZ".
std::string PdfDate(const std::string& fixed) {
  std::string digits;
  if (fixed.empty()) {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&now, &utc);
    char text[16];
    std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &utc);
    digits = text;
  } else {
    for (char c : fixed)
      if (c >= '0' && c <= '9') digits += c;
  }
  if (digits.size() != 14)
    Raise(err::kInvalidArgument, "PDF creation date \"" + fixed + "\": write it as YYYY-MM-DDThh:mm:ss");
  return "D:" + digits + "Z";
}

// What sets a document apart from others of the same date, size and page count.
std::string UniqueSeed() {
  static std::atomic<uint64_t> documents{0};
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  return std::to_string(getpid()) + "/" + std::to_string(++documents) + "/" + std::to_string(now);
}

class PdfDevice : public PageDevice {
 public:
  explicit PdfDevice(const PrinterOutput& output)
      : file_(output.path), writer_(file_), date_(PdfDate(output.pdf_creation_date)),
        id_seed_(output.pdf_creation_date.empty() ? UniqueSeed() : ""), archive_(output) {
    catalog_ = writer_.Reserve();
    pages_object_ = writer_.Reserve();
    info_ = writer_.Reserve();
  }

 protected:
  void BeginPage(const PageInfo& page) override {
    width_ = page.width;
    height_ = page.height;
    content_.clear();
    page_fonts_.clear();
    page_images_.clear();
    text_ = {};
    // Twips with the origin top-left, y down, like the ops; the pen starts as the painters' does.
    content_ += "0.05 0 0 -0.05 0 ";
    pdf::AppendNumber(content_, page.height / 20.0, 4);
    content_ += " cm 10 w 0 g 0 G\n";
    static_assert(kPenTwips == 10);
  }
  void Draw(const TextOp& op) override {
    if (const FontFace* plain = PlainFaceOf(op)) return DrawPlain(op, *plain);
    for (const GlyphRun& run : GlyphRunsOf(op)) DrawRun(run);
  }
  void Draw(const LineOp& op) override {
    EndText();
    Point(op.x1, op.y1);
    content_ += "m ";
    Point(op.x2, op.y2);
    content_ += "l S\n";
  }
  void Draw(const BoxOp& op) override {
    EndText();
    Rect(op.x1, op.y1, op.x2 - op.x1, op.y2 - op.y1);
    content_ += "S\n";
  }
  void Draw(const QrOp& op) override;
  void Draw(const ImageOp& op) override;
  void EndPage() override;
  void EndDocument() override;

 private:
  void Point(double x, double y) {
    pdf::AppendNumber(content_, x);
    content_ += ' ';
    pdf::AppendNumber(content_, y);
    content_ += ' ';
  }
  void Rect(double x, double y, double width, double height) {
    Point(x, y);
    pdf::AppendNumber(content_, width);
    content_ += ' ';
    pdf::AppendNumber(content_, height);
    content_ += " re\n";
  }
  pdf::DocumentFont& FontFor(const FontFace& face);
  void DrawRun(const GlyphRun& run);
  void DrawPlain(const TextOp& op, const FontFace& face);
  void BeginText(const pdf::DocumentFont& font, double size, double x, double baseline);
  void EndText() {
    if (!text_.open) return;
    content_ += "ET\n";
    text_.open = false;
  }
  void AppendGlyph(uint32_t glyph) {
    const char bytes[2] = {static_cast<char>(glyph >> 8), static_cast<char>(glyph & 0xFF)};
    const auto plain = [](char c) { return c != '(' && c != ')' && c != '\\' && c != '\r'; };
    if (plain(bytes[0]) && plain(bytes[1])) content_.append(bytes, 2);  // nearly every glyph
    else pdf::AppendEscaped(content_, std::string_view(bytes, 2));
  }
  struct DocumentImage {
    std::string resource;  // "Im1", "Im2", …
    int object;
  };
  const DocumentImage& ImageFor(const std::string& source);
  void WriteResources(std::string& out) const;

  AtomicFile file_;
  pdf::ObjectWriter writer_;
  std::string date_;
  std::string id_seed_;  // empty for a fixed date: the same document then gets the same ID
  pdf::ArchiveParts archive_;  // PDF/A metadata and attached files, when the host asked for them
  int catalog_, pages_object_, info_;
  std::vector<int> page_objects_;
  std::map<const FontFace*, std::unique_ptr<pdf::DocumentFont>> fonts_;
  std::vector<const pdf::DocumentFont*> page_fonts_;
  std::map<std::string, DocumentImage> images_;  // each picture embedded once per document
  std::vector<const DocumentImage*> page_images_;
  std::string content_;
  double width_ = 0, height_ = 0;
  // The page's open text object: consecutive texts share one, and its font and size are set
  // only when they change (paths cannot be drawn inside it, so a rule closes it).
  struct {
    bool open = false;
    const pdf::DocumentFont* font = nullptr;
    double size = 0;
  } text_;
};

pdf::DocumentFont& PdfDevice::FontFor(const FontFace& face) {
  auto& font = fonts_[&face];
  if (!font) font = std::make_unique<pdf::DocumentFont>(face, writer_.Reserve(), static_cast<int>(fonts_.size()));
  if (std::find(page_fonts_.begin(), page_fonts_.end(), font.get()) == page_fonts_.end())
    page_fonts_.push_back(font.get());
  return *font;
}

void PdfDevice::BeginText(const pdf::DocumentFont& font, double size, double x, double baseline) {
  if (!text_.open) {
    content_ += "BT ";
    text_.open = true;
  }
  if (text_.font != &font || text_.size != size) {
    content_ += '/';
    content_ += font.Resource();
    content_ += ' ';
    pdf::AppendNumber(content_, size);
    content_ += " Tf ";
    text_.font = &font;
    text_.size = size;
  }
  content_ += "1 0 0 -1 ";
  Point(x, baseline);
  content_ += "Tm[(";
}

// Plain text walked straight from the op: glyph after glyph from op.x, our advance of each
// character compared with the font's in whole font units, so where they differ a TJ
// adjustment puts the next glyph exactly where the layout measured it.
void PdfDevice::DrawPlain(const TextOp& op, const FontFace& face) {
  if (op.text.empty()) return;
  pdf::DocumentFont& font = FontFor(face);
  const double size = op.size * 20.0;  // text space units are twips
  BeginText(font, size, op.x, op.y + face.Ascender() * TwipsPerUnit(face, op.size));
  const double per_unit = 1000.0 / font.UnitsPerEm();
  int64_t drift = 0;  // font units by which the PDF's pen trails ours
  ForEachCodePoint(op.text, [&](char32_t c) {
    const uint32_t glyph = face.GlyphIndex(c);
    font.Use(glyph, c);
    if (drift != 0) {
      content_ += ")";
      pdf::AppendNumber(content_, -static_cast<double>(drift) * per_unit);  // negative moves right
      content_ += "(";
      drift = 0;
    }
    AppendGlyph(glyph);
    drift += face.Advance(c) - font.AdvanceUnits(glyph);
  });
  content_ += ")]TJ\n";
}

// One run: a text matrix at its first glyph, then the glyph ids as two-byte codes; where our
// advance differs from the font's, a TJ adjustment moves the pen to our position.
void PdfDevice::DrawRun(const GlyphRun& run) {
  if (run.glyphs.empty()) return;
  pdf::DocumentFont& font = FontFor(*run.face);
  const double size = run.size * 20.0;
  BeginText(font, size, run.x.front(), run.baseline);
  double pen = run.x.front(), rise = 0;
  for (size_t i = 0; i < run.glyphs.size(); ++i) {
    const uint32_t glyph = run.glyphs[i];
    font.Use(glyph, run.chars[i]);
    if (run.rise[i] != rise) {  // a mark raised by shaping: the text rise moves it, not the pen
      rise = run.rise[i];
      content_ += ")]TJ ";
      pdf::AppendNumber(content_, rise);
      content_ += " Ts[(";
    }
    if (std::abs(run.x[i] - pen) > kAdvanceSlack) {
      content_ += ")";
      pdf::AppendNumber(content_, (pen - run.x[i]) * 1000.0 / size);  // positive moves left
      content_ += "(";
      pen = run.x[i];
    }
    AppendGlyph(glyph);
    pen += font.Advance(glyph, run.size);
  }
  content_ += rise != 0 ? ")]TJ 0 Ts\n" : ")]TJ\n";
}

// White quiet zone, then the dark modules, a row's neighbours joined into one rectangle.
void PdfDevice::Draw(const QrOp& op) {
  EndText();
  const QrMatrix matrix = EncodeQr(op.data);
  const double side = (matrix.size + 2 * kQrQuietZone) * op.module;
  content_ += "1 g\n";
  Rect(op.x, op.y, side, side);
  content_ += "f 0 g\n";
  const double origin_x = op.x + kQrQuietZone * op.module, origin_y = op.y + kQrQuietZone * op.module;
  for (int row = 0; row < matrix.size; ++row)
    for (int column = 0; column < matrix.size;) {
      if (!matrix.Dark(column, row)) {
        ++column;
        continue;
      }
      int end = column;
      while (end < matrix.size && matrix.Dark(end, row)) ++end;
      Rect(origin_x + column * op.module, origin_y + row * op.module, (end - column) * op.module, op.module);
      column = end;
    }
  content_ += "f\n";
}

void PdfDevice::Draw(const ImageOp& op) {
  EndText();
  const DocumentImage& image = ImageFor(op.source);
  if (std::find(page_images_.begin(), page_images_.end(), &image) == page_images_.end()) page_images_.push_back(&image);
  // The unit square onto the box; the y axis of the page runs down, so the image's top row,
  // which PDF puts at y = 1, lands on the box's top edge.
  content_ += "q ";
  pdf::AppendNumber(content_, std::abs(op.x2 - op.x1));
  content_ += " 0 0 ";
  pdf::AppendNumber(content_, -std::abs(op.y2 - op.y1));
  content_ += ' ';
  Point(std::min(op.x1, op.x2), std::max(op.y1, op.y2));
  content_ += "cm/" + image.resource + " Do Q\n";
}

const PdfDevice::DocumentImage& PdfDevice::ImageFor(const std::string& source) {
  auto found = images_.find(source);
  if (found != images_.end()) return found->second;
  const std::shared_ptr<const RasterImage> pixels = RasterImageFor(source);
  const int object = writer_.Reserve();
  std::string dictionary = "/Type/XObject/Subtype/Image/Width " + std::to_string(pixels->width) + "/Height " +
                           std::to_string(pixels->height) +
                           "/ColorSpace/DeviceRGB/BitsPerComponent 8";
  const std::string_view rgb(reinterpret_cast<const char*>(pixels->rgb.data()), pixels->rgb.size());
  writer_.DeflatedStream(object, dictionary, rgb);
  const std::string resource = "Im" + std::to_string(images_.size() + 1);
  return images_.emplace(source, DocumentImage{resource, object}).first->second;
}

void PdfDevice::WriteResources(std::string& out) const {
  out += "/Resources<</Font<<";
  for (const pdf::DocumentFont* font : page_fonts_) {
    out += '/' + font->Resource() + ' ';
    pdf::AppendInt(out, font->Object());
    out += " 0 R";
  }
  out += ">>";
  if (!page_images_.empty()) {
    out += "/XObject<<";
    for (const DocumentImage* image : page_images_) {
      out += '/' + image->resource + ' ';
      pdf::AppendInt(out, image->object);
      out += " 0 R";
    }
    out += ">>";
  }
  out += ">>";
}

void PdfDevice::EndPage() {
  EndText();
  const int content = writer_.Reserve(), page = writer_.Reserve();
  writer_.DeflatedStream(content, "", content_);
  std::string& out = writer_.Begin(page);
  out += "<</Type/Page/Parent ";
  pdf::AppendInt(out, pages_object_);
  out += " 0 R/MediaBox[0 0 ";
  pdf::AppendNumber(out, width_ / 20.0, 4);  // a cut roll's length is any fraction of a twip
  out += ' ';
  pdf::AppendNumber(out, height_ / 20.0, 4);
  out += "]/Contents ";
  pdf::AppendInt(out, content);
  out += " 0 R";
  WriteResources(out);
  out += ">>";
  writer_.End();
  page_objects_.push_back(page);
}

void PdfDevice::EndDocument() {
  for (const auto& [face, font] : fonts_) font->Write(writer_);
  std::string& pages = writer_.Begin(pages_object_);
  pages += "<</Type/Pages/Kids[";
  for (int page : page_objects_) {
    pdf::AppendInt(pages, page);
    pages += " 0 R ";
  }
  pages += "]/Count ";
  pdf::AppendInt(pages, static_cast<int64_t>(page_objects_.size()));
  pages += ">>";
  writer_.End();
  bool notdef_drawn = false;  // glyph 0, the missing-glyph box
  for (const auto& [face, font] : fonts_) notdef_drawn = notdef_drawn || font->Uses(0);
  const std::string archive_entries = archive_.Write(writer_, date_, notdef_drawn);
  std::string& catalog = writer_.Begin(catalog_);
  catalog += "<</Type/Catalog/Pages ";
  pdf::AppendInt(catalog, pages_object_);
  catalog += " 0 R" + archive_entries + ">>";
  writer_.End();
  std::string& info = writer_.Begin(info_);
  const std::string producer(pdf::kProducer);
  info += "<</Producer(" + producer + ")/Creator(" + producer + ")" + archive_.InfoEntries() + "/CreationDate(" +
          date_ + ")/ModDate(" + date_ + ")>>";
  writer_.End();
  // The ID only has to tell documents apart: the date, the size and the page count, and unless
  // the date is fixed (repeatable output) the process and a counter, since two documents of one
  // size may well be printed in the same second.
  uint64_t hash[2] = {1469598103934665603ull, 0x9E3779B97F4A7C15ull};
  const std::string seed = date_ + "/" + std::to_string(writer_.Written()) + "/" +
                           std::to_string(page_objects_.size()) + "/" + id_seed_;
  for (char c : seed)
    for (uint64_t& h : hash) h = (h ^ static_cast<uint8_t>(c)) * 1099511628211ull;
  std::string id;
  for (uint64_t h : hash) {
    pdf::AppendHex(id, static_cast<uint32_t>(h >> 32), 8);
    pdf::AppendHex(id, static_cast<uint32_t>(h), 8);
  }
  writer_.Finish(catalog_, info_, id);
  file_.Commit();
  results_.push_back(file_.Path());
}

}  // namespace

void RegisterPdfDevice() {
  DeviceEntry entry = FileDevice("pdf", {".pdf"}, [](const PrinterOutput& output) {
    return std::make_unique<PdfDevice>(output);
  });
  entry.archival = true;
  RegisterDevice(std::move(entry));
}

}  // namespace quorvel

// The direct PDF device read back by poppler and qpdf: every sample document, fonts, text,
// word positions against the ops, pixels against cairo's rendering, and hostile text.
#include <cairo.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <sstream>

#include "automation/document_job.hpp"
#include "foundation/font_metrics.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {
namespace {

// Prints a sample through the system printer to `path`; the device comes from the ending.
void PrintSample(const std::string& sample, const std::string& path, const std::string& date = "2026-01-02T03:04:05") {
  const DocumentJob job = LoadDocumentJobFile(QUORVEL_SOURCE_DIR "/demo/samples/" + sample);
  PrinterSurface& printer = SystemPrinter();
  PrinterOutput output = PrinterOutput::ForPath(path);
  output.pdf_creation_date = date;
  printer.SetPaper(Paper::A4());
  printer.SetOutput(output);
  PrintJobOnSystemPrinter(job);
  if (printer.InDocument()) printer.EndDoc();
}

// One word of `pdftotext -bbox`: its text and box in points.
struct Word {
  std::string text;
  double x_min, x_max;
  int page;
};

std::vector<Word> WordsOf(const std::string& pdf) {
  const std::string html = RunCommand("pdftotext -bbox " + pdf + " -");
  std::vector<Word> words;
  int page = 0;
  std::istringstream lines(html);
  for (std::string line; std::getline(lines, line);) {
    if (line.find("<page ") != std::string::npos) ++page;
    const size_t at = line.find("<word xMin=\"");
    if (at == std::string::npos) continue;
    Word word{};
    word.page = page;
    std::sscanf(line.c_str() + at, "<word xMin=\"%lf\" yMin=\"%*f\" xMax=\"%lf\"", &word.x_min, &word.x_max);
    const size_t open = line.find('>', at) + 1;
    word.text = line.substr(open, line.find("</word>") - open);
    words.push_back(word);
  }
  return words;
}

// True when some word of `page` begins with `text` (so its left edge can be checked).
bool StartsAnyWord(const std::vector<Word>& words, int page, const std::string& text) {
  for (const Word& word : words)
    if (word.page == page && word.text.rfind(text, 0) == 0) return true;
  return false;
}

// The width of `text` in the op's face, from the face's own advances (points).
double AdvancePoints(const TextOp& op, const std::string& text) {
  const FontFace& face = FontFace::Get(op.font, op.bold);
  return face.AdvanceUnits(std::string_view(text)) * TwipsPerUnit(face, op.size) / 20.0;
}

class PdfDevice : public ::testing::TestWithParam<std::string> {};

// Every sample prints to a clean PDF whose fonts are embedded subsets with ToUnicode maps and
// whose words stand where the ops put them.
TEST_P(PdfDevice, SampleReadsBackAsItsOps) {
  const std::string dir = TempDir("pdf-device-" + GetParam());
  PrintSample(GetParam(), dir + "/doc.pdf");
  PrintSample(GetParam(), dir + "/doc.jsonl");
  const std::string pdf = dir + "/doc.pdf";
  EXPECT_NE(RunCommand("qpdf --check " + pdf + " 2>&1; true").find("No syntax or stream encoding errors"),
            std::string::npos);

  const std::string fonts = RunCommand("pdffonts " + pdf);
  std::istringstream rows(fonts);
  int font_rows = 0;
  for (std::string row; std::getline(rows, row);) {
    if (row.find("CID TrueType") == std::string::npos) continue;
    ++font_rows;
    std::istringstream cells(row);
    std::vector<std::string> cell{std::istream_iterator<std::string>(cells), {}};
    ASSERT_GE(cell.size(), 8u) << row;
    // emb, sub, uni: the three columns before the object number and generation
    EXPECT_EQ(cell[cell.size() - 5] + cell[cell.size() - 4] + cell[cell.size() - 3], "yesyesyes") << row;
    EXPECT_EQ(row[6], '+') << "a subset name has a six-letter tag: " << row;
  }
  EXPECT_GE(font_rows, 1);

  // Each op's first word: its left edge at the op's x, its right edge one advance further.
  const DrawOps ops = ReadOpsFile(dir + "/doc.jsonl");
  const std::vector<Word> words = WordsOf(pdf);
  int page = 1, checked = 0;
  for (const DrawOp& op : ops) {
    if (std::holds_alternative<PageOp>(op)) ++page;
    const auto* text = std::get_if<TextOp>(&op);
    if (!text) continue;
    const std::string first = text->text.substr(0, text->text.find(' '));
    if (first.empty() || first.find_first_of("<>&\"'") != std::string::npos) continue;
    const double x = text->x / 20.0, right = x + AdvancePoints(*text, first);
    // pdftotext joins texts that touch into one word; only a word that begins with the op's
    // text has a left edge that belongs to it.
    bool found = false, present = false;
    for (const Word& word : words) {
      if (word.page != page || word.text.find(first) == std::string::npos) continue;
      present = true;
      if (word.text.rfind(first, 0) != 0 || std::abs(word.x_min - x) > 0.05) continue;
      if (word.text == first) {
        EXPECT_NEAR(word.x_max, right, 0.05) << first;
      }
      found = true;
      break;
    }
    if (!present || (!found && !StartsAnyWord(words, page, first))) continue;
    EXPECT_TRUE(found) << "\"" << first << "\" not at x " << x << " on page " << page;
    ++checked;
  }
  EXPECT_GT(checked, 5);
}

// A page as grey levels, 0 (black) to 255.
struct GreyImage {
  int width = 0, height = 0;
  std::vector<uint8_t> grey;
  int At(int x, int y) const { return grey[static_cast<size_t>(y) * width + x]; }
};

GreyImage ReadGreyPng(const std::string& path) {
  cairo_surface_t* png = cairo_image_surface_create_from_png(path.c_str());
  GreyImage image;
  if (cairo_surface_status(png) == CAIRO_STATUS_SUCCESS) {
    cairo_surface_flush(png);
    image.width = cairo_image_surface_get_width(png);
    image.height = cairo_image_surface_get_height(png);
    for (int y = 0; y < image.height; ++y)
      for (int x = 0; x < image.width; ++x) {
        const uint8_t* p = cairo_image_surface_get_data(png) + y * cairo_image_surface_get_stride(png) + x * 4;
        image.grey.push_back(static_cast<uint8_t>((p[0] + p[1] + p[2]) / 3));
      }
  }
  cairo_surface_destroy(png);
  return image;
}

bool Ink(int grey) { return grey < 128; }

// Share of the pixels of `a` that differ from `b`: ink where every pixel of `b` within one pixel
// is paper, or the other way round. Two rasterisers differ below that: poppler snaps a half-point
// rule to one black pixel row where cairo spreads it grey over two, and each places a glyph's
// edge anywhere inside a pixel (poppler renders cairo's own PDF of these pages 2.7% apart grey
// level for grey level). A word moved by two pixels, a missing rule or a wrong glyph still
// differs.
double DifferingPixels(const GreyImage& a, const GreyImage& b) {
  if (a.grey.empty() || std::abs(a.width - b.width) > 1 || std::abs(a.height - b.height) > 1) return 1;
  const int width = std::min(a.width, b.width), height = std::min(a.height, b.height);
  long differing = 0;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      bool near = false;
      for (int dy = -1; dy <= 1 && !near; ++dy)
        for (int dx = -1; dx <= 1 && !near; ++dx) {
          const int nx = x + dx, ny = y + dy;
          near = nx >= 0 && ny >= 0 && nx < width && ny < height && Ink(a.At(x, y)) == Ink(b.At(nx, ny));
        }
      differing += !near;
    }
  return static_cast<double>(differing) / (static_cast<double>(width) * height);
}

// poppler's rendering of every page of the PDF and cairo's PNG of the same ops at 100 dpi.
TEST(PdfDeviceRendering, PagesMatchCairoPng) {
  const std::string dir = TempDir("pdf-device-pixels");
  for (const std::string sample : {"invoice.json", "statement.json"}) {
    PrintSample(sample, dir + "/doc.pdf");
    PrinterSurface& printer = SystemPrinter();
    PrinterOutput png = PrinterOutput::ForPath(dir + "/doc.png");
    png.dpi = 100;
    printer.SetOutput(png);
    PrintJobOnSystemPrinter(LoadDocumentJobFile(QUORVEL_SOURCE_DIR "/demo/samples/" + sample));
    if (printer.InDocument()) printer.EndDoc();
    const int pages = printer.LastPageCount();
    ASSERT_GE(pages, 1);
    RunCommand("pdftoppm -r 100 -png " + dir + "/doc.pdf " + dir + "/poppler");
    for (int page = 1; page <= pages; ++page) {
      // pdftoppm numbers its pages with as many digits as the last one has
      const std::string number = pages >= 10 && page < 10 ? "0" + std::to_string(page) : std::to_string(page);
      const GreyImage poppler = ReadGreyPng(dir + "/poppler-" + number + ".png");
      const GreyImage cairo = ReadGreyPng(dir + "/doc-" + std::to_string(page) + ".png");
      EXPECT_LT(DifferingPixels(poppler, cairo), 0.005) << sample << " page " << page;
      EXPECT_LT(DifferingPixels(cairo, poppler), 0.005) << sample << " page " << page;
    }
  }
}

// The comparison itself: a page shifted by two pixels, or with a word left out, differs.
TEST(PdfDeviceRendering, ComparisonSeesAShiftOrAMissingWord) {
  const std::string dir = TempDir("pdf-device-pixel-check");
  PreviewSurface page;
  page.Print("Amount due");
  page.WritePng(dir + "/page.png", 100);
  PreviewSurface shifted;
  shifted.CurrentX(29);  // two pixels at 100 dpi
  shifted.Print("Amount due");
  shifted.WritePng(dir + "/shifted.png", 100);
  PreviewSurface shorter;
  shorter.Print("Amount");
  shorter.WritePng(dir + "/shorter.png", 100);
  const GreyImage base = ReadGreyPng(dir + "/page.png");
  EXPECT_EQ(DifferingPixels(base, base), 0);
  EXPECT_GT(DifferingPixels(base, ReadGreyPng(dir + "/shifted.png")), 0);
  EXPECT_GT(DifferingPixels(base, ReadGreyPng(dir + "/shorter.png")), 0);
}

std::string DocumentId(const std::string& pdf) {
  const std::string bytes = ReadFile(pdf);
  const size_t at = bytes.rfind("/ID[<");
  return at == std::string::npos ? "" : bytes.substr(at + 5, 32);
}

// A fixed date gives the same bytes every time; without one, two prints of the same document in
// the same second still get different document IDs.
TEST(PdfDeviceIdentity, FixedDateRepeatsTheBytesAndOtherwiseIdsDiffer) {
  const std::string dir = TempDir("pdf-device-id");
  PrintSample("voucher.json", dir + "/a.pdf");
  PrintSample("voucher.json", dir + "/b.pdf");
  EXPECT_EQ(ReadFile(dir + "/a.pdf"), ReadFile(dir + "/b.pdf"));
  PrintSample("voucher.json", dir + "/c.pdf", "");
  PrintSample("voucher.json", dir + "/d.pdf", "");
  ASSERT_EQ(DocumentId(dir + "/c.pdf").size(), 32u);
  EXPECT_NE(DocumentId(dir + "/c.pdf"), DocumentId(dir + "/d.pdf"));
}

// Text the font lacks still gives a valid PDF (the missing glyph drawn, the text extractable
// where the font has it); invalid UTF-8 is refused before the document starts.
TEST(PdfDeviceHostileText, LongAndUncoveredTextGiveValidPdf) {
  const std::string dir = TempDir("pdf-device-hostile");
  PrinterSurface& printer = SystemPrinter();
  printer.SetPaper(Paper::A4());
  printer.SetOutput(PrinterOutput::ForPath(dir + "/hostile.pdf"));
  printer.Print(std::string(1 << 20, 'W'));
  printer.Print("Tea \xe4\xb8\xad\xe6\x96\x87 \xf0\x9f\x98\x80 end");
  printer.EndDoc();
  EXPECT_NE(RunCommand("qpdf --check " + dir + "/hostile.pdf 2>&1; true").find("No syntax or stream encoding errors"),
            std::string::npos);
  const std::string text = RunCommand("pdftotext " + dir + "/hostile.pdf -");
  EXPECT_NE(text.find("Tea"), std::string::npos);
  EXPECT_NE(text.find("end"), std::string::npos);  // after the glyphs the font lacks
  EXPECT_NE(text.find(std::string(50, 'W')), std::string::npos);

  printer.SetOutput(PrinterOutput::ForPath(dir + "/broken.pdf"));
  EXPECT_NE(ErrorNumberOf([&] { printer.Print("bad \xc3\x28 text"); }), 0);
  printer.KillDoc();
  EXPECT_FALSE(std::filesystem::exists(dir + "/broken.pdf"));
}

INSTANTIATE_TEST_SUITE_P(Samples, PdfDevice,
                         ::testing::Values("voucher.json", "invoice.json", "delivery_note.json",
                                           "delivery_note_long.json", "receipt.json", "statement.json",
                                           "cheque_list.json", "letterhead.json"),
                         [](const auto& info) { return info.param.substr(0, info.param.size() - 5); });

}  // namespace
}  // namespace quorvel::testing

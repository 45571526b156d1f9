// The test-side ESC/POS reader and the 1-bit pictures of PNG pages.
#include "support/escpos_reader.hpp"

#include <cairo.h>

#include <stdexcept>

namespace quorvel::testing {

namespace {

// Parameter counts of the commands a receipt job may hold, after their introducing bytes.
struct Known {
  unsigned char first, second;
  const char* name;
  int parameters;
};
constexpr Known kSimple[] = {{0x1b, '@', "ESC @", 0}, {0x1b, 'd', "ESC d", 1}, {0x1b, 'J', "ESC J", 1},
                             {0x1b, 'p', "ESC p", 3}};

std::string Hex(unsigned char byte) {
  const char* digits = "0123456789abcdef";
  return std::string("0x") + digits[byte >> 4] + digits[byte & 15];
}

// GS v 0 m xL xH yL yH, then xL+256·xH bytes per row for yL+256·yH rows, high bit leftmost.
size_t ReadRaster(const std::string& bytes, size_t at, EscPosJob& job) {
  if (at + 8 > bytes.size()) throw std::runtime_error("GS v 0 header cut short");
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const int m = byte(at + 3), row_bytes = byte(at + 4) + 256 * byte(at + 5), rows = byte(at + 6) + 256 * byte(at + 7);
  if (m > 3 && m != '0' && m != '1' && m != '2' && m != '3') throw std::runtime_error("GS v 0 mode " + Hex(m));
  const size_t size = static_cast<size_t>(row_bytes) * rows;
  if (at + 8 + size > bytes.size()) throw std::runtime_error("GS v 0 data cut short");
  if (job.picture.width != 0 && job.picture.width != row_bytes * 8) throw std::runtime_error("GS v 0 width changes");
  job.picture.width = row_bytes * 8;
  job.commands.push_back({"GS v 0", {m, row_bytes, rows}});
  for (int y = 0; y < rows; ++y) {
    std::vector<uint8_t> row(row_bytes * 8);
    for (int x = 0; x < row_bytes * 8; ++x) row[x] = (byte(at + 8 + y * row_bytes + x / 8) >> (7 - x % 8)) & 1;
    job.picture.rows.push_back(std::move(row));
  }
  return at + 8 + size;
}

// GS V m (m = 0, 1, 48, 49) or GS V m n (m = 65, 66).
size_t ReadCut(const std::string& bytes, size_t at, EscPosJob& job) {
  if (at + 3 > bytes.size()) throw std::runtime_error("GS V cut short");
  const int m = static_cast<unsigned char>(bytes[at + 2]);
  if (m == 0 || m == 1 || m == 48 || m == 49) {
    job.commands.push_back({"GS V", {m}});
    return at + 3;
  }
  if ((m == 65 || m == 66) && at + 4 <= bytes.size()) {
    job.commands.push_back({"GS V", {m, static_cast<unsigned char>(bytes[at + 3])}});
    return at + 4;
  }
  throw std::runtime_error("GS V mode " + Hex(m));
}

size_t ReadOne(const std::string& bytes, size_t at, EscPosJob& job) {
  const unsigned char first = bytes[at];
  const unsigned char second = at + 1 < bytes.size() ? bytes[at + 1] : 0;
  if (first == 0x1d && second == 'v' && at + 2 < bytes.size() && bytes[at + 2] == '0') return ReadRaster(bytes, at, job);
  if (first == 0x1d && second == 'V') return ReadCut(bytes, at, job);
  for (const Known& known : kSimple) {
    if (first != known.first || second != known.second) continue;
    if (at + 2 + known.parameters > bytes.size()) throw std::runtime_error(std::string(known.name) + " cut short");
    EscPosCommand command{known.name, {}};
    for (int i = 0; i < known.parameters; ++i) command.args.push_back(static_cast<unsigned char>(bytes[at + 2 + i]));
    job.commands.push_back(command);
    return at + 2 + known.parameters;
  }
  throw std::runtime_error("unknown bytes " + Hex(first) + " " + Hex(second));
}

}  // namespace

std::vector<std::string> EscPosJob::Names() const {
  std::vector<std::string> names;
  for (const EscPosCommand& command : commands) names.push_back(command.name);
  return names;
}

EscPosJob ReadEscPos(const std::string& bytes) {
  EscPosJob job;
  size_t at = 0;
  try {
    while (at < bytes.size()) at = ReadOne(bytes, at, job);
  } catch (const std::exception& e) {
    job.error = std::string(e.what()) + " at byte " + std::to_string(at);
  }
  return job;
}

Bitmap ThresholdPng(const std::string& path, int threshold) {
  cairo_surface_t* image = cairo_image_surface_create_from_png(path.c_str());
  Bitmap bitmap;
  if (cairo_surface_status(image) == CAIRO_STATUS_SUCCESS) {
    bitmap.width = cairo_image_surface_get_width(image);
    const unsigned char* data = cairo_image_surface_get_data(image);
    const int stride = cairo_image_surface_get_stride(image);
    for (int y = 0; y < cairo_image_surface_get_height(image); ++y) {
      std::vector<uint8_t> row(bitmap.width);
      for (int x = 0; x < bitmap.width; ++x) {
        const uint32_t pixel = *reinterpret_cast<const uint32_t*>(data + y * stride + 4 * x);
        const int luminance = (299 * ((pixel >> 16) & 255) + 587 * ((pixel >> 8) & 255) + 114 * (pixel & 255)) / 1000;
        row[x] = luminance < threshold;
      }
      bitmap.rows.push_back(std::move(row));
    }
  }
  cairo_surface_destroy(image);
  return bitmap;
}

Bitmap Rows(const Bitmap& bitmap, int first, int count) {
  Bitmap part;
  part.width = bitmap.width;
  for (int y = first; y < first + count && y < bitmap.Height(); ++y) part.rows.push_back(bitmap.rows[y]);
  return part;
}

std::string FirstDifference(const Bitmap& expected, const Bitmap& actual) {
  if (expected.width != actual.width || expected.Height() != actual.Height())
    return "size " + std::to_string(actual.width) + "x" + std::to_string(actual.Height()) + ", expected " +
           std::to_string(expected.width) + "x" + std::to_string(expected.Height());
  for (int y = 0; y < expected.Height(); ++y)
    for (int x = 0; x < expected.width; ++x)
      if (expected.rows[y][x] != actual.rows[y][x])
        return "dot (" + std::to_string(x) + ", " + std::to_string(y) + ") is " + std::to_string(actual.rows[y][x]);
  return "";
}

int BlackDots(const Bitmap& bitmap) {
  int count = 0;
  for (const auto& row : bitmap.rows)
    for (uint8_t dot : row) count += dot;
  return count;
}

}  // namespace quorvel::testing

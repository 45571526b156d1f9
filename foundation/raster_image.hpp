// Pictures a document carries (the company logo): decoded once from a PNG or JPEG file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quorvel {

struct RasterImage {
  std::string source;          // the file it was read from: how ops name it
  int width = 0, height = 0;   // pixels
  std::vector<uint8_t> rgb;    // width × height × 3, row by row, composited on white
  std::string jpeg;            // the file's own bytes when it is a JPEG (a PDF embeds them as they are)
};

// Reads and decodes the file now; a missing, unreadable or undecodable file raises the file
// error (75) naming it. The result is kept, so later lookups of the same source are free.
std::shared_ptr<const RasterImage> LoadRasterImage(const std::string& path);

// The image of a source already loaded, or loaded now (an ops file replayed in a new process).
std::shared_ptr<const RasterImage> RasterImageFor(const std::string& source);

}  // namespace quorvel

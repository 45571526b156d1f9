// PNG (libpng) and JPEG (libjpeg) decoding to RGB, with a process-wide cache by source.
#include "foundation/raster_image.hpp"

#include <png.h>
#include <jpeglib.h>

#include <csetjmp>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>
#include <mutex>
#include <sstream>

#include "foundation/errors.hpp"

namespace quorvel {

namespace {

constexpr int kMaxPixels = 40'000'000;  // a logo, not a poster: refuses decompression bombs

[[noreturn]] void Broken(const std::string& path, const std::string& why) {
  Raise(err::kFileError, "image " + path + ": " + why);
}

std::string ReadWhole(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) Broken(path, std::strerror(errno));
  std::ostringstream bytes;
  bytes << in.rdbuf();
  if (in.bad()) Broken(path, "read error");
  return bytes.str();
}

void DecodePng(const std::string& bytes, RasterImage& image) {
  png_image png;
  std::memset(&png, 0, sizeof png);
  png.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_memory(&png, bytes.data(), bytes.size()))
    Broken(image.source, std::string("not a readable PNG (") + png.message + ")");
  if (static_cast<int64_t>(png.width) * png.height > kMaxPixels) {
    png_image_free(&png);
    Broken(image.source, "more than 40 million pixels");
  }
  png.format = PNG_FORMAT_RGB;  // alpha is composited on the background below
  image.width = static_cast<int>(png.width);
  image.height = static_cast<int>(png.height);
  image.rgb.resize(PNG_IMAGE_SIZE(png));
  png_color white{255, 255, 255};
  if (!png_image_finish_read(&png, &white, image.rgb.data(), 0, nullptr))
    Broken(image.source, std::string("PNG data is damaged (") + png.message + ")");
}

struct JpegError {
  jpeg_error_mgr manager;
  std::jmp_buf jump;
  char message[JMSG_LENGTH_MAX];
};

void OnJpegError(j_common_ptr info) {
  auto* error = reinterpret_cast<JpegError*>(info->err);
  (*info->err->format_message)(info, error->message);
  std::longjmp(error->jump, 1);
}

void DecodeJpeg(const std::string& bytes, RasterImage& image) {
  jpeg_decompress_struct info;
  JpegError error;
  info.err = jpeg_std_error(&error.manager);
  error.manager.error_exit = OnJpegError;
  if (setjmp(error.jump)) {
    jpeg_destroy_decompress(&info);
    Broken(image.source, std::string("JPEG data is damaged (") + error.message + ")");
  }
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  jpeg_read_header(&info, TRUE);
  info.out_color_space = JCS_RGB;
  jpeg_start_decompress(&info);
  if (static_cast<int64_t>(info.output_width) * info.output_height > kMaxPixels) {
    std::strcpy(error.message, "more than 40 million pixels");
    std::longjmp(error.jump, 1);
  }
  image.width = static_cast<int>(info.output_width);
  image.height = static_cast<int>(info.output_height);
  image.rgb.resize(static_cast<size_t>(image.width) * image.height * 3);
  while (info.output_scanline < info.output_height) {
    JSAMPROW row = image.rgb.data() + static_cast<size_t>(info.output_scanline) * image.width * 3;
    jpeg_read_scanlines(&info, &row, 1);
  }
  jpeg_finish_decompress(&info);
  jpeg_destroy_decompress(&info);
  // Only baseline/progressive RGB or greyscale JPEGs decode to three components; PDF readers
  // take the same files as they are.
  image.jpeg = bytes;
}

std::shared_ptr<const RasterImage> Decode(const std::string& path) {
  auto image = std::make_shared<RasterImage>();
  image->source = path;
  const std::string bytes = ReadWhole(path);
  if (bytes.size() >= 8 && std::memcmp(bytes.data(), "\x89PNG\r\n\x1a\n", 8) == 0)
    DecodePng(bytes, *image);
  else if (bytes.size() >= 3 && std::memcmp(bytes.data(), "\xff\xd8\xff", 3) == 0)
    DecodeJpeg(bytes, *image);
  else
    Broken(path, "neither a PNG nor a JPEG file");
  if (image->width <= 0 || image->height <= 0) Broken(path, "the image has no pixels");
  return image;
}

std::mutex& CacheMutex() {
  static std::mutex mutex;
  return mutex;
}

std::map<std::string, std::shared_ptr<const RasterImage>>& Cache() {
  static std::map<std::string, std::shared_ptr<const RasterImage>> cache;
  return cache;
}

}  // namespace

std::shared_ptr<const RasterImage> LoadRasterImage(const std::string& path) {
  auto image = Decode(path);  // always read again: the host may have replaced the file
  std::lock_guard<std::mutex> lock(CacheMutex());
  Cache()[path] = image;
  return image;
}

std::shared_ptr<const RasterImage> RasterImageFor(const std::string& source) {
  {
    std::lock_guard<std::mutex> lock(CacheMutex());
    auto it = Cache().find(source);
    if (it != Cache().end()) return it->second;
  }
  return LoadRasterImage(source);
}

}  // namespace quorvel

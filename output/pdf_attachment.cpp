// Files attached to a PDF: read when attached, with the MIME type and relationship they carry.
#include "output/pdf_attachment.hpp"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "foundation/errors.hpp"
#include "foundation/utf8.hpp"

namespace quorvel {

namespace {

std::string MimeTypeOfName(const std::string& name) {
  static const std::array<std::pair<const char*, const char*>, 5> kByEnding{{
      {".xml", "text/xml"},
      {".pdf", "application/pdf"},
      {".json", "application/json"},
      {".csv", "text/csv"},
      {".txt", "text/plain"},
  }};
  const std::string ending = LowercaseEnding(name);
  for (const auto& [known, type] : kByEnding)
    if (ending == known) return type;
  return "application/octet-stream";
}

// type "/" subtype of the letters RFC 6838 allows in a registered name, in lower case.
std::string CheckedMimeType(const std::string& given) {
  const std::string type = AsciiLowercase(given);
  const size_t slash = type.find('/');
  const auto allowed = [](unsigned char c) { return std::isalnum(c) || std::strchr("!#$&-^_.+", c); };
  const bool valid = slash != std::string::npos && slash > 0 && slash + 1 < type.size() &&
                     type.find('/', slash + 1) == std::string::npos && type.size() <= 127 &&
                     std::all_of(type.begin(), type.begin() + slash, allowed) &&
                     std::all_of(type.begin() + slash + 1, type.end(), allowed);
  if (!valid) Raise(err::kInvalidArgument, "attachment MIME type \"" + given + "\": write it as type/subtype (text/xml)");
  return type;
}

// The relationships PDF 2.0 and PDF/A-3 name, spelt as they must appear in the file.
std::string CheckedRelationship(const std::string& given) {
  static const std::array<const char*, 8> kKnown{"Source", "Data",     "Alternative", "Supplement",
                                                 "EncryptedPayload", "FormData", "Schema", "Unspecified"};
  for (const char* known : kKnown)
    if (AsciiLowercase(given) == AsciiLowercase(known)) return known;
  Raise(err::kInvalidArgument, "attachment relationship \"" + given +
                                   "\": use Alternative, Data, Source, Supplement or Unspecified");
}

std::string PdfDateOf(std::time_t when) {
  std::tm utc{};
  gmtime_r(&when, &utc);
  char text[24];
  std::strftime(text, sizeof text, "D:%Y%m%d%H%M%SZ", &utc);
  return text;
}

}  // namespace

PdfAttachment ReadAttachment(const std::string& path, const std::string& mime_type, const std::string& relationship,
                             const std::string& description) {
  RequireUtf8(path, "attachment path");
  RequireUtf8(description, "attachment description");
  PdfAttachment attachment;
  attachment.name = std::filesystem::path(path).filename().string();
  attachment.mime_type = CheckedMimeType(mime_type.empty() ? MimeTypeOfName(attachment.name) : mime_type);
  attachment.relationship =
      CheckedRelationship(!relationship.empty() ? relationship
                          : attachment.name == kFacturXFileName ? "Alternative"
                                                                : "Unspecified");
  attachment.description = description;
  struct stat status {};
  errno = 0;
  const bool found = !attachment.name.empty() && ::stat(path.c_str(), &status) == 0;
  if (!found || !S_ISREG(status.st_mode))
    Raise(err::kFileError, "attachment " + path + ": cannot be read (" +
                               (found || errno == 0 ? "not a file" : std::strerror(errno)) + ")");
  std::ifstream in(path, std::ios::binary);
  if (!in.is_open()) Raise(err::kFileError, "attachment " + path + ": cannot be opened (" + std::strerror(errno) + ")");
  auto bytes = std::make_shared<std::string>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  if (in.bad()) Raise(err::kFileError, "attachment " + path + ": cannot be read");
  attachment.bytes = std::move(bytes);
  attachment.modified = PdfDateOf(status.st_mtime);
  return attachment;
}

void Attach(PrinterOutput& output, PdfAttachment attachment) {
  for (const PdfAttachment& known : output.attachments)
    if (known.name == attachment.name)
      Raise(err::kInvalidArgument, "a file named " + attachment.name + " is attached already");
  output.attachments.push_back(std::move(attachment));
}

}  // namespace quorvel

// The PDF/A-3b parts and attached files of a direct PDF, written at the document's end.
#include "output/pdf_archive.hpp"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "foundation/errors.hpp"
#include "foundation/utf8.hpp"
#include "output/pdf_attachment.hpp"
#include "output/pdf_writer.hpp"

namespace quorvel::pdf {

namespace {

// An RGB display profile: the output intent's /N 3 must agree with the profile's own colour
// space, and an RGB intent is what lets the pages' DeviceRGB images stand in a PDF/A file.
std::string ReadSrgbProfile() {
  std::ifstream in(kSrgbProfilePath, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (!in.is_open() || bytes.size() < 128)
    Raise(err::kFileError, std::string("PDF/A needs the sRGB colour profile ") + kSrgbProfilePath +
                               " (package icc-profiles-free), and it cannot be read");
  if (bytes.compare(16, 4, "RGB ") != 0 || bytes.compare(36, 4, "acsp") != 0)
    Raise(err::kFileError, std::string(kSrgbProfilePath) + " is not an RGB colour profile");
  return bytes;
}

// A MIME type as a PDF name: every byte outside the regular characters written as #XX, so
// "text/xml" becomes /text#2Fxml.
void AppendName(std::string& out, std::string_view name) {
  out += '/';
  for (unsigned char c : name) {
    const bool regular = c > 0x20 && c < 0x7F && !std::strchr("/#()<>[]{}%", c);
    if (regular) {
      out += static_cast<char>(c);
    } else {
      out += '#';
      AppendHex(out, c, 2);
    }
  }
}

// The byte-string file name that older readers show: non-ASCII letters replaced.
std::string AsciiFileName(std::string_view name) {
  std::string ascii(name);
  for (char& c : ascii)
    if (static_cast<unsigned char>(c) >= 0x80) c = '_';
  return ascii;
}

void AppendReference(std::string& out, int object) {
  AppendInt(out, object);
  out += " 0 R";
}

}  // namespace

std::string TextString(std::string_view utf8) {
  if (std::all_of(utf8.begin(), utf8.end(), [](unsigned char c) { return c >= 0x20 && c < 0x7F; }))
    return std::string(utf8);
  std::string bytes = "\xFE\xFF";
  const auto unit = [&](uint32_t value) {
    bytes += static_cast<char>(value >> 8);
    bytes += static_cast<char>(value & 0xFF);
  };
  ForEachCodePoint(utf8, [&](char32_t cp) {
    if (cp < 0x10000) {
      unit(cp);
    } else {
      unit(0xD800 + ((cp - 0x10000) >> 10));
      unit(0xDC00 + ((cp - 0x10000) & 0x3FF));
    }
  });
  return bytes;
}

ArchiveParts::ArchiveParts(const PrinterOutput& output)
    : pdfa_(output.pdfa),
      title_(std::filesystem::path(output.path).stem().string()),
      attachments_(output.attachments) {
  if (pdfa_) profile_ = ReadSrgbProfile();
  // The name tree of embedded files is searched by key, so its keys go in byte order.
  std::sort(attachments_.begin(), attachments_.end(), [](const PdfAttachment& a, const PdfAttachment& b) {
    return TextString(a.name) < TextString(b.name);
  });
}

std::string ArchiveParts::Write(ObjectWriter& writer, const std::string& date, bool notdef_drawn) {
  std::string entries;
  if (pdfa_ && notdef_drawn)
    Raise(err::kInvalidArgument, "PDF/A does not allow the missing-glyph box, and a character of this document "
                                 "has no installed font (the printer's text warnings name it)");
  if (pdfa_) {
    XmpFacts facts{title_, date, {}};
    for (const PdfAttachment& attachment : attachments_)
      if (attachment.name == kFacturXFileName) facts.factur_x_level = FacturXLevel(*attachment.bytes);
    const int metadata = writer.Reserve(), profile = writer.Reserve();
    // Left uncompressed, as PDF/A asks, so that tools that do not read PDF can still find it.
    writer.Stream(metadata, "/Type/Metadata/Subtype/XML", XmpMetadata(facts));
    writer.DeflatedStream(profile, "/N 3", profile_);
    entries += "/Metadata ";
    AppendReference(entries, metadata);
    entries += "/OutputIntents[<</Type/OutputIntent/S/GTS_PDFA1/OutputConditionIdentifier(sRGB IEC61966-2.1)"
               "/RegistryName(http://www.color.org)/Info(sRGB IEC61966-2.1)/DestOutputProfile ";
    AppendReference(entries, profile);
    entries += ">>]";
  }
  if (!attachments_.empty()) entries += EmbedFiles(writer);
  return entries;
}

// Each file as an embedded-file stream and its /Filespec entry; the catalog lists them in
// the EmbeddedFiles name tree (for readers' attachment panes) and in /AF (the document's
// associated files, which PDF/A-3 asks for).
std::string ArchiveParts::EmbedFiles(ObjectWriter& writer) {
  std::string names = "/Names<</EmbeddedFiles<</Names[", associated = "/AF[";
  for (const PdfAttachment& attachment : attachments_) {
    const int stream = writer.Reserve(), file_entry = writer.Reserve();
    std::string dictionary = "/Type/EmbeddedFile/Subtype";
    AppendName(dictionary, attachment.mime_type);
    dictionary += "/Params<</Size ";
    AppendInt(dictionary, static_cast<int64_t>(attachment.bytes->size()));
    dictionary += "/ModDate(" + attachment.modified + ")>>";
    writer.DeflatedStream(stream, dictionary, *attachment.bytes);
    std::string& out = writer.Begin(file_entry);
    out += "<</Type/Filespec/F";
    AppendLiteral(out, AsciiFileName(attachment.name));
    out += "/UF";
    AppendLiteral(out, TextString(attachment.name));
    if (!attachment.description.empty()) {
      out += "/Desc";
      AppendLiteral(out, TextString(attachment.description));
    }
    out += "/AFRelationship/" + attachment.relationship + "/EF<</F ";
    AppendReference(out, stream);
    out += "/UF ";
    AppendReference(out, stream);
    out += ">>>>";
    writer.End();
    AppendLiteral(names, TextString(attachment.name));
    AppendReference(names, file_entry);
    AppendReference(associated, file_entry);
    names += ' ';
    associated += ' ';
  }
  return names + "]>>>>" + associated + "]";
}

std::string ArchiveParts::InfoEntries() const {
  if (!pdfa_) return {};
  std::string entries = "/Title";
  AppendLiteral(entries, TextString(title_));
  return entries;
}

}  // namespace quorvel::pdf

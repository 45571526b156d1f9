// The PDF/A-3b parts and attached files of a direct PDF: XMP metadata, the sRGB output intent,
// embedded files with their relationships, and the catalog and Info entries that point at them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "output/device.hpp"

namespace quorvel::pdf {

class ObjectWriter;

// The Info dictionary's producer and creator; a PDF/A file repeats them in its metadata.
inline constexpr std::string_view kProducer = "Quorvel";

// The colour profile of the output intent (Debian package icc-profiles-free).
inline constexpr const char* kSrgbProfilePath = "/usr/share/color/icc/sRGB.icc";

// What the XMP packet states; every text is UTF-8.
struct XmpFacts {
  std::string title;
  std::string date;               // the Info dictionary's "D:YYYYMMDDhhmmssZ"
  std::string factur_x_level;     // empty unless a Factur-X invoice is attached
};

// The XMP packet of a PDF/A-3b document, with the Factur-X extension schema when asked.
std::string XmpMetadata(const XmpFacts& facts);
// The Factur-X conformance level named by the invoice XML's guideline ID; EN 16931 when it
// names none that is known.
std::string FacturXLevel(std::string_view invoice_xml);
// UTF-8 as a PDF text string's bytes: ASCII as it is, anything else UTF-16BE with its mark.
std::string TextString(std::string_view utf8);

// A document's PDF/A and attachment parts, written when the document ends. A document that asks
// for neither gets no objects and no entries, so its file is the same as without this.
class ArchiveParts {
 public:
  // Reads the output-intent profile now when PDF/A is asked for, so a missing one is an error
  // before anything is drawn.
  explicit ArchiveParts(const PrinterOutput& output);

  // Writes the metadata, profile and embedded files; returns the catalog entries naming them.
  // A PDF/A document that drew the missing-glyph box (.notdef, which PDF/A forbids) is refused.
  std::string Write(ObjectWriter& writer, const std::string& date, bool notdef_drawn);
  // Entries the Info dictionary gains: the title that the metadata repeats.
  std::string InfoEntries() const;

 private:
  std::string EmbedFiles(ObjectWriter& writer);

  bool pdfa_;
  std::string title_;
  std::vector<PdfAttachment> attachments_;
  std::string profile_;
};

}  // namespace quorvel::pdf

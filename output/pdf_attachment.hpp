// Files attached to a PDF: read when the host attaches them, their MIME type and relationship
// worked out from the file name when not given.
#pragma once

#include <string>

#include "output/device.hpp"

namespace quorvel {

// The Factur-X / ZUGFeRD invoice file: attached under this name it is the printed invoice's
// Alternative, and a PDF/A document describes it in its metadata.
inline constexpr const char* kFacturXFileName = "factur-x.xml";

// Reads the file at `path` now (a missing or unreadable file is the file error naming it).
// An empty `mime_type` comes from the ending, an empty `relationship` from the name:
// Alternative for factur-x.xml, Unspecified for any other file.
PdfAttachment ReadAttachment(const std::string& path, const std::string& mime_type = {},
                             const std::string& relationship = {}, const std::string& description = {});

// Adds the attachment to the output; a second file of the same name is refused, since the PDF
// finds its attachments by name.
void Attach(PrinterOutput& output, PdfAttachment attachment);

}  // namespace quorvel

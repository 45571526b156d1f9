// File endings pick the device, the ESC/POS destination and an attachment's MIME type whatever
// their case: "INVOICE.PDF" from a Windows host is a PDF like "invoice.pdf".
#include <gtest/gtest.h>


#include "foundation/errors.hpp"
#include "output/device.hpp"
#include "output/escpos/escpos_transport.hpp"
#include "output/pdf_attachment.hpp"
#include "robustness/robustness_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel::testing {
namespace {

TEST(FileEndings, PickTheDeviceTheDestinationAndTheMimeTypeInAnyCase) {
  const std::pair<const char*, const char*> devices[] = {
      {"a/Invoice.PDF", "pdf"}, {"page.Png", "png"}, {"p.SVG", "svg"},
      {"ops.JSONL", "ops"},     {"slip.EscPos", "escpos"}};
  for (const auto& [path, device] : devices) EXPECT_EQ(PrinterOutput::ForPath(path).device, device) << path;

  std::string context;
  EXPECT_EQ(ErrorNumberOf([] { PrinterOutput::ForPath("invoice.pdfx"); }, &context), err::kInvalidArgument);
  EXPECT_NE(context.find(".pdf"), std::string::npos) << context;  // the refusal lists what is known

  EXPECT_EQ(escpos::ParseDestination("SLIP.ESCPOS").kind, escpos::Destination::Kind::File);
  EXPECT_EQ(escpos::ParseDestination("/dev/usb/lp0").kind, escpos::Destination::Kind::DeviceNode);
  EXPECT_EQ(escpos::ParseDestination(".escpos").kind, escpos::Destination::Kind::DeviceNode)
      << "a bare ending names no file";

  const std::string dir = TempDir("endings");
  const std::pair<const char*, const char*> types[] = {
      {"Factur-X.XML", "text/xml"}, {"lines.CSV", "text/csv"}, {"scan.Bin", "application/octet-stream"}};
  for (const auto& [name, type] : types) {
    WriteFile(dir + "/" + name, "x");
    EXPECT_EQ(ReadAttachment(dir + "/" + name).mime_type, type) << name;
  }
  EXPECT_EQ(ReadAttachment(dir + "/lines.CSV", "Text/CSV", "data").relationship, "Data");
}

}  // namespace
}  // namespace quorvel::testing

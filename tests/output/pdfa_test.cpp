// PDF/A-3b and attached files of the direct PDF device, read back by qpdf (structure, attachments,
// metadata, output intent), poppler (text) and Python's XML parser (the XMP packet).
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "automation/document_job.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "output/pdf_archive.hpp"
#include "output/pdf_attachment.hpp"
#include "quorvel.h"
#include "robustness/robustness_helpers.hpp"
#include "support/ops_helpers.hpp"
#include "support/qpdf_json.hpp"

namespace quorvel::testing {
namespace {

constexpr const char* kSrgb = "/usr/share/color/icc/sRGB.icc";

// A Factur-X BASIC invoice in miniature: enough for its guideline ID to name the level.
const std::string kInvoiceXml =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<rsm:CrossIndustryInvoice "
    "xmlns:rsm=\"urn:un:unece:uncefact:data:standard:CrossIndustryInvoice:100\" "
    "xmlns:ram=\"urn:un:unece:uncefact:data:standard:ReusableAggregateBusinessInformationEntity:100\">\n"
    "<rsm:ExchangedDocumentContext><ram:GuidelineSpecifiedDocumentContextParameter>"
    "<ram:ID>urn:cen.eu:en16931:2017#compliant#urn:factur-x.eu:1p0:basic</ram:ID>"
    "</ram:GuidelineSpecifiedDocumentContextParameter></rsm:ExchangedDocumentContext>\n"
    "<rsm:ExchangedDocument><ram:ID>INV-00318</ram:ID></rsm:ExchangedDocument>\n</rsm:CrossIndustryInvoice>\n";

// Every byte value, carriage returns and parentheses included: what a PDF string or stream
// writer is most likely to mangle.
std::string AllBytes() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  return bytes + "\r\n(unbalanced \\ paren";
}

void PrintInvoice(PrinterOutput output) {
  output.pdf_creation_date = "2026-01-02T03:04:05";
  PrinterSurface& printer = SystemPrinter();
  printer.SetPaper(Paper::A4());
  printer.SetOutput(output);
  PrintJobOnSystemPrinter(LoadDocumentJobFile(QUORVEL_SOURCE_DIR "/demo/samples/invoice.json"));
  if (printer.InDocument()) printer.EndDoc();
}

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

void ExpectCleanCheck(const std::string& pdf) {
  const std::string check = RunCommand("qpdf --check " + pdf + " 2>&1; true");
  EXPECT_TRUE(Contains(check, "No syntax or stream encoding errors")) << check;
  EXPECT_FALSE(Contains(check, "WARNING")) << check;
}

// The catalog's PDF/A parts: an uncompressed XMP packet that Python's parser accepts, whose
// identification, dates, producer and title agree with the Info dictionary (worked out from the
// fixed date by hand), and an sRGB output intent carrying the profile file's own bytes.
void ExpectPdfAParts(const QpdfJson& pdf, const std::string& path, const std::string& title) {
  const nlohmann::json& catalog = pdf.Dictionary(pdf.Trailer()["/Root"]);
  const nlohmann::json& metadata = pdf.Dictionary(catalog["/Metadata"]);
  EXPECT_EQ(metadata["/Type"], "/Metadata");
  EXPECT_EQ(metadata["/Subtype"], "/XML");
  EXPECT_FALSE(metadata.contains("/Filter"));
  const std::string xmp = pdf.StreamData(catalog["/Metadata"]);
  const std::string xmp_file = WriteFile(path + ".xmp", xmp);
  RunCommand("python3 -c 'import sys, xml.dom.minidom as d; d.parse(sys.argv[1])' " + xmp_file);
  for (const std::string& part : std::vector<std::string>{
           "<pdfaid:part>3</pdfaid:part>", "<pdfaid:conformance>B</pdfaid:conformance>",
           "<xmp:CreateDate>2026-01-02T03:04:05Z</xmp:CreateDate>", "<xmp:ModifyDate>2026-01-02T03:04:05Z</xmp:ModifyDate>",
           "<pdf:Producer>Quorvel</pdf:Producer>", "<rdf:li xml:lang=\"x-default\">" + title + "</rdf:li>"})
    EXPECT_TRUE(Contains(xmp, part)) << part;
  const nlohmann::json& info = pdf.Dictionary(pdf.Trailer()["/Info"]);
  EXPECT_EQ(QpdfJson::Text(info["/CreationDate"]), "D:20260102030405Z");
  EXPECT_EQ(QpdfJson::Text(info["/ModDate"]), "D:20260102030405Z");
  EXPECT_EQ(QpdfJson::Text(info["/Producer"]), "Quorvel");
  EXPECT_EQ(QpdfJson::Text(info["/Title"]), title);
  ASSERT_EQ(catalog["/OutputIntents"].size(), 1u);
  const nlohmann::json& intent = catalog["/OutputIntents"][0];
  EXPECT_EQ(intent["/S"], "/GTS_PDFA1");
  EXPECT_EQ(pdf.Dictionary(intent["/DestOutputProfile"])["/N"], 3);
  EXPECT_EQ(pdf.StreamData(intent["/DestOutputProfile"]), ReadFile(kSrgb));
  EXPECT_TRUE(RunCommand("head -c 16 " + path).rfind("%PDF-1.7\n%\xE2\xE3\xCF\xD3", 0) == 0);
}

// The file entry (/Filespec) of the attachment named `name` in the catalog's /AF array.
nlohmann::json FileEntry(const QpdfJson& pdf, const std::string& name) {
  const nlohmann::json& catalog = pdf.Dictionary(pdf.Trailer()["/Root"]);
  for (const nlohmann::json& reference : catalog["/AF"]) {
    const nlohmann::json& file_entry = pdf.Dictionary(reference);
    if (QpdfJson::Text(file_entry["/UF"]) == name) return file_entry;
  }
  ADD_FAILURE() << name << " is not in /AF";
  return nlohmann::json::object();
}

class PdfA : public ::testing::Test {
 protected:
  void SetUp() override { dir_ = TempDir("pdfa-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name())); }
  // The system printer is shared by every test of the process: later ones get a plain output.
  void TearDown() override {
    if (!SystemPrinter().InDocument()) SystemPrinter().SetOutput(PrinterOutput{});
  }
  std::string dir_;
};

// The Factur-X case through the C++ API: the XML as the invoice's Alternative, a binary file
// beside it, each returned byte for byte, and the Factur-X schema in the metadata.
TEST_F(PdfA, FacturXInvoiceWithASecondAttachment) {
  PrinterOutput output = PrinterOutput::ForPath(dir_ + "/invoice.pdf");
  output.pdfa = true;
  Attach(output, ReadAttachment(WriteFile(dir_ + "/factur-x.xml", kInvoiceXml)));
  Attach(output, ReadAttachment(WriteFile(dir_ + "/scan.bin", AllBytes()), "", "Supplement", "Scanned délivery note"));
  PrintInvoice(output);
  const std::string pdf = dir_ + "/invoice.pdf";
  ExpectCleanCheck(pdf);
  const std::string list = RunCommand("qpdf --list-attachments " + pdf);
  EXPECT_TRUE(Contains(list, "factur-x.xml")) << list;
  EXPECT_TRUE(Contains(list, "scan.bin")) << list;
  EXPECT_EQ(RunCommand("qpdf --show-attachment=factur-x.xml " + pdf), kInvoiceXml);
  EXPECT_EQ(RunCommand("qpdf --show-attachment=scan.bin " + pdf), AllBytes());

  const QpdfJson json(pdf);
  ExpectPdfAParts(json, pdf, "invoice");
  const std::string xmp = json.StreamData(json.Dictionary(json.Trailer()["/Root"])["/Metadata"]);
  for (const char* part : {"xmlns:fx=\"urn:factur-x:pdfa:CrossIndustryDocument:invoice:1p0#\"",
                           "<fx:DocumentFileName>factur-x.xml</fx:DocumentFileName>",
                           "<fx:DocumentType>INVOICE</fx:DocumentType>", "<fx:ConformanceLevel>BASIC</fx:ConformanceLevel>",
                           "<pdfaSchema:namespaceURI>urn:factur-x:pdfa:CrossIndustryDocument:invoice:1p0#",
                           "<pdfaSchema:prefix>fx</pdfaSchema:prefix>"})
    EXPECT_TRUE(Contains(xmp, part)) << part;

  const nlohmann::json xml = FileEntry(json, "factur-x.xml");
  EXPECT_EQ(xml["/AFRelationship"], "/Alternative");
  EXPECT_EQ(QpdfJson::Text(xml["/F"]), "factur-x.xml");
  const nlohmann::json& xml_stream = json.Dictionary(xml["/EF"]["/F"]);
  EXPECT_EQ(xml_stream["/Type"], "/EmbeddedFile");
  EXPECT_EQ(xml_stream["/Params"]["/Size"], kInvoiceXml.size());
  EXPECT_EQ(QpdfJson::Text(xml_stream["/Params"]["/ModDate"]).rfind("D:20", 0), 0u);
  const nlohmann::json scan = FileEntry(json, "scan.bin");
  EXPECT_EQ(scan["/AFRelationship"], "/Supplement");
  EXPECT_EQ(QpdfJson::Text(scan["/Desc"]), "Scanned d\u00e9livery note");  // from UTF-16 in the file
  // The MIME type as a PDF name, its slash escaped: looked for in the file's own bytes, since
  // qpdf shows names already decoded.
  const std::string bytes = ReadFile(pdf);
  EXPECT_TRUE(Contains(bytes, "/Subtype/text#2Fxml/")) << "the XML's MIME type";
  EXPECT_TRUE(Contains(bytes, "/Subtype/application#2Foctet-stream/")) << "the binary file's MIME type";
  EXPECT_EQ(json.Dictionary(json.Trailer()["/Root"])["/AF"].size(), 2u);

  const std::string text = RunCommand("pdftotext " + pdf + " -");
  EXPECT_TRUE(Contains(text, "INV-00318") && Contains(text, "Whiteboard markers, four colours")) << text;
}

// PDF/A alone: the metadata and intent, no Factur-X schema, nothing attached; and a plain
// document of the same printer carries none of these parts.
TEST_F(PdfA, WithoutAttachmentsAndPlain) {
  PrinterOutput output = PrinterOutput::ForPath(dir_ + "/archive.pdf");
  output.pdfa = true;
  PrintInvoice(output);
  ExpectCleanCheck(dir_ + "/archive.pdf");
  const QpdfJson json(dir_ + "/archive.pdf");
  ExpectPdfAParts(json, dir_ + "/archive.pdf", "archive");
  const nlohmann::json& catalog = json.Dictionary(json.Trailer()["/Root"]);
  EXPECT_FALSE(Contains(json.StreamData(catalog["/Metadata"]), "fx:"));
  EXPECT_FALSE(catalog.contains("/AF") || catalog.contains("/Names"));
  EXPECT_TRUE(Contains(RunCommand("qpdf --list-attachments " + dir_ + "/archive.pdf"), "no embedded files"));

  PrintInvoice(PrinterOutput::ForPath(dir_ + "/plain.pdf"));
  const QpdfJson plain(dir_ + "/plain.pdf");
  const nlohmann::json& plain_catalog = plain.Dictionary(plain.Trailer()["/Root"]);
  EXPECT_EQ(plain_catalog.size(), 2u) << plain_catalog.dump();  // /Type and /Pages only
  EXPECT_FALSE(plain.Dictionary(plain.Trailer()["/Info"]).contains("/Title"));
}

// Bad requests are refused when they are made, naming what is wrong, and nothing is written.
TEST_F(PdfA, BadRequestsAreRefusedWhenMade) {
  std::string context;
  EXPECT_EQ(ErrorNumberOf([&] { ReadAttachment(dir_ + "/no-such.xml"); }, &context), err::kFileError);
  EXPECT_TRUE(Contains(context, dir_ + "/no-such.xml")) << context;
  EXPECT_EQ(ErrorNumberOf([&] { ReadAttachment(dir_); }), err::kFileError) << "a folder";
  const std::string xml = WriteFile(dir_ + "/factur-x.xml", kInvoiceXml);
  EXPECT_EQ(ErrorNumberOf([&] { ReadAttachment(xml, "", "Friend"); }), err::kInvalidArgument);
  EXPECT_EQ(ErrorNumberOf([&] { ReadAttachment(xml, "xml"); }), err::kInvalidArgument);
  PrinterOutput twice = PrinterOutput::ForPath(dir_ + "/twice.pdf");
  Attach(twice, ReadAttachment(xml));
  EXPECT_EQ(ErrorNumberOf([&] { Attach(twice, ReadAttachment(xml)); }), err::kInvalidArgument);

  PrinterOutput png = PrinterOutput::ForPath(dir_ + "/page.png");
  png.pdfa = true;
  EXPECT_EQ(ErrorNumberOf([&] { CheckOutputWritable(png); }, &context), err::kInvalidArgument);
  EXPECT_TRUE(Contains(context, "PDF/A") && Contains(context, "png")) << context;
  PrinterOutput cairo = PrinterOutput::ForPath(dir_ + "/cairo.pdf");
  cairo.device = "pdf-cairo";
  Attach(cairo, ReadAttachment(xml));
  EXPECT_EQ(ErrorNumberOf([&] { OpenDevice(cairo); }), err::kInvalidArgument) << "attachments, other PDF device";
  EXPECT_EQ(ErrorNumberOf([&] { PrintInvoice(png); }), err::kInvalidArgument);
  EXPECT_FALSE(std::filesystem::exists(dir_ + "/page-1.png"));
}

// PDF/A forbids the missing-glyph box: a character no font has fails the document, and no file
// is left, where the same document without PDF/A prints with the box.
TEST_F(PdfA, MissingCharacterFailsThePdfA) {
  std::string text = ReadFile(QUORVEL_SOURCE_DIR "/demo/samples/invoice.json");
  const size_t number = text.find("INV-00318");
  ASSERT_NE(number, std::string::npos);
  text.insert(number + 9, R"( \ud83e\udee8)");  // U+1FAE8, in no installed font
  std::istringstream in(text);
  const DocumentJob job = LoadDocumentJobStream(in, "the test invoice");
  PrinterSurface& printer = SystemPrinter();
  PrinterOutput output = PrinterOutput::ForPath(dir_ + "/boxes.pdf");
  printer.SetPaper(Paper::A4());
  printer.SetOutput(output);
  PrintJobOnSystemPrinter(job);
  ASSERT_TRUE(std::filesystem::exists(dir_ + "/boxes.pdf"));
  ASSERT_FALSE(printer.LastTextWarnings().empty());
  output.path = dir_ + "/archive.pdf";
  output.pdfa = true;
  printer.SetOutput(output);
  std::string context;
  EXPECT_EQ(ErrorNumberOf([&] { PrintJobOnSystemPrinter(job); }, &context), err::kInvalidArgument);
  EXPECT_TRUE(Contains(context, "missing-glyph")) << context;
  if (printer.InDocument()) printer.KillDoc();
  EXPECT_FALSE(std::filesystem::exists(dir_ + "/archive.pdf"));
}

// The C interface: PDF/A and attachments on the system printer's current output, refused on a
// PNG output, and gone after the output is set again.
TEST_F(PdfA, CInterfaceOnTheSystemPrinter) {
  const std::string xml = WriteFile(dir_ + "/factur-x.xml", kInvoiceXml);
  const std::string notes = WriteFile(dir_ + "/notes.txt", "paid in cash\n");
  ASSERT_EQ(quorvel_printer_set_output((dir_ + "/page.png").c_str(), "a4"), QUORVEL_OK);
  EXPECT_EQ(quorvel_printer_set_pdfa(1), err::kInvalidArgument);
  EXPECT_EQ(quorvel_printer_attach(xml.c_str(), nullptr, nullptr, nullptr), err::kInvalidArgument);
  EXPECT_FALSE(SystemPrinter().Output().pdfa) << "a refused request changes nothing";

  ASSERT_EQ(quorvel_printer_set_output((dir_ + "/c.pdf").c_str(), "a4"), QUORVEL_OK);
  EXPECT_EQ(quorvel_printer_attach((dir_ + "/gone.xml").c_str(), nullptr, nullptr, nullptr), err::kFileError);
  int32_t number = 0;
  const char* message = nullptr;
  quorvel_last_error(&number, &message);
  EXPECT_TRUE(Contains(message, "gone.xml")) << message;
  ASSERT_EQ(quorvel_printer_set_pdfa(1), QUORVEL_OK);
  ASSERT_EQ(quorvel_printer_attach(xml.c_str(), nullptr, nullptr, nullptr), QUORVEL_OK);
  ASSERT_EQ(quorvel_printer_attach(notes.c_str(), "text/plain", "data", "cash note"), QUORVEL_OK);
  PrintJobOnSystemPrinter(LoadDocumentJobFile(QUORVEL_SOURCE_DIR "/demo/samples/invoice.json"));
  const std::string pdf = dir_ + "/c.pdf";
  ExpectCleanCheck(pdf);
  EXPECT_EQ(RunCommand("qpdf --show-attachment=notes.txt " + pdf), "paid in cash\n");
  const QpdfJson json(pdf);
  EXPECT_EQ(FileEntry(json, "notes.txt")["/AFRelationship"], "/Data");
  EXPECT_EQ(FileEntry(json, "factur-x.xml")["/AFRelationship"], "/Alternative");
  EXPECT_TRUE(json.Dictionary(json.Trailer()["/Root"]).contains("/Metadata"));

  ASSERT_EQ(quorvel_printer_clear_attachments(), QUORVEL_OK);
  EXPECT_TRUE(SystemPrinter().Output().attachments.empty());
  ASSERT_EQ(quorvel_printer_set_output((dir_ + "/again.pdf").c_str(), nullptr), QUORVEL_OK);
  EXPECT_FALSE(SystemPrinter().Output().pdfa) << "a new output starts without PDF/A";
}

// The conformance level follows the invoice XML's guideline ID.
TEST(FacturX, LevelFromTheGuidelineId) {
  const auto level = [](const std::string& id) {
    return pdf::FacturXLevel("<ram:GuidelineSpecifiedDocumentContextParameter><ram:ID>" + id + "</ram:ID>");
  };
  EXPECT_EQ(level("urn:factur-x.eu:1p0:minimum"), "MINIMUM");
  EXPECT_EQ(level("urn:factur-x.eu:1p0:basicwl"), "BASIC WL");
  EXPECT_EQ(level("urn:cen.eu:en16931:2017#compliant#urn:factur-x.eu:1p0:basic"), "BASIC");
  EXPECT_EQ(level("urn:cen.eu:en16931:2017"), "EN 16931");
  EXPECT_EQ(level("urn:cen.eu:en16931:2017#conformant#urn:factur-x.eu:1p0:extended"), "EXTENDED");
  EXPECT_EQ(pdf::FacturXLevel("<no-context/>"), "EN 16931");
}

}  // namespace
}  // namespace quorvel::testing

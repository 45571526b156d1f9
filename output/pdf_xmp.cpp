// The XMP metadata packet of a PDF/A-3b document, and the Factur-X extension schema that a
// custom namespace needs before a PDF/A reader accepts it.
#include <string>

#include "foundation/errors.hpp"
#include "foundation/markup_text.hpp"
#include "output/pdf_archive.hpp"
#include "output/pdf_attachment.hpp"

namespace quorvel::pdf {

namespace {

constexpr const char* kFacturXNamespace = "urn:factur-x:pdfa:CrossIndustryDocument:invoice:1p0#";

// "D:YYYYMMDDhhmmssZ" as the XMP date of the same instant, "YYYY-MM-DDThh:mm:ssZ".
std::string XmpDate(const std::string& pdf_date) {
  if (pdf_date.size() != 17 || pdf_date.compare(0, 2, "D:") != 0 || pdf_date.back() != 'Z')
    Raise(err::kInvalidArgument, "PDF date \"" + pdf_date + "\" is not D:YYYYMMDDhhmmssZ");
  const std::string d = pdf_date.substr(2, 14);
  return d.substr(0, 4) + "-" + d.substr(4, 2) + "-" + d.substr(6, 2) + "T" + d.substr(8, 2) + ":" +
         d.substr(10, 2) + ":" + d.substr(12, 2) + "Z";
}

std::string FacturXProperty(const char* name, const char* description) {
  return std::string("<rdf:li rdf:parseType=\"Resource\"><pdfaProperty:name>") + name +
         "</pdfaProperty:name><pdfaProperty:valueType>Text</pdfaProperty:valueType>"
         "<pdfaProperty:category>external</pdfaProperty:category><pdfaProperty:description>" +
         description + "</pdfaProperty:description></rdf:li>\n";
}

// The fx: properties, and their schema description: PDF/A accepts properties of a namespace it
// does not know only when the packet itself describes that namespace.
std::string FacturXDescriptions(const std::string& level) {
  std::string out = std::string("<rdf:Description rdf:about=\"\" xmlns:fx=\"") + kFacturXNamespace + "\">\n" +
                    "<fx:DocumentType>INVOICE</fx:DocumentType>\n<fx:DocumentFileName>" + kFacturXFileName +
                    "</fx:DocumentFileName>\n<fx:Version>1.0</fx:Version>\n<fx:ConformanceLevel>" +
                    MarkupEscaped(level) + "</fx:ConformanceLevel>\n</rdf:Description>\n";
  out += "<rdf:Description rdf:about=\"\" xmlns:pdfaExtension=\"http://www.aiim.org/pdfa/ns/extension/\""
         " xmlns:pdfaSchema=\"http://www.aiim.org/pdfa/ns/schema#\""
         " xmlns:pdfaProperty=\"http://www.aiim.org/pdfa/ns/property#\">\n"
         "<pdfaExtension:schemas><rdf:Bag><rdf:li rdf:parseType=\"Resource\">\n"
         "<pdfaSchema:schema>Factur-X PDFA Extension Schema</pdfaSchema:schema>\n"
         "<pdfaSchema:namespaceURI>";
  out += kFacturXNamespace;
  out += "</pdfaSchema:namespaceURI>\n<pdfaSchema:prefix>fx</pdfaSchema:prefix>\n<pdfaSchema:property><rdf:Seq>\n";
  out += FacturXProperty("DocumentFileName", "The name of the embedded XML document");
  out += FacturXProperty("DocumentType", "The type of the hybrid document in capital letters, e.g. INVOICE or ORDER");
  out += FacturXProperty("Version", "The actual version of the standard applying to the embedded XML document");
  out += FacturXProperty("ConformanceLevel", "The conformance level of the embedded XML document");
  out += "</rdf:Seq></pdfaSchema:property>\n</rdf:li></rdf:Bag></pdfaExtension:schemas>\n</rdf:Description>\n";
  return out;
}

}  // namespace

std::string FacturXLevel(std::string_view invoice_xml) {
  // The guideline ID sits in the document context: urn:cen.eu:en16931:2017 alone for EN 16931,
  // with "#conformant#urn:factur-x.eu:1p0:extended" or "#compliant#urn:factur-x.eu:1p0:basic"
  // for the others (minimum and basicwl have IDs of their own).
  const size_t context = invoice_xml.find("GuidelineSpecifiedDocumentContextParameter");
  if (context == std::string_view::npos) return "EN 16931";
  const size_t id = invoice_xml.find("ID>", context);
  const size_t end = id == std::string_view::npos ? id : invoice_xml.find('<', id);
  if (end == std::string_view::npos) return "EN 16931";
  const std::string_view guideline = invoice_xml.substr(id + 3, end - id - 3);
  const auto has = [&](std::string_view part) { return guideline.find(part) != std::string_view::npos; };
  if (has(":extended")) return "EXTENDED";
  if (has(":basicwl")) return "BASIC WL";
  if (has(":basic")) return "BASIC";
  if (has(":minimum")) return "MINIMUM";
  return "EN 16931";
}

std::string XmpMetadata(const XmpFacts& facts) {
  const std::string date = XmpDate(facts.date);
  const std::string producer = MarkupEscaped(kProducer);
  // The packet header has no bytes or encoding attribute: PDF/A forbids them.
  std::string out = "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
                    "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
                    "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
                    "<rdf:Description rdf:about=\"\" xmlns:pdfaid=\"http://www.aiim.org/pdfa/ns/id/\">\n"
                    "<pdfaid:part>3</pdfaid:part>\n<pdfaid:conformance>B</pdfaid:conformance>\n"
                    "</rdf:Description>\n"
                    "<rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\">\n"
                    "<dc:format>application/pdf</dc:format>\n"
                    "<dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">";
  out += MarkupEscaped(facts.title) + "</rdf:li></rdf:Alt></dc:title>\n</rdf:Description>\n";
  // Each entry of the Info dictionary has its twin here, with the same value: PDF/A asks both.
  out += "<rdf:Description rdf:about=\"\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\">\n<xmp:CreateDate>" + date +
         "</xmp:CreateDate>\n<xmp:ModifyDate>" + date + "</xmp:ModifyDate>\n<xmp:CreatorTool>" + producer +
         "</xmp:CreatorTool>\n</rdf:Description>\n"
         "<rdf:Description rdf:about=\"\" xmlns:pdf=\"http://ns.adobe.com/pdf/1.3/\">\n<pdf:Producer>" +
         producer + "</pdf:Producer>\n</rdf:Description>\n";
  if (!facts.factur_x_level.empty()) out += FacturXDescriptions(facts.factur_x_level);
  out += "</rdf:RDF>\n</x:xmpmeta>\n<?xpacket end=\"w\"?>";
  return out;
}

}  // namespace quorvel::pdf

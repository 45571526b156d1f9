// A host that knows only names prints every sample document through the C interface: the JSON is
// only its data source; every object is created, filled and printed with the functions of quorvel.h.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>

#include "automation/document_job.hpp"
#include "foundation/company_info.hpp"
#include "foundation/printer_surface.hpp"
#include "receipts/receipt_clock.hpp"
#include "support/capi_helpers.hpp"
#include "support/ops_helpers.hpp"

namespace quorvel {
namespace {

using namespace testing;
using nlohmann::json;

// What the host knows of each document type: which classes, which print routine with which
// arguments, and which of the document's fields are printed as they stand.
struct Recipe {
  std::string type;
  std::string document_class;
  std::string printer_class;
  std::string routine;
  std::vector<std::string> arguments;  // "document", "printer", or a key of the file
  bool host_ends_document;
  const char* paper;
  std::vector<std::string> printed_fields;
};

const std::vector<Recipe>& Recipes() {
  static const std::vector<Recipe> recipes = {
      {"voucher", "ClassVoucher", "ClassVoucherPrinter", "PrintIt", {"document", "printHeader", "isReceipt"},
       false, "a4", {"Number", "PayeeName", "Amount"}},
      {"invoice", "ClassInvoice", "ClassInvoicePrinter", "PrintIt", {"document", "printHeader"}, false, "a4",
       {"InvoiceNumber", "InvoiceDate", "Total"}},
      {"delivery_note", "ClassDeliveryNote", "ClassDeliveryNotePrinter", "PrintIt", {"document", "printHeader"},
       false, "a4", {"NoteNumber", "NoteDate"}},
      {"receipt", "ClassInvoice", "ReceiptPrinter", "PrintIt", {"document"}, false, "roll",
       {"InvoiceNumber", "Total"}},
      {"statement", "ClassStatement", "ClassStatementPrinter", "PrintIt", {"document", "printHeader"}, false,
       "a4", {"StatementDate", "totalBalance"}},
      {"cheque_list", "ClassStatement", "ClassCheckPrinter", "PrintChecks",
       {"printer", "document", "printHeader", "printTable", "pageNumber"}, true, "a4", {"PDCTotal"}},
  };
  return recipes;
}

// The lines of each collection: how the host adds them, and a field each line prints as it stands.
struct LineKind {
  std::string collection, adder, line_class, printed_field;
};

const LineKind* LineKindOf(const std::string& collection) {
  static const std::vector<LineKind> kinds = {
      {"Payments", "AddPayment", "ClassPayment", "InvoiceDate"},
      {"InvoiceItems", "AddItem", "ClassInvoiceItem", "Total"},
      {"OtherExpenses", "AddExpense", "ClassInvoiceItem", "Total"},
      {"items", "AddItem", "ClassInvoiceItem", "Quantity"},
      {"StatementItems", "AddItem", "ClassStatementItem", "TransactionDate"},
      {"PDCChecks", "AddChecks", "ClassCheck", "ChqNum"},
  };
  for (const LineKind& kind : kinds)
    if (kind.collection == collection) return &kind;
  return nullptr;
}

quorvel_variant ValueOf(const json& value) {
  if (value.is_string()) return CText(value.get_ref<const std::string&>().c_str());
  if (value.is_boolean()) return CBool(value.get<bool>());
  if (value.is_number()) return CDouble(value.get<double>());
  ADD_FAILURE() << "no variant for " << value.dump();
  return quorvel_variant{};
}

void PutFields(const CObject& object, const json& fields) {
  for (const auto& [name, value] : fields.items()) Put(object, name, ValueOf(value));
}

// SetCompanyInfo's twelve texts by parameter name, in its parameter order.
void ApplyCompany(const json& company) {
  static const char* const kNames[] = {"CompanyName", "Address1", "Address2", "Address3", "City", "Country",
                                       "phone", "Email", "Fax", "Website", "DefaultCurrencySign",
                                       "DefaultCurrencyName"};
  CObject info = Create("Quorvel.ClassCompanyInfo");
  std::vector<quorvel_variant> args;
  for (const char* name : kNames)
    args.push_back(company.contains(name) ? ValueOf(company[name]) : CText(""));
  Call(info, "SetCompanyInfo", args);
  if (company.contains("TopMargin")) Call(info, "SetTopMargin", {ValueOf(company["TopMargin"])});
}

// Fills the document; collects the texts its printout must show.
void FillDocument(const CObject& document, const json& fields, const Recipe& recipe,
                  std::vector<std::string>& expected) {
  for (const auto& [name, value] : fields.items()) {
    if (!value.is_array()) {
      Put(document, name, ValueOf(value));
      if (std::count(recipe.printed_fields.begin(), recipe.printed_fields.end(), name))
        expected.push_back(value.get<std::string>());
      continue;
    }
    const LineKind* kind = LineKindOf(name);
    ASSERT_NE(kind, nullptr) << "this host has no recipe for the lines of \"" << name << "\"";
    for (const json& line_fields : value) {
      CObject line = Create("Quorvel." + kind->line_class);
      PutFields(line, line_fields);
      Call(document, kind->adder, {CObj(line)});
      expected.push_back(line_fields.value(kind->printed_field, ""));
    }
  }
}

std::string Squeezed(const std::string& text) {
  return std::regex_replace(text, std::regex("\\s+"), " ");
}

class CHostPrintsSample : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    ModuleCompanyInfo::Profile() = CompanyProfile{};
    std::ifstream in(GetParam());
    sample_ = json::parse(in);
    dir_ = TempDir("c-sample-" + std::filesystem::path(GetParam()).stem().string());
    // Both prints of a receipt must read the same time, whatever second each falls in.
    SetReceiptClock([] { return std::time_t{1700000000}; });
  }
  void TearDown() override {
    SetReceiptClock({});
    SystemPrinter().SetPaper(Paper::A4());
  }

  // The same file through the C++ loader, for comparison; returns its text.
  std::string PrintWithLoader(const char* paper, int* pages) {
    const DocumentJob job = LoadDocumentJobFile(GetParam());
    PrinterSurface& printer = SystemPrinter();
    printer.SetPaper(Paper::Named(paper));
    printer.SetOutput(PrinterOutput::ForPath(dir_ + "/loader.pdf"));
    PrintJobOnSystemPrinter(job);
    if (printer.InDocument()) printer.EndDoc();
    *pages = printer.LastPageCount();
    return RunCommand("pdftotext '" + dir_ + "/loader.pdf' -");
  }

  // The letterhead has no class of its own: it reaches paper as the head of a document.
  void CheckLetterhead(const std::string& pdf) {
    ASSERT_EQ(quorvel_printer_set_output(pdf.c_str(), "a4"), QUORVEL_OK) << LastError();
    CObject voucher = Create("Quorvel.ClassVoucher");
    Call(Create("Quorvel.ClassVoucherPrinter"), "PrintIt", {CObj(voucher), CBool(true), CBool(false)});
    int pages = 0;
    std::istringstream letterhead(PrintWithLoader("a4", &pages));
    const std::string printed = RunCommand("pdftotext '" + pdf + "' -");
    for (std::string line; std::getline(letterhead, line);) {
      if (line.find_first_not_of(" \f") != std::string::npos) {
        EXPECT_NE(printed.find(line), std::string::npos) << line;
      }
    }
    EXPECT_NE(printed.find("Tel: " + sample_["company"].value("phone", "")), std::string::npos);
  }

  json sample_;
  std::string dir_;
};

TEST_P(CHostPrintsSample, ThroughTheCInterfaceAsTheLoaderDoes) {
  const std::string type = sample_.value("type", "");
  if (sample_.contains("company")) ApplyCompany(sample_["company"]);
  const std::string pdf = dir_ + "/c.pdf";
  if (type == "letterhead") return CheckLetterhead(pdf);
  const auto recipe = std::find_if(Recipes().begin(), Recipes().end(), [&](const Recipe& r) { return r.type == type; });
  ASSERT_NE(recipe, Recipes().end()) << "this host has no recipe for documents of type \"" << type << "\"";

  ASSERT_EQ(quorvel_printer_set_output(pdf.c_str(), recipe->paper), QUORVEL_OK) << LastError();
  CObject document = Create("Quorvel." + recipe->document_class);
  CObject printer = Create("Quorvel." + recipe->printer_class);
  std::vector<std::string> expected;
  FillDocument(document, sample_.value("document", json::object()), *recipe, expected);
  PutFields(printer, sample_.value("printer", json::object()));
  quorvel_object* system_printer = nullptr;
  ASSERT_EQ(quorvel_system_printer(&system_printer), QUORVEL_OK);
  CObject surface(system_printer);
  const json defaults = {{"printHeader", true}, {"isReceipt", false}, {"printTable", true}, {"pageNumber", 1}};
  std::vector<quorvel_variant> args;
  for (const std::string& name : recipe->arguments) {
    if (name == "document") args.push_back(CObj(document));
    else if (name == "printer") args.push_back(CObj(surface));
    else if (name == "pageNumber") args.push_back(CInt(static_cast<int16_t>(sample_.value(name, 1))));
    else args.push_back(ValueOf(sample_.value(name, defaults[name])));
  }
  Call(printer, recipe->routine, args);
  if (recipe->host_ends_document) {
    ASSERT_EQ(quorvel_printer_end_doc(), QUORVEL_OK) << LastError();
  }
  int32_t pages = 0;
  EXPECT_EQ(LastResults(&pages), std::vector<std::string>{pdf});

  // The page number comes back advanced by one for each page after the first.
  const auto page_number = std::find(recipe->arguments.begin(), recipe->arguments.end(), "pageNumber");
  if (page_number != recipe->arguments.end()) {
    const quorvel_variant& back = args[page_number - recipe->arguments.begin()];
    ASSERT_EQ(back.type, QUORVEL_INTEGER);
    EXPECT_EQ(back.value.integer, sample_.value("pageNumber", 1) + pages - 1);
  }
  const std::string text = RunCommand("pdftotext '" + pdf + "' -");
  const std::string squeezed = Squeezed(text);
  if (sample_.contains("company")) {
    EXPECT_NE(text.find(sample_["company"].value("CompanyName", "")), std::string::npos);
  }
  for (const std::string& value : expected) {
    if (!value.empty()) {
      EXPECT_NE(squeezed.find(Squeezed(value)), std::string::npos) << "\"" << value << "\"";
    }
  }
  int loader_pages = 0;
  EXPECT_EQ(PrintWithLoader(recipe->paper, &loader_pages), text);
  EXPECT_EQ(loader_pages, pages);
  EXPECT_EQ(RunCommand("pdfinfo '" + pdf + "' | sed -n 's/^Pages: *//p'"), std::to_string(pages) + "\n");
}

std::vector<std::string> SampleFiles() {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(QUORVEL_SOURCE_DIR "/demo/samples"))
    if (entry.path().extension() == ".json") files.push_back(entry.path().string());
  std::sort(files.begin(), files.end());
  return files;
}

INSTANTIATE_TEST_SUITE_P(Samples, CHostPrintsSample, ::testing::ValuesIn(SampleFiles()),
                         [](const ::testing::TestParamInfo<std::string>& info) {
                           return std::filesystem::path(info.param).stem().string();
                         });

}  // namespace
}  // namespace quorvel

// Benchmark documents: every type filled with plausible texts, printed to files or a preview.
#include "bench/bench_documents.hpp"

#include <cairo-pdf.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "automation/document_kinds.hpp"
#include "cheque_lists/check_printer.hpp"
#include "delivery_notes/delivery_note_printer.hpp"
#include "output/cairo_painter.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/preview_surface.hpp"
#include "invoices/invoice_printer.hpp"
#include "receipts/receipt_printer.hpp"
#include "statements/statement_printer.hpp"
#include "vouchers/voucher_printer.hpp"

namespace quorvel::bench {

namespace {

// Descriptions of mixed length: most fit one line of the invoice column, some wrap to two or three.
const char* const kDescriptions[] = {
    "Copier paper A4, 80 g, 5 reams",
    "Heavy-duty galvanised steel shelving unit, five adjustable shelves, 180 x 90 x 40 cm",
    "Ink cartridge, black",
    "Ergonomic office chair with adjustable lumbar support, armrests and seat depth, "
    "breathable mesh back, five-year warranty on the frame",
    "Stapler",
    "Desk lamp, LED, dimmable, with USB charging port",
};

std::string Money(int i) { return std::to_string(10 + (i * 37) % 990) + "." + std::to_string(10 + i % 90); }
std::string Date(int i) { return std::to_string(1 + i % 28) + "/" + std::to_string(1 + i % 12) + "/2024"; }

std::shared_ptr<ClassInvoiceItem> Item(int i) {
  auto item = std::make_shared<ClassInvoiceItem>();
  item->ItemName = "ITEM-" + std::to_string(1000 + i);
  item->Description = kDescriptions[i % 6];
  item->Quantity = std::to_string(1 + i % 7);
  item->UnitPrice = Money(i);
  item->Total = Money(i * 3);
  item->Unit = "pcs";
  item->PKG = std::to_string(1 + i % 4);
  return item;
}

void FillInvoice(ClassInvoice& invoice, int lines) {
  invoice.printTitle = "INVOICE";
  invoice.InvoiceNumber = "INV-2024-0815";
  invoice.InvoiceDate = "15/08/2024";
  invoice.NumberTitle = "Invoice No.";
  invoice.hasBilling = invoice.hasShipping = true;
  invoice.Billing1 = invoice.Shipping1 = "Meadowbrook Garden Supplies";
  invoice.Billing2 = invoice.Shipping2 = "14 Orchard Lane";
  invoice.Billing3 = invoice.Shipping3 = "Brightwater";
  invoice.LPONumber = "PO-7731";
  invoice.Store = "Main";
  invoice.EmployeeName = "Dana Whitfield";
  invoice.PaymentMethod = "Cash";
  invoice.HasDiscount = true;
  invoice.DiscountPercent = "5";
  invoice.InvoiceDiscount = "12.50";
  invoice.subTotal = "250.00";
  invoice.Total = "237.50";
  invoice.Received = "240.00";
  invoice.Change = "2.50";
  invoice.SumOfTotal = "Two hundred thirty-seven and fifty cents only";
  invoice.CustomerNote1 = "Thank you for your business.";
  invoice.CustomerNote2 = "Goods remain ours until paid in full.";
  invoice.PrintFooter = true;
  for (int i = 0; i < lines; ++i) invoice.AddItem(Item(i));
}

// The document routine of `type` as its registration calls it, on a fresh printer object of
// the kind's class (set up by `setup` first when given).
template <class Printer, class Document>
std::function<void(Surface&)> KindPrint(const std::string& type, std::shared_ptr<Document> data,
                                        PrintCallArguments arguments = {}, void (*setup)(Printer&) = nullptr) {
  if (FindDocumentKind(type).printer_class != typeid(Printer) || FindDocumentKind(type).document_class != typeid(Document))
    Raise(err::kInvalidArgument, "benchmark document " + type + " built with another kind's classes");
  return [type, data, arguments, setup](Surface& surface) {
    Printer printer;
    if (setup) setup(printer);
    PrintCallArguments call = arguments;
    FindDocumentKind(type).print_on(&printer, data.get(), surface, call);
  };
}

BenchDocument Invoice(int lines) {
  auto data = std::make_shared<ClassInvoice>();
  FillInvoice(*data, lines);
  data->AddExpense(Item(7));
  return {"invoice", lines, Paper::A4(),
          KindPrint<ClassInvoicePrinter>("invoice", data), data};
}

BenchDocument Receipt(int lines) {
  auto data = std::make_shared<ClassInvoice>();
  FillInvoice(*data, lines);
  data->CustomerNote1 = "Thank You";
  data->CustomerNote2 = "Come Again";
  return {"receipt", lines, Paper::Roll80(),
          KindPrint<ReceiptPrinter>("receipt", data), data};
}

BenchDocument DeliveryNote(int lines) {
  auto data = std::make_shared<ClassDeliveryNote>();
  ClassDeliveryNote& note = *data;
  note.printTitle = "DELIVERY NOTE";
  note.NoteNumber = "DN-5521";
  note.NoteDate = "16/08/2024";
  note.InvoiceNumber = "INV-2024-0815";
  note.PackageNumber = "12";
  note.Billing1 = "Meadowbrook Garden Supplies";
  note.Billing2 = "14 Orchard Lane";
  note.Employee = "Sam Okafor";
  note.PrintFooter = true;
  for (int i = 0; i < lines; ++i) note.AddItem(Item(i));
  return {"delivery_note", lines, Paper::A4(),
          KindPrint<ClassDeliveryNotePrinter>("delivery_note", data), data};
}

BenchDocument Voucher(int lines) {
  auto data = std::make_shared<ClassVoucher>();
  ClassVoucher& voucher = *data;
  voucher.Amount = "1,250.00";
  voucher.SumofAmount = "One thousand two hundred fifty only";
  voucher.Number = "RV-301";
  voucher.ReceiptDate = "17/08/2024";
  voucher.PayeeName = "Meadowbrook Garden Supplies";
  voucher.ChequeNumber = "004512";
  voucher.Bank = "Harbour Savings Bank";
  voucher.ChequeDate = "17/08/2024";
  voucher.PaymentMethod = "Cheque";
  voucher.Notes = "Settles the July invoices";
  for (int i = 0; i < lines; ++i) {
    auto payment = std::make_shared<ClassPayment>();
    payment->Number = "INV-" + std::to_string(700 + i);
    payment->InvoiceDate = Date(i);
    payment->OriginalAmount = Money(i);
    payment->AmountDue = Money(i);
    payment->Credits = "0.00";
    payment->Payments = Money(i);
    voucher.AddItem(payment);
  }
  return {"voucher", lines, Paper::A4(),
          KindPrint<ClassVoucherPrinter>("voucher", data, {.isReceipt = true},
                                         [](ClassVoucherPrinter& printer) { printer.PrintDetails = true; }),
          data};
}

void FillStatement(ClassStatement& st, int lines, int cheques) {
  st.printTitle = "STATEMENT";
  st.StatementNumber = "ST-0931";
  st.StatementDate = "31/08/2024";
  st.hasBilling = true;
  st.Billing1 = "Meadowbrook Garden Supplies";
  st.Billing2 = "14 Orchard Lane";
  st.totalDebit = "12,400.00";
  st.totalCredit = "9,100.00";
  st.totalBalance = "3,300.00";
  st.currentDue = "1,000.00";
  st.thirtyDaysDue = "800.00";
  st.sixtyDaysDue = "700.00";
  st.nintyDaysDue = "500.00";
  st.overNintyDaysDue = "300.00";
  st.CustomerNote1 = "Please pay within 30 days.";
  st.PrintFooter = true;
  st.PDCTotal = "2,000.00";
  for (int i = 0; i < lines; ++i) {
    auto item = std::make_shared<ClassStatementItem>();
    item->Description = (i % 3 == 0 ? "Payment received, thank you" : "Invoice INV-" + std::to_string(2000 + i));
    item->TransactionDate = Date(i);
    item->Debit = i % 3 == 0 ? "" : Money(i);
    item->Credit = i % 3 == 0 ? Money(i) : "";
    item->balance = Money(i * 7);
    st.AddItem(item);
  }
  for (int i = 0; i < cheques; ++i) {
    auto check = std::make_shared<ClassCheck>();
    check->TransactionNum = "RV-" + std::to_string(400 + i);
    check->TransactionDate = Date(i);
    check->Bank = "Harbour Savings Bank";
    check->ChqDate = Date(i + 5);
    check->ChqNum = std::to_string(880000 + i);
    check->Amount = Money(i);
    st.AddChecks(check);
  }
}

BenchDocument Statement(int lines) {
  auto data = std::make_shared<ClassStatement>();
  FillStatement(*data, lines, 0);
  return {"statement", lines, Paper::A4(),
          KindPrint<ClassStatementPrinter>("statement", data), data};
}

BenchDocument ChequeList(int lines) {
  auto data = std::make_shared<ClassStatement>();
  FillStatement(*data, 0, lines);
  return {"cheque_list", lines, Paper::A4(),
          KindPrint<ClassCheckPrinter>("cheque_list", data),
          data};
}

}  // namespace

void SetBenchCompany() {
  ModuleCompanyInfo::Profile() = CompanyProfile{};
  ClassCompanyInfo info;
  info.SetCompanyInfo("Northwind Stationers", "22 Harbour Road", "Unit 4", "Portside Estate", "Easton",
                      "Avalon", "555-0100", "office@northwind.example", "555-0101",
                      "www.northwind.example", "$", "Dollar");
}

const std::vector<std::string>& DocumentTypeNames() {
  // Every registered type that prints a document (the letterhead alone has none).
  static const std::vector<std::string> names = [] {
    std::vector<std::string> list;
    for (const DocumentKind& kind : DocumentKinds())
      if (kind.document_class != typeid(void)) list.push_back(kind.type);
    return list;
  }();
  return names;
}

int SmallLines(const std::string& type) {
  if (type == "voucher") return 3;
  if (type == "receipt") return 4;
  return 12;
}

int LargeLines(const std::string& type) {
  if (type == "voucher") return 40;
  if (type == "receipt") return 200;
  if (type == "statement") return 2000;
  if (type == "cheque_list") return 1000;
  return 500;
}

BenchDocument MakeDocument(const std::string& type, int lines) {
  if (type == "voucher") return Voucher(lines);
  if (type == "invoice") return Invoice(lines);
  if (type == "delivery_note") return DeliveryNote(lines);
  if (type == "receipt") return Receipt(lines);
  if (type == "statement") return Statement(lines);
  if (type == "cheque_list") return ChequeList(lines);
  Raise(err::kInvalidArgument, "no benchmark document of type " + type);
}

int PrintToFile(const BenchDocument& doc, const std::string& path) {
  PrinterSurface& printer = SystemPrinter();
  printer.SetPaper(doc.paper);
  printer.SetOutput(PrinterOutput::ForPath(path));
  PrintOnSystemPrinter([&](Surface& obj) { doc.print(obj); });
  if (printer.InDocument()) printer.EndDoc();  // the cheque list leaves the ending to its caller
  return printer.LastPageCount();
}

size_t PrintToPreview(const BenchDocument& doc) {
  PreviewSurface preview(doc.paper.width, doc.paper.height);
  doc.print(preview);
  return preview.Ops().size();
}

std::vector<RecordedPage> RecordPages(const BenchDocument& doc, const std::string& jsonl_path) {
  PrintToFile(doc, jsonl_path);
  std::ifstream in(jsonl_path);
  std::vector<RecordedPage> pages(1);
  std::string line;
  while (std::getline(in, line)) {
    DrawOp op = OpFromJson(line);
    if (std::holds_alternative<PageOp>(op)) pages.emplace_back();
    else if (!std::holds_alternative<EndOp>(op)) pages.back().ops.push_back(std::move(op));
  }
  // A roll page is as long as what was printed on it, which may be far past the roll's nominal
  // length: replay it that long too, or cairo would skip the text below the cut.
  for (RecordedPage& page : pages) {
    page.width = doc.paper.width;
    page.height = doc.paper.height;
    if (!doc.paper.roll) continue;
    for (const DrawOp& op : page.ops)
      if (const auto* text = std::get_if<TextOp>(&op)) page.height = std::max(page.height, text->y + 40 * text->size);
  }
  return pages;
}

namespace {
cairo_status_t WriteTo(void* closure, const unsigned char* data, unsigned int length) {
  return fwrite(data, 1, length, static_cast<FILE*>(closure)) == length ? CAIRO_STATUS_SUCCESS
                                                                         : CAIRO_STATUS_WRITE_ERROR;
}
}  // namespace

void ReplayToPdf(const std::vector<RecordedPage>& pages, const std::string& pdf_path) {
  FILE* file = std::fopen(pdf_path.c_str(), "wb");
  if (!file) Raise(err::kFileError, "cannot write " + pdf_path);
  cairo_surface_t* surface = cairo_pdf_surface_create_for_stream(WriteTo, file, 595, 842);
  cairo_t* cr = cairo_create(surface);
  for (const RecordedPage& page : pages) {
    cairo_pdf_surface_set_size(surface, page.width / 20.0, page.height / 20.0);
    cairo_save(cr);
    BeginTwipsPage(cr, 1.0 / 20.0, page.width, page.height);
    CairoPainter(cr).PaintAll(page.ops);
    cairo_restore(cr);
    cairo_show_page(cr);
  }
  cairo_destroy(cr);
  cairo_surface_finish(surface);
  const cairo_status_t status = cairo_surface_status(surface);
  cairo_surface_destroy(surface);
  std::fclose(file);
  if (status != CAIRO_STATUS_SUCCESS) Raise(err::kFileError, "PDF " + pdf_path);
}

size_t ReplayToDevice(const std::vector<RecordedPage>& pages, const std::string& device, const std::string& path) {
  PrinterOutput output;
  output.device = device;
  output.path = path;
  output.pdf_creation_date = "2026-01-02T03:04:05";
  std::unique_ptr<PageDevice> sink = OpenDevice(output);
  for (const RecordedPage& page : pages) sink->Page(page.ops, page.width, page.height);
  sink->Finish();
  return std::filesystem::file_size(path);
}

std::string BenchTempDir() {
  std::string dir = (std::filesystem::temp_directory_path() / "quorvel-bench-XXXXXX").string();
  if (!mkdtemp(dir.data())) Raise(err::kFileError, "cannot make a temporary directory");
  return dir;
}

const std::string& RunDir() {
  static const struct Dir {
    std::string path = BenchTempDir();
    ~Dir() { std::filesystem::remove_all(path); }
  } dir;
  return dir.path;
}

}  // namespace quorvel::bench

// QR codes on invoices and receipts: decoded back from the printed page by zbarimg, and never
// drawn over a text or a rule of the document.
#include <gtest/gtest.h>

#include <algorithm>

#include "foundation/company_info.hpp"
#include "foundation/preview_surface.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/qr_code.hpp"
#include "invoices/invoice_printer.hpp"
#include "receipts/receipt_printer.hpp"
#include "support/documents_helpers.hpp"

namespace quorvel::testing {
namespace {

// What zbarimg reads from a picture, byte for byte.
std::string DecodedQr(const std::string& png) {
  std::string data = RunCommand("zbarimg --quiet --raw -Sbinary " + png);
  if (!data.empty() && data.back() == '\n') data.pop_back();
  return data;
}

// The last page of a PDF as a 300 dpi picture.
std::string LastPageAsPng(const std::string& pdf, int pages) {
  const std::string stem = pdf + "-page";
  RunCommand("pdftoppm -r 300 -png -singlefile -f " + std::to_string(pages) + " -l " +
             std::to_string(pages) + " " + pdf + " " + stem);
  return stem + ".png";
}

std::string ArabicPayload(size_t bytes) {
  std::string text;
  const char* letters[] = {"ف", "ا", "ت", "و", "ر", "ة", " "};
  for (size_t i = 0; text.size() + 2 <= bytes; ++i) text += letters[i % 7];
  if (text.size() < bytes) text += ".";
  return text;
}

std::string AsciiPayload(size_t bytes) {
  std::string text;
  for (size_t i = 0; i < bytes; ++i) text += static_cast<char>('!' + (i * 7) % 90);
  return text;
}

const QrOp& OnlyQr(const DrawOps& ops) {
  const QrOp* found = nullptr;
  for (const DrawOp& op : ops)
    if (auto* qr = std::get_if<QrOp>(&op)) {
      EXPECT_EQ(found, nullptr) << "more than one QR code";
      found = qr;
    }
  EXPECT_NE(found, nullptr);
  static QrOp none;
  return found ? *found : none;
}

// Every text box and rule that the code's square (quiet zone included) overlaps.
std::vector<std::string> CoveredByQr(const DrawOps& ops) {
  const QrOp& qr = OnlyQr(ops);
  const double side = QrSideModules(qr.data) * qr.module;
  auto overlaps = [&](double x1, double y1, double x2, double y2) {
    return std::max(x1, x2) > qr.x && std::min(x1, x2) < qr.x + side && std::max(y1, y2) > qr.y &&
           std::min(y1, y2) < qr.y + side;
  };
  std::vector<std::string> covered;
  for (const TextOp& text : Texts(ops))
    if (overlaps(text.x, text.y, EndOf(text), text.y + LineAt(text.size))) covered.push_back(text.text);
  for (const LineOp& line : Lines(ops))
    if (overlaps(line.x1, line.y1, line.x2, line.y2 + 0.001)) covered.push_back("a rule");
  for (const BoxOp& box : Boxes(ops))
    for (const LineOp& side_line : {LineOp{box.x1, box.y1, box.x2, box.y1}, LineOp{box.x1, box.y2, box.x2, box.y2},
                                    LineOp{box.x1, box.y1, box.x1, box.y2}, LineOp{box.x2, box.y1, box.x2, box.y2}})
      if (overlaps(side_line.x1, side_line.y1, side_line.x2 + 0.001, side_line.y2 + 0.001))
        covered.push_back("a box side");
  return covered;
}

class InvoiceQr : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override { ResetProfileWithCompany(); }
};

TEST_P(InvoiceQr, DecodesFromTheLastPdfPageAndCoversNothing) {
  ClassInvoice invoice = SampleInvoice();
  for (int i = 0; i < 40; ++i) invoice.AddItem(MakeItem("ITEM-" + std::to_string(i), "Goods"));
  invoice.QRCode = GetParam();
  ClassInvoicePrinter printer;

  const std::string dir = TempDir("invoice-qr");
  SystemPrinter().SetOutput(PrinterOutput::ForPath(dir + "/invoice.jsonl"));
  printer.PrintIt(invoice, true);
  const DrawOps all = ReadOpsFile(dir + "/invoice.jsonl");
  DrawOps last_page;
  for (const DrawOp& op : all) {
    if (std::holds_alternative<PageOp>(op)) last_page.clear();
    else last_page.push_back(op);
  }
  EXPECT_EQ(CoveredByQr(last_page), std::vector<std::string>{});
  const QrOp& qr = OnlyQr(last_page);
  EXPECT_GE(qr.module, 0.4 / 25.4 * 1440 - 1e-9);  // at least 0.4 mm

  SystemPrinter().SetOutput(PrinterOutput::ForPath(dir + "/invoice.pdf"));
  printer.PrintIt(invoice, true);
  const int pages = SystemPrinter().LastPageCount();
  EXPECT_EQ(DecodedQr(LastPageAsPng(dir + "/invoice.pdf", pages)), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Payloads, InvoiceQr,
                         ::testing::Values(
                             "AQVTYWxsYQIKMTIzNDU2Nzg5MQMUMjAyMS0wNy0xMlQxNDoyNTowOVoEBjEwMC4wMAUFMTUuMDA=",
                             ArabicPayload(300), AsciiPayload(1000)));

TEST(InvoiceQrPlacement, LeftOfTheTotalsWhenBlankThereElseUnderTheSignatures) {
  ResetProfileWithCompany();
  ClassInvoice invoice = SampleInvoice();
  invoice.PrintFooter = true;
  ClassInvoicePrinter printer;
  PreviewSurface small_code, large_code;
  invoice.QRCode = "AQVTYWxsYQIKMTIzNDU2Nzg5MQ==";
  printer.PrintInvoice(small_code, invoice, true);
  const QrOp& beside = OnlyQr(small_code.Ops());
  const TextOp subtotal = FindText(small_code.Ops(), " Subtotal:");
  EXPECT_EQ(beside.y, subtotal.y + 100);  // top-aligned with the totals, below the frame's foot
  EXPECT_LT(beside.x + QrSideModules(beside.data) * beside.module, subtotal.x - 100);
  EXPECT_LT(beside.y, FindText(small_code.Ops(), "Notes:").y);

  EXPECT_EQ(CoveredByQr(small_code.Ops()), std::vector<std::string>{});

  // A note running across the page leaves no blank spot beside the totals for a large code.
  invoice.CustomerNote2 = std::string(150, 'n');
  invoice.QRCode = AsciiPayload(1000);
  printer.PrintInvoice(large_code, invoice, true);
  const QrOp& after = OnlyQr(large_code.Ops());
  EXPECT_EQ(after.x, 1000);
  EXPECT_GT(after.y, FindText(large_code.Ops(), invoice.CashierSign).y);
  EXPECT_EQ(CoveredByQr(large_code.Ops()), std::vector<std::string>{});
}

TEST(ReceiptQr, CentredAfterTheMessagesAndDecodedFromTheSlip) {
  ResetProfileWithCompany();
  ClassInvoice sale = SampleInvoice();
  sale.CustomerNote1 = "Thank You";
  sale.CustomerNote2 = "Come Again";
  sale.QRCode = "AQVTYWxsYQIKMTIzNDU2Nzg5MQMUMjAyMS0wNy0xMlQxNDoyNTowOVoEBjEwMC4wMAUFMTUuMDA=";
  ReceiptPrinter printer;
  PreviewSurface slip(4535, 16838);
  printer.PrintReceipt(slip, sale);
  const QrOp& qr = OnlyQr(slip.Ops());
  const double side = QrSideModules(qr.data) * qr.module;
  EXPECT_NEAR(qr.x + side / 2, 2088, 1e-6);
  EXPECT_NEAR(qr.module, 4 * 1440.0 / 203, 1e-9);  // four dots of a 203 dpi printer
  EXPECT_GE(qr.y, FindText(slip.Ops(), "Come Again").y + LineAt(8));
  EXPECT_EQ(CoveredByQr(slip.Ops()), std::vector<std::string>{});

  const std::string dir = TempDir("receipt-qr");
  SystemPrinter().SetOutput(PrinterOutput::ForPath(dir + "/receipt.pdf"));
  printer.PrintIt(sale);
  EXPECT_EQ(DecodedQr(LastPageAsPng(dir + "/receipt.pdf", 1)), sale.QRCode);
}

TEST(QrPayload, TooLongForAnyCodeIsRefusedBeforeDrawing) {
  ResetProfileWithCompany();
  ClassInvoice invoice = SampleInvoice();
  invoice.QRCode = AsciiPayload(3000);  // past version 40 at level M
  PreviewSurface preview;
  EXPECT_EQ(ErrorNumberOf([&] { ClassInvoicePrinter().PrintInvoice(preview, invoice, true); }), 5);
  EXPECT_TRUE(preview.Ops().empty());
  PreviewSurface slip(4535, 16838);
  EXPECT_EQ(ErrorNumberOf([&] { ReceiptPrinter().PrintReceipt(slip, invoice); }), 5);
  EXPECT_TRUE(slip.Ops().empty());
}

}  // namespace
}  // namespace quorvel::testing

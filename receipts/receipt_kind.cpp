// The point-of-sale receipt as a document type: printed from an invoice object.
#include "foundation/document_kind.hpp"
#include "receipts/receipt_printer.hpp"

namespace quorvel {

DocumentKind ReceiptKind() {
  return MakeDocumentKind<ReceiptPrinter, ClassInvoice>(
      "receipt", {{"receipt", "Receipt"}},
      [](ReceiptPrinter& printer, ClassInvoice& receipt, Surface& surface, PrintCallArguments&) {
        printer.PrintReceipt(surface, receipt);
      },
      [](ReceiptPrinter& printer, ClassInvoice& receipt, const PrintCallArguments&) { printer.PrintIt(receipt); });
}

}  // namespace quorvel

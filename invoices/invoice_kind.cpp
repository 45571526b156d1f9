// The invoice as a document type: class, printer, print routines and sample.
#include "foundation/document_kind.hpp"
#include "invoices/invoice_printer.hpp"

namespace quorvel {

DocumentKind InvoiceKind() {
  return MakeDocumentKind<ClassInvoicePrinter, ClassInvoice>(
      "invoice", {{"invoice", "Invoice"}},
      [](ClassInvoicePrinter& printer, ClassInvoice& invoice, Surface& surface, PrintCallArguments& arguments) {
        printer.PrintInvoice(surface, invoice, arguments.printHeader);
      },
      [](ClassInvoicePrinter& printer, ClassInvoice& invoice, const PrintCallArguments& arguments) {
        printer.PrintIt(invoice, arguments.printHeader);
      });
}

}  // namespace quorvel

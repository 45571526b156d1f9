// The voucher as a document type: class, printer, print routines and sample.
#include "foundation/document_kind.hpp"
#include "vouchers/voucher_printer.hpp"

namespace quorvel {

DocumentKind VoucherKind() {
  return MakeDocumentKind<ClassVoucherPrinter, ClassVoucher>(
      "voucher", {{"voucher", "Voucher"}},
      [](ClassVoucherPrinter& printer, ClassVoucher& voucher, Surface& surface, PrintCallArguments& arguments) {
        printer.PrintReceiptVoucher(surface, voucher, arguments.printHeader, arguments.isReceipt);
      },
      [](ClassVoucherPrinter& printer, ClassVoucher& voucher, const PrintCallArguments& arguments) {
        printer.PrintIt(voucher, arguments.printHeader, arguments.isReceipt);
      });
}

}  // namespace quorvel

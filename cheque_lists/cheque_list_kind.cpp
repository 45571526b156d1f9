// The cheque list as a document type: a statement's cheques, with no PrintIt of its own.
#include "cheque_lists/check_printer.hpp"
#include "foundation/document_kind.hpp"

namespace quorvel {

DocumentKind ChequeListKind() {
  return MakeDocumentKind<ClassCheckPrinter, ClassStatement>(
      "cheque_list", {{"cheque_list", "Checks"}},
      [](ClassCheckPrinter& printer, ClassStatement& statement, Surface& surface, PrintCallArguments& arguments) {
        printer.PrintChecks(surface, statement, arguments.printHeader, arguments.printTable, arguments.pageNumber);
      });
}

}  // namespace quorvel

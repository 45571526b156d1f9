// The customer statement as a document type: class, printer, print routines and sample.
#include "foundation/document_kind.hpp"
#include "statements/statement_printer.hpp"

namespace quorvel {

DocumentKind StatementKind() {
  return MakeDocumentKind<ClassStatementPrinter, ClassStatement>(
      "statement", {{"statement", "Statement"}},
      [](ClassStatementPrinter& printer, ClassStatement& statement, Surface& surface, PrintCallArguments& arguments) {
        printer.PrintStatement(surface, statement, arguments.printHeader);
      },
      [](ClassStatementPrinter& printer, ClassStatement& statement, const PrintCallArguments& arguments) {
        printer.PrintIt(statement, arguments.printHeader);
      });
}

}  // namespace quorvel

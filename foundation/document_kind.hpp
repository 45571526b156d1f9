// What one document type is: its data class, its printer, how it prints, and its sample files.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <typeindex>
#include <vector>

#include "foundation/surface.hpp"

namespace quorvel {

// The arguments a print call may be given by name besides the document: each routine reads the
// ones it has.
struct PrintCallArguments {
  bool printHeader = true;
  bool isReceipt = false;
  bool printTable = true;
  int16_t pageNumber = 1;  // written back by a routine that reports its last page
};

struct DocumentSample {
  std::string file;     // stem of a file in the demonstration's samples folder
  std::string caption;  // the demonstration button that prints it
};

// One document type, declared once in its own folder. The print routines are C++ calls on the
// typed printer and document, so a misspelt member is a build error; the type library gives the
// host-visible class names from the C++ types.
struct DocumentKind {
  std::string type;  // the "type" of a document file: "invoice"
  std::type_index document_class = typeid(void);  // typeid(void): no document object
  std::type_index printer_class = typeid(void);
  std::vector<DocumentSample> samples;
  // The document routine on a surface of the caller's; the caller ends the document.
  std::function<void(void* printer, void* document, Surface& surface, PrintCallArguments& arguments)> print_on;
  // The host's PrintIt on the system printer; empty when the printer has none.
  std::function<void(void* printer, void* document, const PrintCallArguments& arguments)> print_it;
};

// Builds a kind from typed routines, so that each folder writes its calls as plain C++.
template <class Printer, class Document>
DocumentKind MakeDocumentKind(std::string type, std::vector<DocumentSample> samples,
                              void (*print_on)(Printer&, Document&, Surface&, PrintCallArguments&),
                              void (*print_it)(Printer&, Document&, const PrintCallArguments&) = nullptr) {
  DocumentKind kind{std::move(type), typeid(Document), typeid(Printer), std::move(samples), {}, {}};
  kind.print_on = [print_on](void* printer, void* document, Surface& surface, PrintCallArguments& arguments) {
    print_on(*static_cast<Printer*>(printer), *static_cast<Document*>(document), surface, arguments);
  };
  if (print_it)
    kind.print_it = [print_it](void* printer, void* document, const PrintCallArguments& arguments) {
      print_it(*static_cast<Printer*>(printer), *static_cast<Document*>(document), arguments);
    };
  return kind;
}

// The kinds of each folder, listed once in automation/document_kinds.cpp.
DocumentKind VoucherKind();
DocumentKind InvoiceKind();
DocumentKind DeliveryNoteKind();
DocumentKind ReceiptKind();
DocumentKind StatementKind();
DocumentKind ChequeListKind();

}  // namespace quorvel

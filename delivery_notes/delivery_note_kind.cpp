// The delivery note as a document type: class, printer, print routines and its two samples.
#include "delivery_notes/delivery_note_printer.hpp"
#include "foundation/document_kind.hpp"

namespace quorvel {

DocumentKind DeliveryNoteKind() {
  return MakeDocumentKind<ClassDeliveryNotePrinter, ClassDeliveryNote>(
      "delivery_note", {{"delivery_note", "Delivery Note"}, {"delivery_note_long", "Delivery Note"}},
      [](ClassDeliveryNotePrinter& printer, ClassDeliveryNote& note, Surface& surface, PrintCallArguments& arguments) {
        printer.PrintDeliveryNote(surface, note, arguments.printHeader);
      },
      [](ClassDeliveryNotePrinter& printer, ClassDeliveryNote& note, const PrintCallArguments& arguments) {
        printer.PrintIt(note, arguments.printHeader);
      });
}

}  // namespace quorvel

// Prints a delivery note: header, numbered goods lines over as many pages as needed, notes, signatures.
#pragma once

#include <cstdint>
#include <string>

#include "delivery_notes/delivery_note.hpp"
#include "foundation/number_date_block.hpp"
#include "foundation/surface.hpp"

namespace quorvel {

class ClassDeliveryNotePrinter {
 public:
  bool printItemsTable = true;

  // Where the header put its boxed blocks: the frame is drawn around them.
  struct HeaderMarks {
    NumberDateBlock block;
    double invoice_top = 0;           // top of the "Invoice No." row
    double invoice_number_x = 0;      // where the invoice number starts (the row's divider)
  };

  void PrintDelNoteHeader(Surface& surface, ClassDeliveryNote& note, bool printHeader);
  void PrintDeliveryNote(Surface& surface, ClassDeliveryNote& note, bool printHeader);
  void PrintItemsHeader(Surface& surface);
  // The frame around the header the last PrintDelNoteHeader printed.
  void printTable(Surface& surface, double top);
  void PrintItem(Surface& surface, ClassInvoiceItem& item, int16_t serialNumber);
  std::string AdjustedText(Surface& surface, std::string& text, int16_t& length);
  std::string AdjustedText2(Surface& surface, std::string& text, int16_t& length);
  void PrintIt(ClassDeliveryNote& note, bool printHeader);

 private:
  HeaderMarks PrintHead(Surface& surface, ClassDeliveryNote& note, bool printHeader);
  void DrawFrame(Surface& surface, double top, const HeaderMarks& marks);
  void PrintFooter(Surface& surface, ClassDeliveryNote& note);
  void PrintSignature(Surface& surface, double x, double y, const std::string& caption,
                      const std::string& name);

  HeaderMarks last_marks_;  // for a host that calls printTable after PrintDelNoteHeader
};

}  // namespace quorvel

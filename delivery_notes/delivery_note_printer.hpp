// Prints a delivery note: header, numbered goods lines over as many pages as needed, notes, signatures.
#pragma once

#include <cstdint>
#include <string>

#include "delivery_notes/delivery_note.hpp"
#include "foundation/surface.hpp"

namespace quorvel {

class ClassDeliveryNotePrinter {
 public:
  bool printItemsTable = true;

  void PrintDelNoteHeader(Surface& obj, ClassDeliveryNote& delNote, bool printHeader);
  void PrintDeliveryNote(Surface& obj, ClassDeliveryNote& delNote, bool printHeader);
  void PrintItemsHeader(Surface& obj);
  void printTable(Surface& obj, double top);
  void PrintItem(Surface& obj, ClassInvoiceItem& It, int16_t serialNumber);
  std::string AdjustedText(Surface& obj, std::string& text, int16_t& length);
  std::string AdjustedText2(Surface& obj, std::string& text, int16_t& length);
  void PrintIt(ClassDeliveryNote& delNote, bool printHeader);

 private:
  void PrintFooter(Surface& obj, ClassDeliveryNote& delNote);
  void PrintSignature(Surface& obj, double x, double y, const std::string& caption,
                      const std::string& name);

  // Where the header put its boxed blocks, for the frame drawn after the lines of each page.
  struct HeaderMarks {
    double date_x = 0, number_x = 0;  // left edges of the date and number columns
    double block_top = 0, caption_bottom = 0;
    double invoice_top = 0;           // top of the "Invoice No." row
  } marks_;
};

}  // namespace quorvel

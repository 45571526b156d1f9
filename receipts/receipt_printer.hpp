// Prints a sale from an invoice object as a narrow point-of-sale slip for 80 mm roll printers.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/runtime.hpp"
#include "foundation/surface.hpp"
#include "invoices/invoice.hpp"

namespace quorvel {

class ReceiptPrinter {
 public:
  // Margins are texts the host may set to anything: read as numbers where they are computed
  // with, handed to the surface as they stand where they become a pen position.
  std::string POS_Right_Margin = SignedText(300);
  std::string POS_Left_Margin = SignedText(80);

  // Prints on the system printer with 80 mm roll paper, then puts the previous paper back.
  void PrintIt(ClassInvoice& receipt);
  // The whole slip, ending with EndDoc; a step that fails is skipped and the slip goes on.
  void PrintReceipt(Surface& surface, ClassInvoice& receipt);
  // Length checks only (more than 40 characters raises); the messages are not kept.
  void SetCustomerMessage1(const std::string& message);
  void SetCustomerMessage2(const std::string& message);
  std::string AdjustedText(Surface& surface, std::string& text, int16_t& length);
};

}  // namespace quorvel

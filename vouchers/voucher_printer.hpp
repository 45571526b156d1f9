// Prints a payment or receipt voucher on one page, with the optional table of settled bills.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/surface.hpp"
#include "vouchers/voucher.hpp"

namespace quorvel {

class ClassVoucherPrinter {
 public:
  bool PrintDetails = false;  // print the table of the voucher's payments
  std::string Title;          // replaces "PAYMENT VOUCHER"/"RECEIPT VOUCHER" when not empty

  // Prints on the system printer; PrintReceiptVoucher ends the document.
  void PrintIt(ClassVoucher& voucherData, bool printHeader, bool isReceipt);
  void PrintReceiptVoucher(Surface& surface, ClassVoucher& receiptData, bool printHeader, bool isReceipt);

  // The payment-details table: a blank line, the heading row, one row per payment, the frame.
  void PrintPaymentDetails(Surface& surface, const CollectionRef<ClassPayment>& Payments, bool isReceipt);
  void PrintPaymentDetailsHeader(Surface& surface, bool isReceipt);
  void PrintPaymentDetailsInfo(Surface& surface, const ClassPayment& payment);
  // Seven 3000-long vertical rules from `top`, and the bottom rule at the current line.
  void printTable(Surface& surface, double top);

  std::string AdjustedText(Surface& surface, std::string& text, int16_t& length);

 private:
  void PrintTitle(Surface& surface, bool isReceipt);
  void PrintDateNumberAmount(Surface& surface, const ClassVoucher& voucher);
  void PrintPayee(Surface& surface, const ClassVoucher& voucher, bool isReceipt);
  void PrintAmountInWords(Surface& surface, const ClassVoucher& voucher);
  void PrintMeansOfPayment(Surface& surface, const ClassVoucher& voucher);
  void PrintSignatures(Surface& surface);

  // The amount in words as split for printing; emptied at the start of every voucher.
  std::vector<std::string> amount_lines_;
};

}  // namespace quorvel

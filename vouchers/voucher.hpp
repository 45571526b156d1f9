// The voucher document and its payment lines: host-formatted texts and the list of settled bills.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "foundation/collection.hpp"

namespace quorvel {

// One invoice (receipt voucher) or bill (payment voucher) that the voucher's payment settles.
struct ClassPayment {
  std::string Number;
  std::string InvoiceDate;
  std::string OriginalAmount;
  std::string AmountDue;
  std::string Credits;
  std::string Payments;
};

class ClassVoucher {
 public:
  std::string Amount;
  std::string SumofAmount;
  std::string Number;
  std::string ReceiptDate;
  std::string PayeeName;
  std::string ChequeNumber;
  std::string Bank;
  std::string ChequeDate;
  std::string PaymentMethod;
  std::string Notes;

  // Appends the host's object itself and hands the appended object back through `payment`.
  void AddPayment(std::shared_ptr<ClassPayment>& payment);
  // The number of payments, as the 16-bit count hosts index with.
  int16_t Count();
  // Kept as hosts have always seen it: it never returns an item (error 91, object not set).
  // Printing walks Payments() instead.
  std::shared_ptr<ClassPayment> payment(int16_t& index);
  // Removes the 1-based position; a bad index raises error 9 and leaves the list as it was.
  void Remove(int16_t& index);
  // Does nothing for zero or one payment; with two or more it fails with error 9 and removes
  // nothing. Hosts rely on this behaviour, so it stays.
  void Clear();
  // The live list (never a copy): changes through it show in the voucher.
  const CollectionRef<ClassPayment>& Payments();
  // Same as AddPayment, for hosts that pass the payment by value.
  void AddItem(std::shared_ptr<ClassPayment> payment);

 private:
  CollectionRef<ClassPayment> payments_;
};

}  // namespace quorvel

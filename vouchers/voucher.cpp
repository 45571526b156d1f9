// The voucher's list of payments: appending, counting and the removal rules hosts rely on.
#include "vouchers/voucher.hpp"

#include "foundation/errors.hpp"

namespace quorvel {

void ClassVoucher::AddPayment(std::shared_ptr<ClassPayment>& payment) {
  const CollectionRef<ClassPayment>& list = Payments();
  list->Add(payment);
  payment = list->Item(list->Count());
}

int16_t ClassVoucher::Count() { return Count16(*Payments(), "the voucher's Payments"); }

std::shared_ptr<ClassPayment> ClassVoucher::payment(int16_t& index) {
  Payments();  // the list is created on first touch, as by every other member
  Raise(err::kObjectNotSet, "payment(" + std::to_string(index) +
                                "): the item is assigned to an object that was never set; "
                                "use Payments to reach the items");
}

void ClassVoucher::Remove(int16_t& index) { Payments()->Remove(index); }

void ClassVoucher::Clear() {
  // Position 0 is never valid, so with two or more payments the first removal raises error 9
  // and the loop cannot go round a second time.
  while (Count() - 1 > 0) Payments()->Remove(0);
}

const CollectionRef<ClassPayment>& ClassVoucher::Payments() { return LazyCollection(payments_); }

void ClassVoucher::AddItem(std::shared_ptr<ClassPayment> payment) { Payments()->Add(std::move(payment)); }

}  // namespace quorvel

// The voucher's list of payments: shared objects, 1-based removal and the failures hosts see.
#include <gtest/gtest.h>

#include "foundation/errors.hpp"
#include "support/ops_helpers.hpp"
#include "vouchers/voucher.hpp"

namespace quorvel {
namespace {

using testing::ErrorNumberOf;

std::shared_ptr<ClassPayment> Payment(const std::string& number) { return testing::Share(ClassPayment{number}); }

TEST(Voucher, AddPaymentAndAddItemHoldTheHostsObjectInTheLiveList) {
  ClassVoucher v;
  const CollectionRef<ClassPayment> list = v.Payments();
  EXPECT_EQ(v.Count(), 0);
  EXPECT_EQ(v.Amount + v.SumofAmount + v.Number + v.PayeeName + v.PaymentMethod + v.Notes, "");
  auto p = Payment("B-1");
  const ClassPayment* original = p.get();
  v.AddPayment(p);
  EXPECT_EQ(p.get(), original);  // handed back: the very object that was appended
  v.AddItem(p);
  ASSERT_EQ(list->Count(), 2);  // the list read before is the live one
  EXPECT_EQ(list->Item(1).get(), original);
  EXPECT_EQ(list->Item(2).get(), original);
  list->Add(Payment("through the list"));
  EXPECT_EQ(v.Count(), 3);
}

TEST(Voucher, FailuresAreThoseOfTheListAndLeaveItAsItWas) {
  ClassVoucher v;
  EXPECT_EQ(ErrorNumberOf([&] { v.Clear(); }), 0);
  v.AddItem(Payment("first"));
  EXPECT_EQ(ErrorNumberOf([&] { v.Clear(); }), 0);  // harmless up to one payment
  v.AddItem(Payment("second"));
  EXPECT_EQ(ErrorNumberOf([&] { v.Clear(); }), err::kSubscript);  // asks for index 0 from two on
  for (int16_t bad : {0, 3, -1}) EXPECT_EQ(ErrorNumberOf([&] { v.Remove(bad); }), err::kSubscript) << bad;
  for (int16_t index : {1, 0}) EXPECT_EQ(ErrorNumberOf([&] { v.payment(index); }), err::kObjectNotSet) << index;
  ASSERT_EQ(v.Count(), 2);
  EXPECT_EQ(v.Payments()->Item(1)->Number, "first");
  int16_t one = 1;
  v.Remove(one);  // the later item moves up
  ASSERT_EQ(v.Count(), 1);
  EXPECT_EQ(v.Payments()->Item(1)->Number, "second");
}

}  // namespace
}  // namespace quorvel

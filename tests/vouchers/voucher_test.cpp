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
  p->Number = "B-1 changed";  // a change made by the host after adding shows through the list
  EXPECT_EQ(v.Payments()->Item(1)->Number, "B-1 changed");
  list->Add(Payment("through the list"));
  EXPECT_EQ(v.Count(), 3);
}

TEST(Voucher, RemoveShiftsLaterItemsAndRefusesBadIndexes) {
  ClassVoucher v;
  v.AddItem(Payment("first"));
  v.AddItem(Payment("second"));
  for (int16_t bad : {0, 3, -1}) {
    EXPECT_EQ(ErrorNumberOf([&] { v.Remove(bad); }), err::kSubscript) << bad;
    EXPECT_EQ(v.Count(), 2) << bad;
  }
  int16_t one = 1;
  v.Remove(one);
  ASSERT_EQ(v.Count(), 1);
  EXPECT_EQ(v.Payments()->Item(1)->Number, "second");
}

TEST(Voucher, ClearIsHarmlessUpToOnePaymentAndFailsFromTwo) {
  ClassVoucher v;
  EXPECT_EQ(ErrorNumberOf([&] { v.Clear(); }), 0);
  v.AddItem(Payment("only"));
  EXPECT_EQ(ErrorNumberOf([&] { v.Clear(); }), 0);
  EXPECT_EQ(v.Count(), 1);
  v.AddItem(Payment("second"));
  EXPECT_EQ(ErrorNumberOf([&] { v.Clear(); }), err::kSubscript);
  ASSERT_EQ(v.Count(), 2);
  EXPECT_EQ(v.Payments()->Item(1)->Number, "only");
}

TEST(Voucher, PaymentAccessorAlwaysFailsWithObjectNotSet) {
  ClassVoucher v;
  v.AddItem(Payment("there"));
  for (int16_t index : {1, 0, 5}) EXPECT_EQ(ErrorNumberOf([&] { v.payment(index); }), err::kObjectNotSet) << index;
  EXPECT_EQ(v.Count(), 1);
}

}  // namespace
}  // namespace quorvel

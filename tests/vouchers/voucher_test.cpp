// The voucher's list of payments: shared objects, 1-based removal and the failures hosts see.
#include <gtest/gtest.h>

#include "foundation/errors.hpp"
#include "vouchers/voucher.hpp"

namespace quorvel {
namespace {

std::shared_ptr<ClassPayment> Payment(const std::string& number) {
  auto p = std::make_shared<ClassPayment>();
  p->Number = number;
  return p;
}

// Runs `call` and returns the automation error number it raised (0 when none).
template <class Call>
int32_t ErrorOf(Call&& call) {
  try {
    call();
  } catch (const AutomationError& e) {
    return e.Number();
  }
  return 0;
}

TEST(Voucher, NewVoucherIsEmpty) {
  ClassVoucher v;
  EXPECT_EQ(v.Count(), 0);
  EXPECT_EQ(v.Payments()->Count(), 0);
  for (const std::string* text : {&v.Amount, &v.SumofAmount, &v.Number, &v.ReceiptDate, &v.PayeeName,
                                  &v.ChequeNumber, &v.Bank, &v.ChequeDate, &v.PaymentMethod, &v.Notes})
    EXPECT_TRUE(text->empty());
  const ClassPayment p;
  for (const std::string* text : {&p.Number, &p.InvoiceDate, &p.OriginalAmount, &p.AmountDue, &p.Credits, &p.Payments})
    EXPECT_TRUE(text->empty());
}

TEST(Voucher, AddPaymentAndAddItemHoldTheHostsObject) {
  ClassVoucher v;
  auto p = Payment("B-1");
  const ClassPayment* original = p.get();
  v.AddPayment(p);
  EXPECT_EQ(p.get(), original);  // handed back: the very object that was appended
  v.AddItem(p);
  ASSERT_EQ(v.Count(), 2);
  EXPECT_EQ(v.Payments()->Item(1).get(), original);
  EXPECT_EQ(v.Payments()->Item(2).get(), original);
  // A change made by the host after adding shows through the list.
  p->Number = "B-1 changed";
  EXPECT_EQ(v.Payments()->Item(1)->Number, "B-1 changed");
}

TEST(Voucher, PaymentsIsTheLiveList) {
  ClassVoucher v;
  const CollectionRef<ClassPayment> list = v.Payments();
  EXPECT_EQ(v.Payments().get(), list.get());
  list->Add(Payment("through the list"));
  EXPECT_EQ(v.Count(), 1);
}

TEST(Voucher, RemoveShiftsLaterItemsAndRefusesBadIndexes) {
  ClassVoucher v;
  v.AddItem(Payment("first"));
  v.AddItem(Payment("second"));
  for (int16_t bad : {0, 3, -1}) {
    EXPECT_EQ(ErrorOf([&] { v.Remove(bad); }), err::kSubscript) << bad;
    EXPECT_EQ(v.Count(), 2) << bad;
  }
  int16_t one = 1;
  v.Remove(one);
  ASSERT_EQ(v.Count(), 1);
  EXPECT_EQ(v.Payments()->Item(1)->Number, "second");
}

TEST(Voucher, ClearIsHarmlessUpToOnePaymentAndFailsFromTwo) {
  ClassVoucher v;
  EXPECT_EQ(ErrorOf([&] { v.Clear(); }), 0);
  v.AddItem(Payment("only"));
  EXPECT_EQ(ErrorOf([&] { v.Clear(); }), 0);
  EXPECT_EQ(v.Count(), 1);
  v.AddItem(Payment("second"));
  EXPECT_EQ(ErrorOf([&] { v.Clear(); }), err::kSubscript);
  ASSERT_EQ(v.Count(), 2);
  EXPECT_EQ(v.Payments()->Item(1)->Number, "only");
  EXPECT_EQ(v.Payments()->Item(2)->Number, "second");
}

TEST(Voucher, PaymentAccessorAlwaysFailsWithObjectNotSet) {
  ClassVoucher v;
  v.AddItem(Payment("there"));
  for (int16_t index : {1, 0, 5}) {
    EXPECT_EQ(ErrorOf([&] { v.payment(index); }), err::kObjectNotSet) << index;
  }
  EXPECT_EQ(v.Count(), 1);
}

}  // namespace
}  // namespace quorvel

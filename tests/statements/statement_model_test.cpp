// The statement document: defaults, and line and cheque collections shared with the host.
#include <gtest/gtest.h>

#include "foundation/errors.hpp"
#include "statements/statement.hpp"

namespace quorvel {
namespace {

TEST(StatementModel, DefaultsAreTheCaptionsAndEverythingElseEmpty) {
  ClassStatement s;
  EXPECT_EQ(s.BillToTitle, "Bill to:");
  EXPECT_EQ(s.CustomerSign, "Customer's Sign");
  EXPECT_EQ(s.CashierSign, "Cashier's Sign");
  for (const std::string* field : {&s.printType, &s.printTitle, &s.totalBalance, &s.nintyDaysDue,
                                   &s.overNintyDaysDue, &s.month8Value, &s.StatementDate,
                                   &s.CustomerNote3, &s.subTotal, &s.Total, &s.PDCTotal})
    EXPECT_EQ(*field, "");
  EXPECT_FALSE(s.showByMonth || s.PrintFooter || s.hasShipping || s.hasBilling ||
               s.HasDiscount || s.PrintPDCChecks);

  ClassStatementItem item;
  EXPECT_EQ(item.Description + item.TransactionDate + item.Debit + item.Credit + item.balance, "");
  ClassCheck check;
  EXPECT_EQ(check.TransactionNum + check.TransactionDate + check.Bank + check.ChqDate +
                check.ChqNum + check.Amount, "");
}

TEST(StatementModel, CollectionsAreCreatedOnceAndEmpty) {
  ClassStatement s;
  const auto items = s.StatementItems();
  const auto checks = s.PDCChecks();
  ASSERT_TRUE(items && checks);
  EXPECT_EQ(items->Count(), 0);
  EXPECT_EQ(checks->Count(), 0);
  EXPECT_EQ(s.StatementItems().get(), items.get());
  EXPECT_EQ(s.PDCChecks().get(), checks.get());
  // Adding after the first read goes into the same object the host already holds.
  s.AddChecks(std::make_shared<ClassCheck>());
  EXPECT_EQ(checks->Count(), 1);
  EXPECT_EQ(items->Count(), 0);
}

TEST(StatementModel, LinesAreTheHostsObjectsInOrderAndTwiceWhenAddedTwice) {
  ClassStatement s;
  auto first = std::make_shared<ClassStatementItem>();
  auto second = std::make_shared<ClassStatementItem>();
  s.AddItem(first);
  s.AddItem(second);
  s.AddItem(first);
  const auto& items = *s.StatementItems();
  ASSERT_EQ(items.Count(), 3);
  EXPECT_EQ(items.Item(1).get(), first.get());
  EXPECT_EQ(items.Item(2).get(), second.get());
  EXPECT_EQ(items.Item(3).get(), first.get());
  first->Description = "changed later";
  EXPECT_EQ(items.Item(3)->Description, "changed later");
  EXPECT_THROW(items.Item(4), AutomationError);
}

}  // namespace
}  // namespace quorvel

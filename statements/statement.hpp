// The customer statement document and its ledger line; its post-dated cheques are cheque-list lines.
#pragma once

#include <memory>
#include <string>

#include "cheque_lists/check.hpp"
#include "foundation/collection.hpp"

namespace quorvel {

// One ledger line; every value is host-formatted text.
struct ClassStatementItem {
  std::string Description;
  std::string TransactionDate;
  std::string Debit;
  std::string Credit;
  std::string balance;  // running balance after the line
};

// The fields stay in this order: the automation layer numbers its members by it.
class ClassStatement {
 public:
  std::string printType;
  std::string printTitle;
  std::string BillToTitle = "Bill to:";
  std::string CustomerShortName;
  std::string Change;
  std::string Received;
  std::string NumberTitle;
  std::string totalDebit;
  std::string totalCredit;
  std::string totalBalance;
  bool showByMonth = false;
  std::string currentDue;
  std::string thirtyDaysDue;
  std::string sixtyDaysDue;
  std::string nintyDaysDue;      // spelled so in the hosts' interface
  std::string overNintyDaysDue;  // likewise
  std::string CustomerSign = "Customer's Sign";
  std::string CashierSign = "Cashier's Sign";
  bool PrintFooter = false;
  std::string Store;
  std::string PaymentMethod;
  std::string LPONumber;
  std::string SumOfTotal;
  std::string Shipping1, Shipping2, Shipping3, Shipping4, Shipping5;
  std::string Billing1, Billing2, Billing3, Billing4, Billing5;
  bool hasShipping = false;
  bool hasBilling = false;
  std::string month1Title, month1Value;
  std::string month2Title, month2Value;
  std::string month3Title, month3Value;
  std::string month4Title, month4Value;
  std::string month5Title, month5Value;
  std::string month6Title, month6Value;
  std::string month7Title, month7Value;
  std::string month8Title, month8Value;
  std::string StatementDate;
  std::string currencySign;
  std::string StatementNumber;
  std::string EmployeeName;
  bool HasDiscount = false;
  std::string DiscountPercent;
  std::string StatementDiscount;
  std::string CustomerNote1;
  std::string CustomerNote2;
  std::string CustomerNote3;

 private:
  CollectionRef<ClassStatementItem> items_;
  CollectionRef<ClassCheck> checks_;

 public:
  std::string subTotal;
  std::string Total;
  bool PrintPDCChecks = false;
  std::string PDCTotal;

  // Appends the host's own object (no copy), so one added twice is listed twice.
  void AddItem(std::shared_ptr<ClassStatementItem> item) { LazyCollection(items_)->Add(std::move(item)); }
  // The ledger lines: an empty collection on a new statement, the same object on every call.
  const CollectionRef<ClassStatementItem>& StatementItems() { return LazyCollection(items_); }
  const CollectionRef<ClassCheck>& PDCChecks() { return LazyCollection(checks_); }
  void AddChecks(std::shared_ptr<ClassCheck> check) { LazyCollection(checks_)->Add(std::move(check)); }
};

}  // namespace quorvel

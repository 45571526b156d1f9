// Interfaces of the statement and cheque-list classes.
#include <any>

#include "automation/class_builder.hpp"
#include "automation/declarations.hpp"
#include "cheque_lists/check_printer.hpp"
#include "statements/statement.hpp"
#include "statements/statement_printer.hpp"

namespace quorvel {

namespace {
void DeclareStatementLines(TypeLibrary& library) {
  using Item = ClassStatementItem;
  ClassBuilder<Item>(library, "ClassStatementItem")
      .Field("Description", &Item::Description)
      .Field("TransactionDate", &Item::TransactionDate)
      .Field("Debit", &Item::Debit)
      .Field("Credit", &Item::Credit)
      .Field("balance", &Item::balance);
  DeclareCollection<Item>(library);

  using Chk = ClassCheck;
  ClassBuilder<Chk>(library, "ClassCheck")
      .Field("TransactionNum", &Chk::TransactionNum)
      .Field("TransactionDate", &Chk::TransactionDate)
      .Field("Bank", &Chk::Bank)
      .Field("ChqDate", &Chk::ChqDate)
      .Field("ChqNum", &Chk::ChqNum)
      .Field("Amount", &Chk::Amount);
  DeclareCollection<Chk>(library);
}

void DeclareStatement(TypeLibrary& library) {
  using S = ClassStatement;
  ClassBuilder<S>(library, "ClassStatement")
      .Field("printType", &S::printType)
      .Field("printTitle", &S::printTitle)
      .Field("BillToTitle", &S::BillToTitle)
      .Field("CustomerShortName", &S::CustomerShortName)
      .Field("Change", &S::Change)
      .Field("Received", &S::Received)
      .Field("NumberTitle", &S::NumberTitle)
      .Field("totalDebit", &S::totalDebit)
      .Field("totalCredit", &S::totalCredit)
      .Field("totalBalance", &S::totalBalance)
      .Field("showByMonth", &S::showByMonth)
      .Field("currentDue", &S::currentDue)
      .Field("thirtyDaysDue", &S::thirtyDaysDue)
      .Field("sixtyDaysDue", &S::sixtyDaysDue)
      .Field("nintyDaysDue", &S::nintyDaysDue)
      .Field("overNintyDaysDue", &S::overNintyDaysDue)
      .Field("CustomerSign", &S::CustomerSign)
      .Field("CashierSign", &S::CashierSign)
      .Field("PrintFooter", &S::PrintFooter)
      .Field("Store", &S::Store)
      .Field("PaymentMethod", &S::PaymentMethod)
      .Field("LPONumber", &S::LPONumber)
      .Field("SumOfTotal", &S::SumOfTotal)
      .Field("Shipping1", &S::Shipping1)
      .Field("Shipping2", &S::Shipping2)
      .Field("Shipping3", &S::Shipping3)
      .Field("Shipping4", &S::Shipping4)
      .Field("Shipping5", &S::Shipping5)
      .Field("Billing1", &S::Billing1)
      .Field("Billing2", &S::Billing2)
      .Field("Billing3", &S::Billing3)
      .Field("Billing4", &S::Billing4)
      .Field("Billing5", &S::Billing5)
      .Field("hasShipping", &S::hasShipping)
      .Field("hasBilling", &S::hasBilling)
      .Field("month1Title", &S::month1Title)
      .Field("month1Value", &S::month1Value)
      .Field("month2Title", &S::month2Title)
      .Field("month2Value", &S::month2Value)
      .Field("month3Title", &S::month3Title)
      .Field("month3Value", &S::month3Value)
      .Field("month4Title", &S::month4Title)
      .Field("month4Value", &S::month4Value)
      .Field("month5Title", &S::month5Title)
      .Field("month5Value", &S::month5Value)
      .Field("month6Title", &S::month6Title)
      .Field("month6Value", &S::month6Value)
      .Field("month7Title", &S::month7Title)
      .Field("month7Value", &S::month7Value)
      .Field("month8Title", &S::month8Title)
      .Field("month8Value", &S::month8Value)
      .Field("StatementDate", &S::StatementDate)
      .Field("currencySign", &S::currencySign)
      .Field("StatementNumber", &S::StatementNumber)
      .Field("EmployeeName", &S::EmployeeName)
      .Field("HasDiscount", &S::HasDiscount)
      .Field("DiscountPercent", &S::DiscountPercent)
      .Field("StatementDiscount", &S::StatementDiscount)
      .Field("CustomerNote1", &S::CustomerNote1)
      .Field("CustomerNote2", &S::CustomerNote2)
      .Field("CustomerNote3", &S::CustomerNote3)
      .Field("subTotal", &S::subTotal)
      .Field("Total", &S::Total)
      .Field("PrintPDCChecks", &S::PrintPDCChecks)
      .Field("PDCTotal", &S::PDCTotal)
      .Method("AddItem", &S::AddItem, {"ByRef item"})
      .Get<CollectionRef<ClassStatementItem>>("StatementItems", [](S& s) { return s.StatementItems(); })
      .Get<CollectionRef<ClassCheck>>("PDCChecks", [](S& s) { return s.PDCChecks(); })
      .Method("AddChecks", &S::AddChecks, {"ByRef check"});
}
}  // namespace

void DeclareStatementClasses(TypeLibrary& library) {
  DeclareStatement(library);
  DeclareStatementLines(library);
  DeclareCollection<std::any>(library);  // the hosts' preview pages, held and never read

  using P = ClassStatementPrinter;
  ClassBuilder<P>(library, "ClassStatementPrinter")
      .Field("printItemsTable", &P::printItemsTable)
      .Field("printLPONumber", &P::printLPONumber)
      .Field("PreviewCollection", &P::PreviewCollection)
      .Method("PrintSalesReceipt", &P::PrintSalesReceipt, {})
      .Method("PrintStatementHeader", &P::PrintStatementHeader, {"obj", "statement", "ByRef printHeader"})
      .Method("PrintStatement", &P::PrintStatement, {"obj", "statement", "ByRef printHeader"})
      .Method("PrintStandardAging", &P::PrintStandardAging, {"obj", "ByRef curY As Variant", "statement"})
      .Method("PrintByMonthAging", &P::PrintByMonthAging, {"obj", "ByRef curY As Variant", "statement"})
      .Method("PrintItemsHeader", &P::PrintItemsHeader, {"obj"})
      .Method("printTable", &P::printTable,
              {"obj", "ByRef top As Variant", "ByRef hasBilling", "ByRef hasShipping", "ByRef hasLPO", "ByRef showByMonth"})
      .Method("PrintIt", &P::PrintIt, {"statement", "ByVal printHeader"})
      .Method("PrintPDCChecks", &P::PrintPDCChecks, {"obj"})
      .Method("PrintChecksHeader", &P::PrintChecksHeader, {"obj"})
      .Method("PrintItem", &P::PrintItem, {"obj", "ByRef It"})
      .Method("AdjustedText", &P::AdjustedText, {"obj", "text", "length"})
      .Returns(TypeKind::Variant);

  using C = ClassCheckPrinter;
  ClassBuilder<C>(library, "ClassCheckPrinter")
      .Field("printItemsTable", &C::printItemsTable)
      .Field("PreviewCollection", &C::PreviewCollection)
      .Method("PrintChecks", &C::PrintChecks, {"obj", "statement", "printHeader", "printTable", "pageNumber"})
      .Method("printHeader", &C::printHeader, {"obj", "printHeader"})
      .Method("PrintItemsHeader", &C::PrintItemsHeader, {"obj"})
      .Method("PrintItem", &C::PrintItem, {"obj", "ByRef It"})
      .Method("printTable", &C::printTable, {"obj", "top As Variant", "hasBilling", "hasShipping", "hasLPO"})
      .Method("AdjustedText", &C::AdjustedText, {"obj", "text", "length"})
      .Returns(TypeKind::Variant);
}

}  // namespace quorvel

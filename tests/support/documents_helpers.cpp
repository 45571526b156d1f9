// Sample documents and restated page rules for the document tests.
#include "support/documents_helpers.hpp"

#include <cmath>

#include "foundation/company_info.hpp"

namespace quorvel::testing {

void ResetProfile() {
  ModuleCompanyInfo::Profile() = CompanyProfile{};
  ClassCompanyInfo reserve;
}

void ResetProfileWithCompany() {
  ResetProfile();
  ClassCompanyInfo().SetCompanyInfo("Larkspur Office Supply", "7 Tannery Row", "Millbrook", "", "", "", "", "", "",
                                    "", "$", "Dollar");
}

std::shared_ptr<ClassInvoiceItem> MakeItem(const std::string& name, const std::string& description,
                                           const std::string& total) {
  return Share(ClassInvoiceItem{.ItemName = name, .Quantity = "1", .UnitPrice = total, .Total = total,
                                .Description = description});
}

ClassInvoice SampleInvoice() {
  ClassInvoice invoice;
  invoice.printTitle = "Invoice";
  invoice.NumberTitle = "Invoice No.";
  invoice.InvoiceNumber = "INV-7";
  invoice.InvoiceDate = "01/02/2024";
  invoice.LPONumber = "PO-88";
  invoice.hasBilling = invoice.hasShipping = true;
  invoice.Billing1 = "Fenwick Garden Centre";
  invoice.Billing2 = "22 Orchard Way";
  invoice.Shipping1 = "Fenwick Depot";
  invoice.subTotal = "30.00";
  invoice.Total = "30.00";
  invoice.SumOfTotal = "Thirty dollars only";
  invoice.CustomerNote1 = "Thank You For Your Shopping";
  return invoice;
}

double CaptionRowWithoutAddresses(bool with_po) {
  const int lines = 12 + 3 + 1 + (with_po ? 2 : 0) + 1;
  return std::nearbyint(lines * LineAt(10));
}

std::vector<DrawOps> PagesOf(const DrawOps& ops, const std::string& title) {
  std::vector<DrawOps> pages;
  for (const DrawOp& op : ops) {
    const auto* text = std::get_if<TextOp>(&op);
    if (text && text->size == 24 && text->text == title) pages.emplace_back();
    if (!pages.empty()) pages.back().push_back(op);
  }
  return pages;
}

void FillChequeVoucher(ClassVoucher& v) {
  v.Amount = "12,450.75";
  v.SumofAmount = "Twelve Thousand Four Hundred Fifty and Seventy Five Cents Only";
  v.Number = "PV-0317";
  v.ReceiptDate = "14/03/2024";
  v.PayeeName = "Corvantis Paper Mills";
  v.ChequeNumber = "004518";
  v.Bank = "Fernhollow Savings Bank";
  v.ChequeDate = "30/03/2024";
  v.PaymentMethod = "CHEQUE";
  v.Notes = "Paper supply, February";
  v.AddItem(Share(ClassPayment{"B-1001", "02/02/2024", "5,200.00", "5,200.00", "0.00", "5,200.00"}));
  v.AddItem(Share(ClassPayment{"B-1002", "19/02/2024", "7,400.75", "7,400.75", "150.00", "7,250.75"}));
}

std::shared_ptr<ClassStatementItem> LedgerLine(int i) {
  return Share(ClassStatementItem{.Description = "Line " + std::to_string(i), .TransactionDate = "01/02/2024",
                                  .Debit = "10.00", .balance = std::to_string(10 * i) + ".00"});
}

std::shared_ptr<ClassCheck> Cheque(int i) {
  return Share(ClassCheck{"TR-" + std::to_string(i), "03/04/2024", "Harbour Bank", "30/06/2024",
                          "CHQ-" + std::to_string(i), "250.00"});
}

std::shared_ptr<ClassStatement> SampleStatement(int lines, int cheques) {
  auto s = std::make_shared<ClassStatement>();
  s->printTitle = "Statement";
  s->StatementDate = "31/03/2024";
  s->totalDebit = "2,000.00";
  s->totalCredit = "500.00";
  s->totalBalance = "1,500.00";
  for (int i = 1; i <= lines; ++i) s->AddItem(LedgerLine(i));
  for (int i = 1; i <= cheques; ++i) s->AddChecks(Cheque(i));
  s->PDCTotal = "9,999.00";
  return s;
}

double RowY(double first_row_y, int k) { return first_row_y + k * (LineAt(10) + 100); }

int RowsPerPage(double first_row_y, double limit) {
  int rows = 0;
  while (RowY(first_row_y, rows) + LineAt(10) < limit) ++rows;
  return rows;
}

}  // namespace quorvel::testing

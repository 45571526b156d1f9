// Test helpers shared by the document tests: the process profile, sample documents, and the
// page-filling rules restated.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"
#include "invoices/invoice.hpp"
#include "statements/statement.hpp"
#include "support/ops_helpers.hpp"
#include "vouchers/voucher.hpp"

namespace quorvel::testing {

// A4 in twips (the preview's default page), and the page foot with the reserve of 5500 that a
// ClassCompanyInfo sets.
constexpr double kPageWidth = 11906, kPageHeight = 16838;
constexpr double kFoot = kPageHeight - 5500;

// A fresh process profile: TopMargin 0 and, through a ClassCompanyInfo, BottomReserve 5500.
void ResetProfile();
// ResetProfile plus the company "Larkspur Office Supply", "7 Tannery Row", "Millbrook" (its two
// address lines), currency "$" / "Dollar".
void ResetProfileWithCompany();

// An invoice line of quantity 1 with the total as its unit price.
std::shared_ptr<ClassInvoiceItem> MakeItem(const std::string& name, const std::string& description,
                                           const std::string& total = "10.00");
// An invoice titled "Invoice" with number, date, both address blocks, totals and one footer note.
ClassInvoice SampleInvoice();
// The y of the invoice's column captions when the head is printed without letterhead at
// TopMargin 0: twelve blank lines, the two-line number/date block and its blank line, the blank
// line after the (absent) addresses, the two purchase-order lines and the blank line after
// them, rounded to the whole twip.
double CaptionRowWithoutAddresses(bool with_po = true);
// Splits a preview's ops into pages: a page begins at each 24-point title.
std::vector<DrawOps> PagesOf(const DrawOps& ops, const std::string& title);

// A cheque payment of two bills, B-1001 and B-1002.
void FillChequeVoucher(ClassVoucher& v);

// Ledger line i (1-based) reads "Line i" with the date "01/02/2024" and small amounts.
std::shared_ptr<ClassStatementItem> LedgerLine(int i);
// Cheque i reads "CHQ-i" with fixed texts and the amount "250.00".
std::shared_ptr<ClassCheck> Cheque(int i);
// A statement titled "Statement" with `lines` ledger lines, `cheques` cheques, the totals
// "2,000.00" / "500.00" / "1,500.00" and the cheque total "9,999.00".
std::shared_ptr<ClassStatement> SampleStatement(int lines, int cheques);
// The page-filling rule of statements and cheque lists: rows start at `first_row_y`, each takes
// one 10 pt line plus 100, and a row is started only while its y + the line height stays
// strictly below `limit`.
int RowsPerPage(double first_row_y, double limit);
// y of row k (0-based) on a page whose first row is at `first_row_y`.
double RowY(double first_row_y, int k);

}  // namespace quorvel::testing

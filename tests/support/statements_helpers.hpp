// Test helpers for statements and cheque lists: sample documents and the page-filling rule restated.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"
#include "statements/statement.hpp"

namespace quorvel::testing {

// Line i (1-based) reads "Line i" with the date "01/02/2024" and small amounts.
std::shared_ptr<ClassStatementItem> LedgerLine(int i);
// Cheque i reads "CHQ-i" with fixed texts.
std::shared_ptr<ClassCheck> Cheque(int i);
// A statement titled "Statement" with `lines` ledger lines and `cheques` cheques.
std::shared_ptr<ClassStatement> SampleStatement(int lines, int cheques);

// The page-filling rule: rows start at `first_row_y`, each takes one 10 pt line plus 100, and a
// row is started only while its y + the line height stays strictly below `limit`.
int RowsPerPage(double first_row_y, double limit);
// y of row k (0-based) on a page whose first row is at `first_row_y`.
double RowY(double first_row_y, int k);

// Ops of one document printed to a .jsonl file on the system printer (A4), page ops included.
DrawOps ReadOpsFile(const std::string& path);

}  // namespace quorvel::testing

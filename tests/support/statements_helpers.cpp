// Statement test helpers.
#include "support/statements_helpers.hpp"

#include <fstream>

#include "support/ops_helpers.hpp"

namespace quorvel::testing {

std::shared_ptr<ClassStatementItem> LedgerLine(int i) {
  auto line = std::make_shared<ClassStatementItem>();
  line->Description = "Line " + std::to_string(i);
  line->TransactionDate = "01/02/2024";
  line->Debit = "10.00";
  line->Credit = "";
  line->balance = std::to_string(10 * i) + ".00";
  return line;
}

std::shared_ptr<ClassCheck> Cheque(int i) {
  auto check = std::make_shared<ClassCheck>();
  check->TransactionNum = "TR-" + std::to_string(i);
  check->TransactionDate = "03/04/2024";
  check->Bank = "Harbour Bank";
  check->ChqDate = "30/06/2024";
  check->ChqNum = "CHQ-" + std::to_string(i);
  check->Amount = "250.00";
  return check;
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

DrawOps ReadOpsFile(const std::string& path) {
  DrawOps ops;
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);)
    if (!line.empty()) ops.push_back(OpFromJson(line));
  return ops;
}

}  // namespace quorvel::testing

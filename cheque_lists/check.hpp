// One post-dated cheque: a line of a cheque list, held by a statement for its cheque pages.
#pragma once

#include <string>

namespace quorvel {

// Every value is host-formatted text.
struct ClassCheck {
  std::string TransactionNum;  // the transaction the cheque pays
  std::string TransactionDate;
  std::string Bank;
  std::string ChqDate;
  std::string ChqNum;
  std::string Amount;
};

}  // namespace quorvel

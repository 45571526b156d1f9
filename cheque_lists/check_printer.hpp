// The cheque-list printer: a statement's post-dated cheques as a paged list with a total.
#pragma once

#include <any>
#include <cstdint>
#include <string>

#include "foundation/collection.hpp"
#include "foundation/surface.hpp"
#include "statements/statement.hpp"

namespace quorvel {

class ClassCheckPrinter {
 public:
  // Held for the host only: the frame follows the printTable argument of PrintChecks.
  bool printItemsTable = false;
  // Held for the host's preview; no printing routine reads or fills it.
  CollectionRef<std::any> PreviewCollection;

  // The whole list. pageNumber is the number of the first page and comes back holding the
  // number of the last; the document is left open for the caller to end.
  // `print_frame` draws the frame on every page (the host's printTable argument).
  void PrintChecks(Surface& surface, ClassStatement& statement, bool print_header, bool print_frame,
                   int16_t& pageNumber);
  void printHeader(Surface& surface, bool print_header);
  void PrintItemsHeader(Surface& surface);
  void PrintItem(Surface& surface, const ClassCheck& item);
  void printTable(Surface& surface, double top, bool hasBilling, bool hasShipping, bool hasLPO);
  std::string AdjustedText(Surface& surface, std::string& text, int16_t& length);

 private:
  void PrintListTotal(Surface& surface, ClassStatement& statement);
};

}  // namespace quorvel

// `quorvel schema`: the JSON Schema of document files, for editors and validators.
#include <iostream>

#include "automation/document_schema.hpp"
#include "cli/commands.hpp"

namespace quorvel::cli {

int RunSchema() {
  std::cout << DocumentSchema().dump(2) << "\n";
  return 0;
}

}  // namespace quorvel::cli

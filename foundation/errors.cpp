// Construction and standard texts of the automation errors.
#include "foundation/errors.hpp"

namespace quorvel {

namespace {
std::string Compose(int32_t number, const std::string& description, const std::string& context) {
  std::string text = "error " + std::to_string(number) + ": " + description;
  if (!context.empty()) text += " (" + context + ")";
  return text;
}
}  // namespace

AutomationError::AutomationError(int32_t number, std::string description, std::string context)
    : std::runtime_error(Compose(number, description, context)),
      number_(number),
      description_(std::move(description)),
      context_(std::move(context)) {}

std::string StandardDescription(int32_t number) {
  switch (number) {
    case err::kInvalidArgument: return "Invalid procedure call or argument";
    case err::kOverflow: return "Overflow";
    case err::kSubscript: return "Subscript out of range";
    case err::kTypeMismatch: return "Type mismatch";
    case err::kFileError: return "Path/File access error";
    case err::kObjectNotSet: return "Object variable or With block variable not set";
    case err::kNotSupported: return "Object doesn't support this property or method";
    case 429: return "ActiveX component can't create object";
    case 449: return "Argument not optional";
    case 450: return "Wrong number of arguments or invalid property assignment";
    default: return "Application-defined or object-defined error";
  }
}

void Raise(int32_t number, std::string context) {
  throw AutomationError(number, StandardDescription(number), std::move(context));
}

}  // namespace quorvel

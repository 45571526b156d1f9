// Variant conversions, with the runtime's type-mismatch and overflow errors.
#include "automation/variant.hpp"

#include <cmath>

#include "automation/type_library.hpp"
#include "foundation/errors.hpp"
#include "foundation/runtime.hpp"

namespace quorvel {

namespace {
[[noreturn]] void Mismatch(const Variant& v, const char* wanted) {
  Raise(err::kTypeMismatch, std::string(VarTypeName(v.Type())) + " given where " + wanted + " is expected");
}

// A text as a number, the whole text: leading/trailing blanks allowed, nothing else.
bool ParseNumber(const std::string& text, double& out) {
  size_t start = text.find_first_not_of(' ');
  if (start == std::string::npos) return false;
  size_t end = text.find_last_not_of(' ') + 1;
  const std::string core = text.substr(start, end - start);
  char* stop = nullptr;
  out = std::strtod(core.c_str(), &stop);
  return stop && *stop == '\0' && std::isfinite(out) && core.find_first_of("xXnN") == std::string::npos;
}
}  // namespace

const char* VarTypeName(VarType type) {
  switch (type) {
    case VarType::Empty: return "Empty";
    case VarType::Boolean: return "Boolean";
    case VarType::Integer: return "Integer";
    case VarType::Long: return "Long";
    case VarType::Single: return "Single";
    case VarType::Double: return "Double";
    case VarType::String: return "String";
    case VarType::Object: return "Object";
    case VarType::Collection: return "Collection";
  }
  return "?";
}

VarType Variant::Type() const {
  switch (value_.index()) {
    case 0: return VarType::Empty;
    case 1: return VarType::Boolean;
    case 2: return VarType::Integer;
    case 3: return VarType::Long;
    case 4: return VarType::Single;
    case 5: return VarType::Double;
    case 6: return VarType::String;
    default: {
      const auto& ref = std::get<ObjectRef>(value_);
      return ref.cls && ref.cls->is_collection ? VarType::Collection : VarType::Object;
    }
  }
}

double Variant::AsDouble() const {
  switch (value_.index()) {
    case 0: return 0;
    case 1: return std::get<bool>(value_) ? -1 : 0;  // True is −1 to an automation host
    case 2: return std::get<int16_t>(value_);
    case 3: return std::get<int32_t>(value_);
    case 4: return std::get<float>(value_);
    case 5: return std::get<double>(value_);
    case 6: {
      double number = 0;
      if (!ParseNumber(std::get<std::string>(value_), number)) Mismatch(*this, "a number");
      return number;
    }
    default: Mismatch(*this, "a number");
  }
}

bool Variant::AsBool() const {
  if (const auto* b = Get<bool>()) return *b;
  if (const auto* s = Get<std::string>()) {
    if (*s == "True" || *s == "true") return true;
    if (*s == "False" || *s == "false") return false;
  }
  return AsDouble() != 0;
}

int16_t Variant::AsInt16() const { return ToInt16(AsDouble()); }
int32_t Variant::AsInt32() const { return ToInt32(AsDouble()); }

std::string Variant::AsString() const {
  switch (value_.index()) {
    case 0: return "";
    case 1: return std::get<bool>(value_) ? "True" : "False";
    case 6: return std::get<std::string>(value_);
    case 7: Mismatch(*this, "a text");
    default: return NumberText(AsDouble());
  }
}

ObjectRef Variant::AsObject() const {
  if (IsEmpty()) return {};
  if (const auto* ref = Get<ObjectRef>()) return *ref;
  Mismatch(*this, "an object");
}

}  // namespace quorvel

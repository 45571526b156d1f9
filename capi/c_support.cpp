// Variant conversion between the C struct and the automation Variant, and the per-thread last error.
#include "capi/c_support.hpp"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <unordered_map>

namespace quorvel::capi {

namespace {
struct LastError {
  int32_t number = 0;
  std::string message;
};

// One per thread: a host's threads each see only their own calls' errors.
thread_local LastError last_error;

bool IsNumber(VarType type) {
  return type == VarType::Integer || type == VarType::Long || type == VarType::Single || type == VarType::Double;
}
}  // namespace

int32_t RecordError(int32_t number, const char* description, const std::string& context) noexcept {
  last_error.number = number;
  try {
    last_error.message = description;
    if (!context.empty()) last_error.message += " (" + context + ")";
  } catch (...) {
    last_error.message.clear();  // out of memory while composing: the number still tells
  }
  return number;
}

void RecordSuccess() noexcept {
  last_error.number = 0;
  last_error.message.clear();
}

namespace {
struct HandleTable {
  std::mutex mutex;
  std::unordered_map<uintptr_t, ObjectRef> live;
  uintptr_t last = 0x51000;  // tokens step by 16 from here: never 0, never reused
};
HandleTable& Handles() {
  static HandleTable table;
  return table;
}
uintptr_t TokenOf(const quorvel_object* handle) { return reinterpret_cast<uintptr_t>(handle); }
}  // namespace

ObjectRef RefOf(const quorvel_object* handle, const char* what) {
  if (!handle) Raise(err::kObjectNotSet, std::string("no ") + what + " given");
  HandleTable& table = Handles();
  std::lock_guard<std::mutex> lock(table.mutex);
  const auto it = table.live.find(TokenOf(handle));
  if (it == table.live.end() || !it->second)
    Raise(err::kObjectNotSet, std::string(what) + ": the handle was released or never given out");
  return it->second;
}

quorvel_object* NewHandle(ObjectRef ref) {
  HandleTable& table = Handles();
  std::lock_guard<std::mutex> lock(table.mutex);
  table.last += 16;
  table.live.emplace(table.last, std::move(ref));
  return reinterpret_cast<quorvel_object*>(table.last);
}

bool ReleaseHandle(const quorvel_object* handle) noexcept {
  ObjectRef dropped;  // the object may go with its last reference: not under the lock
  HandleTable& table = Handles();
  std::lock_guard<std::mutex> lock(table.mutex);
  const auto it = table.live.find(TokenOf(handle));
  if (it == table.live.end()) return false;
  dropped = std::move(it->second);
  table.live.erase(it);
  return true;
}

std::string TextArg(const char* text, const char* what) {
  if (!text) Raise(err::kInvalidArgument, std::string("no ") + what + " given");
  return text;
}

char* CopyText(const std::string& text) {
  char* copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (!copy) throw std::bad_alloc();
  std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

Variant FromC(const quorvel_variant& value) {
  switch (value.type) {
    case QUORVEL_EMPTY: return Variant();
    case QUORVEL_BOOLEAN: return Variant(value.value.boolean != 0);
    case QUORVEL_INTEGER: return Variant(value.value.integer);
    case QUORVEL_LONG: return Variant(value.value.long_value);
    case QUORVEL_SINGLE: return Variant(value.value.single);
    case QUORVEL_DOUBLE: return Variant(value.value.real);
    case QUORVEL_TEXT: return Variant(std::string(value.value.text ? value.value.text : ""));
    case QUORVEL_OBJECT: return Variant(value.value.object ? RefOf(value.value.object, "object argument") : ObjectRef{});
    default: Raise(err::kInvalidArgument, "unknown variant type " + std::to_string(value.type));
  }
}

void ToC(const Variant& value, quorvel_variant& out) {
  quorvel_variant fresh{};
  switch (value.Type()) {
    case VarType::Empty: fresh.type = QUORVEL_EMPTY; break;
    case VarType::Boolean:
      fresh.type = QUORVEL_BOOLEAN;
      fresh.value.boolean = *value.Get<bool>() ? 1 : 0;
      break;
    case VarType::Integer:
      fresh.type = QUORVEL_INTEGER;
      fresh.value.integer = *value.Get<int16_t>();
      break;
    case VarType::Long:
      fresh.type = QUORVEL_LONG;
      fresh.value.long_value = *value.Get<int32_t>();
      break;
    case VarType::Single:
      fresh.type = QUORVEL_SINGLE;
      fresh.value.single = *value.Get<float>();
      break;
    case VarType::Double:
      fresh.type = QUORVEL_DOUBLE;
      fresh.value.real = *value.Get<double>();
      break;
    case VarType::String:
      fresh.type = QUORVEL_TEXT;
      fresh.value.text = CopyText(*value.Get<std::string>());
      fresh.owned = 1;
      break;
    case VarType::Object:
    case VarType::Collection: {
      const ObjectRef& ref = *value.Get<ObjectRef>();
      fresh.type = QUORVEL_OBJECT;
      if (ref) {
        fresh.value.object = NewHandle(ref);
        fresh.owned = 1;
      }
      break;
    }
  }
  out = fresh;
}

void Clear(quorvel_variant& value) noexcept {
  if (value.owned) {
    if (value.type == QUORVEL_TEXT) std::free(const_cast<char*>(value.value.text));
    if (value.type == QUORVEL_OBJECT) ReleaseHandle(value.value.object);
  }
  value = quorvel_variant{};
}

bool SameValue(const Variant& before, const Variant& after) {
  const VarType a = before.Type(), b = after.Type();
  if (IsNumber(a) && IsNumber(b)) return before.AsDouble() == after.AsDouble();
  if (a != b) return false;
  switch (a) {
    case VarType::Empty: return true;
    case VarType::Boolean: return *before.Get<bool>() == *after.Get<bool>();
    case VarType::String: return *before.Get<std::string>() == *after.Get<std::string>();
    default: return *before.Get<ObjectRef>() == *after.Get<ObjectRef>();
  }
}

}  // namespace quorvel::capi

extern "C" int32_t quorvel_last_error(int32_t* number, const char** message) {
  using quorvel::capi::last_error;
  if (number) *number = last_error.number;
  if (message) *message = last_error.message.c_str();
  return QUORVEL_OK;
}

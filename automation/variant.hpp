// The automation Variant: the one value type that crosses the late-bound interface.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

namespace quorvel {

struct ClassInfo;

// A reference to an automation object: the object itself (shared with the host) and its class.
struct ObjectRef {
  std::shared_ptr<void> ptr;
  const ClassInfo* cls = nullptr;
  explicit operator bool() const { return ptr != nullptr; }
  bool operator==(const ObjectRef& other) const { return ptr == other.ptr; }
};

enum class VarType { Empty, Boolean, Integer, Long, Single, Double, String, Object, Collection };

class Variant {
 public:
  Variant() = default;
  Variant(bool v) : value_(v) {}
  Variant(int16_t v) : value_(v) {}
  Variant(int32_t v) : value_(v) {}
  Variant(float v) : value_(v) {}
  Variant(double v) : value_(v) {}
  Variant(std::string v) : value_(std::move(v)) {}
  Variant(const char* v) : value_(std::string(v)) {}
  Variant(ObjectRef v) : value_(std::move(v)) {}

  VarType Type() const;
  bool IsEmpty() const { return value_.index() == 0; }

  // Conversions as an automation host expects them: numbers and numeric texts convert to each
  // other (16-bit past its range raises error 6), an object never converts (error 13).
  bool AsBool() const;
  int16_t AsInt16() const;
  int32_t AsInt32() const;
  double AsDouble() const;
  std::string AsString() const;
  // The object held; Empty gives a null reference. Anything else raises error 13.
  ObjectRef AsObject() const;

  template <class T>
  const T* Get() const { return std::get_if<T>(&value_); }

 private:
  std::variant<std::monostate, bool, int16_t, int32_t, float, double, std::string, ObjectRef> value_;
};

const char* VarTypeName(VarType type);

}  // namespace quorvel

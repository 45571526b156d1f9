// Test helpers for hosts of the C interface: handles released at scope end, variant builders,
// and calls that fail the test with the library's own error message.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quorvel.h"

namespace quorvel::testing {

// One object handle, released when it goes out of scope.
class CObject {
 public:
  CObject() = default;
  explicit CObject(quorvel_object* handle) : handle_(handle) {}
  CObject(CObject&& other) noexcept : handle_(other.handle_) { other.handle_ = nullptr; }
  CObject& operator=(CObject&& other) noexcept;
  ~CObject() { quorvel_release(handle_); }
  quorvel_object* get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }

 private:
  quorvel_object* handle_ = nullptr;
};

quorvel_variant CText(const char* text);
quorvel_variant CBool(bool value);
quorvel_variant CInt(int16_t value);
quorvel_variant CLong(int32_t value);
quorvel_variant CDouble(double value);
quorvel_variant CObj(const CObject& object);

// "438: Object doesn't support ..." for the calling thread's last call.
std::string LastError();
int32_t LastErrorNumber();

// Calls that are expected to succeed: a failure is reported with the library's message.
CObject Create(const std::string& class_name);
void Put(const CObject& object, const std::string& member, quorvel_variant value);
// The result, owned by the caller (release it with quorvel_variant_clear, or use the readers).
quorvel_variant Get(const CObject& object, const std::string& member);
quorvel_variant Call(const CObject& object, const std::string& member, std::vector<quorvel_variant>& args);
quorvel_variant Call(const CObject& object, const std::string& member, std::vector<quorvel_variant>&& args);

// Readers that take over an owned result and give it back to the library.
std::string TakeText(quorvel_variant value);
CObject TakeObject(quorvel_variant value);
double TakeNumber(quorvel_variant value);

// The last document's results (files or "job QUEUE-ID"), one per entry, and its page count.
std::vector<std::string> LastResults(int32_t* pages = nullptr);

}  // namespace quorvel::testing

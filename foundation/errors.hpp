// Automation errors that reach the host (number + message) and the ignore-errors rule of the fitting routines.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quorvel {

namespace err {
constexpr int32_t kInvalidArgument = 5;
constexpr int32_t kOverflow = 6;
constexpr int32_t kSubscript = 9;
constexpr int32_t kTypeMismatch = 13;
constexpr int32_t kFileError = 75;  // "Path/File access error"
constexpr int32_t kObjectNotSet = 91;
constexpr int32_t kNotSupported = 438;
// Base of user-defined automation errors (0x80040000) plus the component's offset 900.
constexpr int32_t kComponent = static_cast<int32_t>(0x80040000u + 900u);
}  // namespace err

// An error with an automation error number. `Description()` is the runtime's standard text;
// `Context()` says which value or member was at fault so that a host can act on it.
class AutomationError : public std::runtime_error {
 public:
  AutomationError(int32_t number, std::string description, std::string context = {});
  int32_t Number() const { return number_; }
  const std::string& Description() const { return description_; }
  const std::string& Context() const { return context_; }

 private:
  int32_t number_;
  std::string description_;
  std::string context_;
};

// The runtime's standard description for an error number ("Overflow", "Type mismatch", ...).
std::string StandardDescription(int32_t number);

[[noreturn]] void Raise(int32_t number, std::string context = {});

// Runs one statement; an automation error it raises is dropped and execution goes on with the
// next statement. Used where a routine must keep printing whatever one step does.
template <class Statement>
void IgnoreErrors(Statement&& statement) {
  try {
    statement();
  } catch (const AutomationError&) {
  }
}

}  // namespace quorvel

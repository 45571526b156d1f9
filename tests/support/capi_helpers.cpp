// Helpers for C-interface hosts in tests: every call goes through the functions of quorvel.h.
#include "support/capi_helpers.hpp"

#include <sstream>

namespace quorvel::testing {

CObject& CObject::operator=(CObject&& other) noexcept {
  if (this != &other) {
    quorvel_release(handle_);
    handle_ = other.handle_;
    other.handle_ = nullptr;
  }
  return *this;
}

quorvel_variant CText(const char* text) {
  quorvel_variant v{};
  v.type = QUORVEL_TEXT;
  v.value.text = text;
  return v;
}

quorvel_variant CBool(bool value) {
  quorvel_variant v{};
  v.type = QUORVEL_BOOLEAN;
  v.value.boolean = value ? 1 : 0;
  return v;
}

quorvel_variant CInt(int16_t value) {
  quorvel_variant v{};
  v.type = QUORVEL_INTEGER;
  v.value.integer = value;
  return v;
}

quorvel_variant CLong(int32_t value) {
  quorvel_variant v{};
  v.type = QUORVEL_LONG;
  v.value.long_value = value;
  return v;
}

quorvel_variant CDouble(double value) {
  quorvel_variant v{};
  v.type = QUORVEL_DOUBLE;
  v.value.real = value;
  return v;
}

quorvel_variant CObj(const CObject& object) {
  quorvel_variant v{};
  v.type = QUORVEL_OBJECT;
  v.value.object = object.get();
  return v;
}

std::string LastError() {
  int32_t number = 0;
  const char* message = nullptr;
  quorvel_last_error(&number, &message);
  return std::to_string(number) + ": " + (message ? message : "");
}

int32_t LastErrorNumber() {
  int32_t number = 0;
  quorvel_last_error(&number, nullptr);
  return number;
}

CObject Create(const std::string& class_name) {
  quorvel_object* handle = nullptr;
  EXPECT_EQ(quorvel_create(class_name.c_str(), &handle), QUORVEL_OK) << class_name << ": " << LastError();
  return CObject(handle);
}

void Put(const CObject& object, const std::string& member, quorvel_variant value) {
  EXPECT_EQ(quorvel_put(object.get(), member.c_str(), &value), QUORVEL_OK) << member << ": " << LastError();
}

quorvel_variant Get(const CObject& object, const std::string& member) {
  quorvel_variant result{};
  EXPECT_EQ(quorvel_get(object.get(), member.c_str(), &result), QUORVEL_OK) << member << ": " << LastError();
  return result;
}

quorvel_variant Call(const CObject& object, const std::string& member, std::vector<quorvel_variant>& args) {
  quorvel_variant result{};
  EXPECT_EQ(quorvel_call(object.get(), member.c_str(), args.data(), static_cast<int32_t>(args.size()), &result),
            QUORVEL_OK)
      << member << ": " << LastError();
  return result;
}

quorvel_variant Call(const CObject& object, const std::string& member, std::vector<quorvel_variant>&& args) {
  std::vector<quorvel_variant> held = std::move(args);
  quorvel_variant result = Call(object, member, held);
  for (quorvel_variant& arg : held) quorvel_variant_clear(&arg);
  return result;
}

std::string TakeText(quorvel_variant value) {
  EXPECT_EQ(value.type, QUORVEL_TEXT);
  const std::string text = value.type == QUORVEL_TEXT && value.value.text ? value.value.text : "";
  quorvel_variant_clear(&value);
  return text;
}

CObject TakeObject(quorvel_variant value) {
  EXPECT_EQ(value.type, QUORVEL_OBJECT);
  if (value.type != QUORVEL_OBJECT || !value.owned) return CObject();
  return CObject(value.value.object);  // the handle now belongs to the CObject
}

double TakeNumber(quorvel_variant value) {
  double number = 0;
  switch (value.type) {
    case QUORVEL_INTEGER: number = value.value.integer; break;
    case QUORVEL_LONG: number = value.value.long_value; break;
    case QUORVEL_SINGLE: number = value.value.single; break;
    case QUORVEL_DOUBLE: number = value.value.real; break;
    default: ADD_FAILURE() << "not a number: variant type " << value.type;
  }
  quorvel_variant_clear(&value);
  return number;
}

std::vector<std::string> LastResults(int32_t* pages) {
  char* text = nullptr;
  EXPECT_EQ(quorvel_printer_last_results(&text, pages), QUORVEL_OK) << LastError();
  std::vector<std::string> results;
  std::istringstream lines(text ? text : "");
  for (std::string line; std::getline(lines, line);) results.push_back(line);
  quorvel_text_free(text);
  return results;
}

}  // namespace quorvel::testing

// Test helper: a PDF's objects as qpdf reads them (`qpdf --json`), so tests look at the file's
// structure through an independent parser rather than at the bytes the writer meant to write.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace quorvel::testing {

class QpdfJson {
 public:
  // Runs qpdf on `path` with every stream decoded; fails the test when qpdf does.
  explicit QpdfJson(const std::string& path);

  const nlohmann::json& Trailer() const;
  // The dictionary of the object a reference names ("12 0 R"), of a stream its dictionary.
  const nlohmann::json& Dictionary(const nlohmann::json& reference) const;
  // A stream's decoded bytes.
  std::string StreamData(const nlohmann::json& reference) const;
  // A string value of qpdf's JSON ("u:text" or "b:hex") as its bytes.
  static std::string Text(const nlohmann::json& value);

 private:
  const nlohmann::json& Object(const nlohmann::json& reference) const;
  nlohmann::json objects_;
};

}  // namespace quorvel::testing

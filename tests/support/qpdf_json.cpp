// Test helper: a PDF's objects as `qpdf --json` reports them, streams decoded.
#include "support/qpdf_json.hpp"

#include <gtest/gtest.h>

#include "support/ops_helpers.hpp"

namespace quorvel::testing {

namespace {

std::string Base64Decoded(const std::string& text) {
  static const std::string kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  uint32_t bits = 0;
  int count = 0;
  for (char c : text) {
    const size_t value = kDigits.find(c);
    if (value == std::string::npos) continue;  // padding and line breaks
    bits = (bits << 6) | static_cast<uint32_t>(value);
    count += 6;
    if (count >= 8) {
      count -= 8;
      bytes += static_cast<char>((bits >> count) & 0xFF);
    }
  }
  return bytes;
}

const nlohmann::json kMissing;

}  // namespace

QpdfJson::QpdfJson(const std::string& path) {
  const std::string text = RunCommand("qpdf --json=2 --json-stream-data=inline --decode-level=all " + path);
  const nlohmann::json document = nlohmann::json::parse(text, nullptr, false);
  if (document.is_discarded() || !document.contains("qpdf")) {
    ADD_FAILURE() << "qpdf --json gave no objects for " << path;
    return;
  }
  objects_ = document["qpdf"][1];
}

const nlohmann::json& QpdfJson::Object(const nlohmann::json& reference) const {
  const std::string key = "obj:" + reference.get<std::string>();
  if (!objects_.contains(key)) {
    ADD_FAILURE() << "no object " << reference;
    return kMissing;
  }
  return objects_[key];
}

const nlohmann::json& QpdfJson::Trailer() const { return objects_["trailer"]["value"]; }

const nlohmann::json& QpdfJson::Dictionary(const nlohmann::json& reference) const {
  const nlohmann::json& object = Object(reference);
  if (object.contains("stream")) return object["stream"]["dict"];
  return object.contains("value") ? object["value"] : kMissing;
}

std::string QpdfJson::StreamData(const nlohmann::json& reference) const {
  const nlohmann::json& object = Object(reference);
  if (!object.contains("stream") || !object["stream"].contains("data")) {
    ADD_FAILURE() << reference << " is not a stream with data";
    return {};
  }
  return Base64Decoded(object["stream"]["data"].get<std::string>());
}

std::string QpdfJson::Text(const nlohmann::json& value) {
  const std::string text = value.get<std::string>();
  if (text.rfind("u:", 0) == 0) return text.substr(2);
  if (text.rfind("b:", 0) != 0) return text;
  std::string bytes;
  for (size_t i = 2; i + 1 < text.size(); i += 2) bytes += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
  return bytes;
}

}  // namespace quorvel::testing

// Document files read with every failure named: the file and the system's reason, or the field.
#include "automation/document_file.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include "foundation/errors.hpp"
#include "foundation/utf8.hpp"

namespace quorvel {

namespace {

using nlohmann::json;

// Where the parser is: the key or element index at each level, so an error can name the field.
// Levels follow the parser's depth rather than its start and end events.
class FieldTracker {
 public:
  bool operator()(int depth, json::parse_event_t event, json& parsed) {
    const size_t open = static_cast<size_t>(depth);
    switch (event) {
      case json::parse_event_t::key:
        if (open >= 1 && open <= levels_.size()) levels_[open - 1].key = parsed.get<std::string>();
        break;
      case json::parse_event_t::object_start:
      case json::parse_event_t::array_start:
        levels_.resize(open);
        ElementBegins();
        levels_.push_back({event == json::parse_event_t::array_start, -1, ""});
        break;
      case json::parse_event_t::value:
        levels_.resize(open);
        ElementBegins();
        break;
      case json::parse_event_t::object_end:
      case json::parse_event_t::array_end: levels_.resize(std::min(open, levels_.size())); break;
    }
    return true;
  }

  // The field being read: the last key of each object, the element index of each list.
  std::string Field() const {
    std::string path;
    for (const Level& level : levels_) {
      if (level.is_list) path += "[" + std::to_string(std::max(level.index, 0L)) + "]";
      else if (!level.key.empty()) path += (path.empty() ? "" : ".") + level.key;
    }
    return path.empty() ? "the document file" : path;
  }

 private:
  struct Level {
    bool is_list;
    long index;
    std::string key;
  };
  void ElementBegins() {
    if (!levels_.empty() && levels_.back().is_list) ++levels_.back().index;
  }
  std::vector<Level> levels_;
};

// One pass over the raw text counting the elements of every list, so that a list over the limit
// is refused before the parser builds anything. Returns "PATH holds N lines, …" for the first
// list found too long, or "" (also for text that is not JSON: the parser reports that).
std::string LongListIn(const std::string& text) {
  struct Level {
    bool is_list;
    long commas = 0;
    bool has_value = false;
    std::string key;
  };
  std::vector<Level> levels;
  std::string last_text;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == ' ' || c == '\n' || c == '\r' || c == '\t') continue;
    const bool punctuation = c == ']' || c == '}' || c == ',' || c == ':';
    if (!punctuation && !levels.empty()) levels.back().has_value = true;
    if (c == '"') {
      const size_t start = ++i;
      while (i < text.size() && text[i] != '"') i += text[i] == '\\' ? 2 : 1;
      last_text.assign(text, start, std::min(i, text.size()) - start);
    } else if (c == ':' && !levels.empty()) {
      levels.back().key = last_text;
    } else if (c == ',' && !levels.empty()) {
      ++levels.back().commas;
    } else if (c == '[' || c == '{') {
      levels.push_back({c == '[', 0, false, ""});
    } else if ((c == ']' || c == '}') && !levels.empty()) {
      const Level closed = levels.back();
      levels.pop_back();
      const long count = closed.commas + (closed.has_value ? 1 : 0);
      if (!closed.is_list || count <= static_cast<long>(kMostLines)) continue;
      std::string path;
      for (const Level& level : levels)
        path += level.is_list ? "[" + std::to_string(level.commas) + "]" : (path.empty() ? "" : ".") + level.key;
      return path + " holds " + std::to_string(count) + " lines, more than 32767";
    }
  }
  return "";
}

}  // namespace

json ParseDocumentText(const std::string& text, const std::string& name) {
  if (const std::string too_long = LongListIn(text); !too_long.empty()) Raise(err::kOverflow, too_long);
  FieldTracker tracker;
  try {
    return json::parse(text, std::ref(tracker));
  } catch (const json::parse_error& e) {
    // The parser reports a bad UTF-8 byte by its offset; the host knows its data by field.
    if (!IsValidUtf8(text))
      Raise(err::kInvalidArgument, name + " is not valid JSON: " + tracker.Field() + ": the text is not valid UTF-8");
    Raise(err::kInvalidArgument, name + " is not valid JSON: " + e.what());
  }
}

json ReadDocumentFile(const std::string& path) {
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) Raise(err::kFileError, "cannot read " + path + ": " + std::strerror(errno));
  std::string text;
  char buffer[65536];
  while (true) {
    const ssize_t n = read(fd, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      const int error_number = errno;
      close(fd);
      Raise(err::kFileError, "cannot read " + path + ": " + std::strerror(error_number));
    }
    if (n == 0) break;
    text.append(buffer, static_cast<size_t>(n));
  }
  close(fd);
  return ParseDocumentText(text, path);
}

}  // namespace quorvel

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

// Where the parser is: the key or element index at each level, so an error can name the field;
// and the length of every list, whose elements past the limit are dropped unbuilt.
//
// Levels follow the parser's depth, not its start and end events: the parser sends no end event
// for a container that was dropped.
class FieldTracker {
 public:
  bool operator()(int depth, json::parse_event_t event, json& parsed) {
    const size_t open = static_cast<size_t>(depth);
    switch (event) {
      case json::parse_event_t::key:
        if (open >= 1 && open <= levels_.size()) levels_[open - 1].key = parsed.get<std::string>();
        return true;
      case json::parse_event_t::object_start:
      case json::parse_event_t::array_start: {
        levels_.resize(open);
        const bool keep = ElementBegins();
        levels_.push_back({event == json::parse_event_t::array_start, -1, ""});
        return keep;
      }
      case json::parse_event_t::value: levels_.resize(open); return ElementBegins();
      case json::parse_event_t::object_end:
      case json::parse_event_t::array_end:
        if (open < levels_.size() && levels_[open].is_list && levels_[open].index >= kLimit && overflow_.empty())
          overflow_ = Field(open) + " holds " + std::to_string(levels_[open].index + 1) + " lines, more than 32767";
        levels_.resize(std::min(open, levels_.size()));
        return true;
    }
    return true;
  }

  // The field being read: the last key of each object, the element index of each list.
  std::string Field(size_t levels = SIZE_MAX) const {
    std::string path;
    for (size_t i = 0; i < levels_.size() && i < levels; ++i) {
      const Level& level = levels_[i];
      if (level.is_list) path += "[" + std::to_string(std::max(level.index, 0L)) + "]";
      else if (!level.key.empty()) path += (path.empty() ? "" : ".") + level.key;
    }
    return path.empty() ? "the document file" : path;
  }
  // "document.Items holds N lines, …" for the first list over the limit, or empty.
  const std::string& Overflow() const { return overflow_; }

 private:
  static constexpr long kLimit = static_cast<long>(kMostLines);
  struct Level {
    bool is_list;
    long index;
    std::string key;
  };
  // Counts an element of the innermost list; false drops it when the list is past the limit.
  bool ElementBegins() {
    if (levels_.empty() || !levels_.back().is_list) return true;
    return ++levels_.back().index < kLimit;
  }
  std::vector<Level> levels_;
  std::string overflow_;
};

}  // namespace

json ParseDocumentText(const std::string& text, const std::string& name) {
  FieldTracker tracker;
  try {
    json parsed = json::parse(text, std::ref(tracker));
    if (!tracker.Overflow().empty()) Raise(err::kOverflow, tracker.Overflow());
    return parsed;
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

// Text fitting. Every routine measures with the surface's font exactly as the printed layout
// does; loops that could go round for ever stop as soon as another round cannot change anything.
#include "foundation/text_fitting.hpp"

#include <algorithm>
#include <cmath>

#include "foundation/errors.hpp"
#include "foundation/runtime.hpp"
#include "foundation/text_shaping.hpp"
#include "foundation/utf8.hpp"

namespace quorvel {

namespace {

const std::u32string kDots = U"...";
const std::u32string kCrLf = U"\r\n";

std::u32string Left(const std::u32string& t, int64_t n) {
  return n <= 0 ? std::u32string() : t.substr(0, static_cast<size_t>(std::min<int64_t>(n, t.size())));
}

// The longest cut at or before `n` characters that does not split a grapheme cluster (a letter
// from its marks, a joined sequence). Plain Latin texts have no such clusters: `n` itself.
int64_t ClusterCut(const std::u32string& t, int64_t n) {
  int64_t cut = std::min<int64_t>(n, static_cast<int64_t>(t.size()));
  while (cut > 0 && InsideCluster(t, static_cast<size_t>(cut))) --cut;
  return cut;
}

std::u32string From(const std::u32string& t, int64_t start1) {  // Mid(t, start1)
  return start1 - 1 >= static_cast<int64_t>(t.size()) ? std::u32string()
                                                      : t.substr(static_cast<size_t>(start1 - 1));
}

std::u32string LTrim(const std::u32string& t) {
  const size_t first = t.find_first_not_of(U' ');
  return first == std::u32string::npos ? std::u32string() : t.substr(first);
}

// The fitting loop shared by AdjustedText and AdjustedText2; `cut` makes one round's text.
template <class Cut>
std::string Fit(Surface& obj, std::string& text, int16_t length, Cut cut) {
  // Most values fit their column: measure the text as it stands and decode it only to cut it.
  std::u32string t;
  try {
    if (obj.TextWidth(text) < length) return text;
    t = DecodeUtf8(text);
  } catch (const AutomationError&) {
    return text;  // not a text that can be measured: left as it is
  }
  int16_t n = 0;
  IgnoreErrors([&] { n = ToInt16(static_cast<double>(t.size()) - 3, "text length"); });
  if (n < 0) n = 1;
  bool last_round_at_one = false;
  while (obj.TextWidth(t) > length) {
    // A second round in a row that cuts after the first character cannot change the result.
    if (n == 1 && last_round_at_one) break;
    last_round_at_one = (n == 1);
    t = cut(t, n);
    n = static_cast<int16_t>(n - 3);
    if (n < 0) n = 1;
  }
  text = EncodeUtf8(t);
  return text;
}

// The width TextWidth gives any range of one text (its widest CRLF line), answered from prefix
// sums of the advances and a range-maximum table over the whole lines between line breaks, so
// that the wrap loop measures each candidate line and remainder without walking the text again.
// The sums are exact integers: the results are those of measuring every candidate afresh.
class RangeWidths {
 public:
  RangeWidths(const Surface& obj, const std::u32string& t)
      : scale_(TwipsPerUnit(obj.Font().Face(), obj.Font().Size())), obj_(obj), text_(t) {
    int64_t units = 0;
    const bool plain = obj.Font().Face().PlainAdvanceUnits(t, units);
    // Shaped text has no per-character widths to add up: a short one has each range shaped and
    // measured; a long one takes each cluster's width within its whole line, in millitwips.
    exact_ranges_ = !plain && t.size() <= kExactShapedLimit;
    if (exact_ranges_) return;
    sums_.resize(t.size() + 1);
    const std::vector<int64_t> advances = plain ? PlainAdvances(obj, t) : ClusterMillitwips(obj, t);
    if (!plain) scale_ = 0.001;
    for (size_t k = 0; k < t.size(); ++k) sums_[k + 1] = sums_[k] + advances[k];
    for (size_t k = 0; k + 1 < t.size(); ++k)
      if (t[k] == U'\r' && t[k + 1] == U'\n') breaks_.push_back(k);
    // A CR LF pair completed by one more character ends a line, and the widest line can then be
    // narrower than the text before it was: only plain text without breaks grows monotonically.
    monotonic_ = plain && breaks_.empty();
    // Line k (k >= 1) lies between break k-1 and break k; table level j holds maxima of 2^j lines.
    std::vector<int64_t> lines(breaks_.size(), 0);
    for (size_t k = 1; k < breaks_.size(); ++k) lines[k] = Sum(breaks_[k - 1] + 2, breaks_[k]);
    max_.push_back(std::move(lines));
    for (size_t span = 2; span <= breaks_.size(); span *= 2) {
      const std::vector<int64_t>& below = max_.back();
      std::vector<int64_t> level(breaks_.size() - span + 1);
      for (size_t k = 0; k < level.size(); ++k) level[k] = std::max(below[k], below[k + span / 2]);
      max_.push_back(std::move(level));
    }
  }

  // Plain advances are never negative, so without line breaks the width of from..from+L never
  // shrinks as L grows:
  // the first length in 1..longest whose width reaches `width` is found by halving
  // (longest + 1 when none does). Only for Monotonic() texts.
  bool Monotonic() const { return monotonic_; }
  size_t FirstReaching(size_t from, size_t longest, double width) const {
    size_t low = 1, high = longest + 1;
    while (low < high) {
      const size_t middle = low + (high - low) / 2;
      if (Width(from, from + middle) >= width) high = middle;
      else low = middle + 1;
    }
    return low;
  }

  double Width(size_t from, size_t to) const {
    if (exact_ranges_) return obj_.TextWidth(std::u32string_view(text_).substr(from, to - from));
    // Only a CR LF pair wholly inside the range breaks it.
    const auto first = std::lower_bound(breaks_.begin(), breaks_.end(), from);
    const auto end = to < 2 ? first : std::upper_bound(breaks_.begin(), breaks_.end(), to - 2);
    if (first >= end) return Scaled(Sum(from, to));
    const size_t a = static_cast<size_t>(first - breaks_.begin());
    const size_t b = static_cast<size_t>(end - breaks_.begin()) - 1;
    int64_t widest = std::max(Sum(from, breaks_[a]), Sum(breaks_[b] + 2, to));
    if (b > a) widest = std::max(widest, LinesMax(a + 1, b));
    return Scaled(widest);
  }

 private:
  static constexpr size_t kExactShapedLimit = 1000;

  static std::vector<int64_t> PlainAdvances(const Surface& obj, const std::u32string& t) {
    std::vector<int64_t> advances(t.size());
    for (size_t k = 0; k < t.size(); ++k) advances[k] = obj.Font().Face().Advance(t[k]);
    return advances;
  }

  static std::vector<int64_t> ClusterMillitwips(const Surface& obj, const std::u32string& t) {
    std::vector<int64_t> advances(t.size(), 0);
    size_t start = 0;
    while (start < t.size()) {
      size_t end = t.find(U"\r\n", start);
      if (end == std::u32string::npos) end = t.size();
      const auto line = ShapeLine(std::u32string_view(t).substr(start, end - start), obj.Font().Face(), obj.Font().Bold());
      for (const ShapedRun& run : line->runs)
        for (size_t g = 0; g < run.glyphs.size(); ++g)
          advances[start + run.clusters[g]] += std::llround(run.advances[g] * TwipsPerUnit(*run.face, obj.Font().Size()) * 1000);
      start = end + 2;
    }
    return advances;
  }

  int64_t Sum(size_t from, size_t to) const { return sums_[to] - sums_[from]; }
  double Scaled(int64_t units) const { return static_cast<double>(units) * scale_; }
  int64_t LinesMax(size_t lo, size_t hi) const {  // widest of lines lo..hi, inclusive
    size_t level = 0;
    while ((size_t{2} << level) <= hi - lo + 1) ++level;
    return std::max(max_[level][lo], max_[level][hi + 1 - (size_t{1} << level)]);
  }

  double scale_;
  const Surface& obj_;
  const std::u32string& text_;
  bool exact_ranges_ = false;
  bool monotonic_ = false;
  std::vector<int64_t> sums_;
  std::vector<size_t> breaks_;
  std::vector<std::vector<int64_t>> max_;
};

}  // namespace

std::string AdjustedText(Surface& obj, std::string& text, int16_t& length) {
  return Fit(obj, text, length,
             [](const std::u32string& t, int16_t n) { return Left(t, ClusterCut(t, n)) + kDots; });
}

std::string AdjustedText2(Surface& obj, std::string& text, int16_t& length) {
  return Fit(obj, text, length,
             [](const std::u32string& t, int16_t n) {
               const int64_t cut = ClusterCut(t, n);
               return Left(t, cut) + kCrLf + From(t, cut + 1);
             });
}

void WrapText(Surface& obj, std::string& text, int16_t& width, std::vector<std::string>& lines) {
  IgnoreErrors([&] { width = ToInt16(width - obj.TextWidth("W"), "wrap width"); });
  lines.clear();
  std::u32string whole;
  try {
    whole = DecodeUtf8(text);
  } catch (const AutomationError&) {
    lines.push_back(text);
    return;
  }
  const RangeWidths widths(obj, whole);
  size_t offset = 0;  // the current text is whole[offset..]
  auto width_of = [&](size_t from, size_t to) { return widths.Width(from, to); };
  if (width_of(0, whole.size()) < width) {
    lines.push_back(text);
    return;
  }
  int16_t last_blank = 0;
  while (width_of(offset, whole.size()) > width) {
    const size_t remaining = whole.size() - offset;
    size_t line_length = 0;
    int16_t i = 1;
    // The loop below grows the line a character at a time until it reaches the width; where
    // widths only grow, the same length is found by halving, and the last blank it passed by
    // looking back.
    const size_t longest = std::min<size_t>(remaining, 32766);
    const size_t reach = widths.Monotonic() && width > 0 ? widths.FirstReaching(offset, longest, width) : 0;
    const bool reached = reach >= 1 && reach <= longest;
    if (reached) {
      line_length = reach;
      i = static_cast<int16_t>(reach + 1);
      for (size_t k = reach; k >= 1; --k)
        if (whole[offset + k - 1] == U' ') {
          last_blank = static_cast<int16_t>(k);
          break;
        }
    }
    while (!reached && width_of(offset, offset + line_length) < width) {
      if (i >= 1 && static_cast<size_t>(i) <= remaining) {
        line_length = static_cast<size_t>(i);
        if (whole[offset + line_length - 1] == U' ') last_blank = i;
      }
      const int16_t before = i;
      IgnoreErrors([&] { i = AddInt16(i, 1, "wrap position"); });
      if (i < 0) i = 1;
      if (i == before || static_cast<size_t>(i) > remaining + 1) break;  // cannot grow further
    }
    int64_t cut;
    if (i > last_blank) cut = last_blank > 1 ? last_blank - 1 : i - 1;
    else cut = i;
    cut = std::min<int64_t>(std::max<int64_t>(cut, 0), static_cast<int64_t>(remaining));
    // Never between a letter and its marks: back to the cluster's start, or on past its end
    // when the line holds nothing but that one cluster.
    const std::u32string_view rest(whole.data() + offset, remaining);
    const int64_t wanted = cut;
    while (cut > 0 && InsideCluster(rest, static_cast<size_t>(cut))) --cut;
    if (cut == 0 && wanted > 0) {
      cut = 1;
      while (cut < static_cast<int64_t>(remaining) && InsideCluster(rest, static_cast<size_t>(cut))) ++cut;
    }
    lines.push_back(EncodeUtf8(LTrim(whole.substr(offset, static_cast<size_t>(cut)))));
    if (cut == 0) break;  // nothing consumed: every further round would be the same
    offset += static_cast<size_t>(cut);
  }
  const std::u32string rest = whole.substr(offset);
  text = EncodeUtf8(rest);
  lines.push_back(EncodeUtf8(LTrim(rest)));
}

void SplitInTwo(Surface& obj, const std::string& text, double width, std::vector<std::string>& lines) {
  if (!(obj.TextWidth(text) > width)) {
    lines.push_back(text);
    return;
  }
  const std::u32string t = DecodeUtf8(text);
  auto next_blank = [&](size_t after) {  // 1-based position of the next blank after `after`, 0 if none
    const size_t at = t.find(U' ', after);
    return at == std::u32string::npos ? size_t{0} : at + 1;
  };
  size_t p = next_blank(0);
  while (obj.TextWidth(std::u32string_view(t).substr(0, p)) < width) {
    p = next_blank(p);
    if (p == 0) {  // no blank left that ends a wide-enough head
      lines.push_back(text);
      return;
    }
  }
  lines.push_back(EncodeUtf8(t.substr(0, p)));
  lines.push_back(EncodeUtf8(t.substr(p)));
}

}  // namespace quorvel

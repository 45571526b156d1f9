// The known name nearest to a misspelt one, by edit distance with transpositions.
#include "automation/nearest_name.hpp"

#include <algorithm>
#include <cctype>

namespace quorvel {

namespace {
std::string Folded(std::string_view text) {
  std::string folded(text);
  for (char& c : folded) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return folded;
}

// Optimal string alignment distance: insertions, deletions, substitutions and swaps of two
// neighbouring letters each count one, the usual slips of a hand typing a field name.
size_t Distance(const std::string& a, const std::string& b) {
  std::vector<std::vector<size_t>> d(a.size() + 1, std::vector<size_t>(b.size() + 1));
  for (size_t i = 0; i <= a.size(); ++i) d[i][0] = i;
  for (size_t j = 0; j <= b.size(); ++j) d[0][j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    for (size_t j = 1; j <= b.size(); ++j) {
      const size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
      d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + cost});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
    }
  }
  return d[a.size()][b.size()];
}
}  // namespace

std::string DidYouMean(std::string_view name, const std::vector<std::string>& known) {
  // Names past this length are not anyone's misspelling of a field, and would cost time.
  if (name.empty() || name.size() > 64) return "";
  const std::string wanted = Folded(name);
  const std::string* best = nullptr;
  size_t best_distance = std::max<size_t>(1, wanted.size() / 3) + 1;
  for (const std::string& candidate : known) {
    const size_t distance = Distance(wanted, Folded(candidate));
    if (distance < best_distance) {
      best_distance = distance;
      best = &candidate;
    }
  }
  return best ? " (did you mean \"" + *best + "\"?)" : "";
}

}  // namespace quorvel

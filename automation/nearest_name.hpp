// "Did you mean …": the known name nearest to a misspelt one, for errors about names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorvel {

// " (did you mean \"X\"?)" when one known name is close to `name` (case ignored, a few letters
// changed, added, dropped or swapped), else "". Close enough: at most a third of its letters.
std::string DidYouMean(std::string_view name, const std::vector<std::string>& known);

}  // namespace quorvel

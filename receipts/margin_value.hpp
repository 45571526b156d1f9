// Turning a margin text into a position the way an automation surface converts an assigned string.
#pragma once

#include <string_view>

namespace quorvel {

// The value of a text that is a number as a whole (blanks around it allowed: " 80", "12.5",
// "-3", "1e3"); anything else ("abc", "80abc", "") raises the type-mismatch error 13.
double SurfaceNumber(std::string_view text);

}  // namespace quorvel

// Text placed inside XML or HTML markup: the characters that markup reads as its own escaped.
#pragma once

#include <string>
#include <string_view>

namespace quorvel {

// `text` with &, <, > and " as entities, safe in element content and in quoted attributes.
std::string MarkupEscaped(std::string_view text);

}  // namespace quorvel

// The demonstration form's web page, served from the binary.
#pragma once

#include <string>

namespace quorvel::demo {

// The whole page with the form's buttons in place.
std::string DemoPage();

}  // namespace quorvel::demo

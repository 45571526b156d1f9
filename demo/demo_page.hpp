// The demonstration's web page, served from the binary.
#pragma once

#include <string>

namespace quorvel::demo {

// The whole page: markup, style and script, with the form's buttons in place.
std::string DemoPage();

// The page's script (demo_script.cpp), kept apart from the markup.
const char* DemoScript();

}  // namespace quorvel::demo

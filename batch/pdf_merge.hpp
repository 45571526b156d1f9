// Joining finished PDFs into one, each keeping its pages (and so its own page numbers) as printed.
#pragma once

#include <string>
#include <vector>

namespace quorvel::batch {

// Writes `parts` in order into `path`, whole or not at all; returns the page count. A part
// that cannot be read raises the file error naming it, and no merged file appears.
long MergePdfs(const std::vector<std::string>& parts, const std::string& path);

}  // namespace quorvel::batch

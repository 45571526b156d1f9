// The sample documents of the demonstration, in the order the demonstration shows them.
#pragma once

#include <string>
#include <vector>

namespace quorvel::demo {

struct Sample {
  std::string name;     // file stem under the samples folder: "voucher", "invoice", …
  std::string caption;  // the button caption that prints it
};

const std::vector<Sample>& Samples();
// The folder the sample files are read from (the project's demo/samples unless overridden).
std::string SamplesDir();
void SetSamplesDir(std::string dir);

}  // namespace quorvel::demo

// The sample list and where the sample files are.
#include "demo/samples.hpp"

#include "automation/document_kinds.hpp"

namespace quorvel::demo {

namespace {
std::string& Dir() {
  static std::string dir = QUORVEL_SAMPLES_DIR;
  return dir;
}
}  // namespace

const std::vector<Sample>& Samples() {
  // Each document type names its own samples where it is declared.
  static const std::vector<Sample> samples = [] {
    std::vector<Sample> list;
    for (const DocumentKind& kind : DocumentKinds())
      for (const DocumentSample& sample : kind.samples) list.push_back({sample.file, sample.caption});
    return list;
  }();
  return samples;
}

std::string SamplesDir() { return Dir(); }
void SetSamplesDir(std::string dir) { Dir() = std::move(dir); }

}  // namespace quorvel::demo

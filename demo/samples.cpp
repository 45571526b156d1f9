// The sample list and where the sample files are.
#include "demo/samples.hpp"

namespace quorvel::demo {

namespace {
std::string& Dir() {
  static std::string dir = QUORVEL_SAMPLES_DIR;
  return dir;
}
}  // namespace

const std::vector<Sample>& Samples() {
  static const std::vector<Sample> samples = {
      {"letterhead", ""},
      {"voucher", "Voucher"},
      {"invoice", "Invoice"},
      {"delivery_note", "Delivery Note"},
      {"delivery_note_long", "Delivery Note"},
      {"receipt", "Receipt"},
      {"statement", "Statement"},
      {"cheque_list", "Checks"},
  };
  return samples;
}

std::string SamplesDir() { return Dir(); }
void SetSamplesDir(std::string dir) { Dir() = std::move(dir); }

}  // namespace quorvel::demo

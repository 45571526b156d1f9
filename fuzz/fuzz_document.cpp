// Fuzzes the JSON document loader: bytes -> JSON -> LoadDocumentJob -> print on a preview.
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>

#include "automation/document_job.hpp"
#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/preview_surface.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace quorvel;
  // Invalid JSON (invalid UTF-8 among it) is the parser's to refuse: it gives a discarded value.
  const nlohmann::json description =
      nlohmann::json::parse(data, data + size, nullptr, /*allow_exceptions=*/false);
  if (description.is_discarded()) return 0;
  ModuleCompanyInfo::Profile() = CompanyProfile{};  // every input starts from the same profile
  ClassCompanyInfo info;
  try {
    const DocumentJob job = LoadDocumentJob(description);
    PreviewSurface preview;
    PrintJobOnSurface(job, preview);
  } catch (const AutomationError&) {
    // A clear refusal is a correct answer; anything else escapes and is reported.
  }
  return 0;
}

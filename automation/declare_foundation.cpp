// Interfaces of the company profile class and of the preview surface a host may draw on.
#include "automation/class_builder.hpp"
#include "automation/declarations.hpp"
#include "foundation/company_info.hpp"
#include "foundation/preview_surface.hpp"

namespace quorvel {

namespace {
// One warning a line: the characters no installed font has, drawn as the missing-glyph box.
std::string JoinedLines(const std::vector<std::string>& lines) {
  std::string joined;
  for (const std::string& line : lines) joined += (joined.empty() ? "" : "\n") + line;
  return joined;
}
}  // namespace

void DeclareCompanyClasses(TypeLibrary& library) {
  ClassBuilder<ClassCompanyInfo>(library, "ClassCompanyInfo")
      .Method("SetCompanyInfo", &ClassCompanyInfo::SetCompanyInfo,
              {"CompanyName", "Address1", "Address2", "Address3", "City", "Country", "phone", "Email",
               "Fax", "Website", "DefaultCurrencySign", "DefaultCurrencyName"})
      .Method("SetTopMargin", &ClassCompanyInfo::SetTopMargin, {"margin"})
      .Method("SetLogo", &ClassCompanyInfo::SetLogo, {"path"});
}

void DeclareSurfaceClasses(TypeLibrary& library) {
  // Any drawing surface lent to the library (the system printer among them): not creatable.
  ClassBuilder<Surface>(library, "Printer", false)
      .SurfaceCast([](void* p) { return static_cast<Surface*>(p); })
      .Get<double>("Width", [](Surface& s) { return s.Width(); })
      .Get<double>("Height", [](Surface& s) { return s.Height(); })
      .Get<std::string>("TextWarnings", [](Surface& s) { return JoinedLines(s.LastTextWarnings()); });

  // Not a document class: the picture a host previews on, drawn on by any Print routine.
  ClassBuilder<PreviewSurface>(library, "PreviewSurface")
      .SurfaceCast([](void* p) -> Surface* { return static_cast<PreviewSurface*>(p); })
      .Get<double>("Width", [](PreviewSurface& s) { return s.Width(); })
      .Get<double>("Height", [](PreviewSurface& s) { return s.Height(); })
      .Get<std::string>("TextWarnings", [](PreviewSurface& s) { return JoinedLines(s.TextWarnings()); })
      .MethodFn<void, std::string>("WritePng", [](PreviewSurface& s, std::string path) { s.WritePng(path); }, {"path"})
      .MethodFn<void, std::string>("WriteSvg", [](PreviewSurface& s, std::string path) { s.WriteSvg(path); }, {"path"})
      .MethodFn<void, std::string>("WriteOps", [](PreviewSurface& s, std::string path) { s.WriteOps(path); }, {"path"});
}

}  // namespace quorvel

// Company profile and letterhead.
#include "foundation/company_info.hpp"

#include <vector>

namespace quorvel {

namespace ModuleCompanyInfo {

CompanyProfile& Profile() {
  static CompanyProfile profile;
  return profile;
}

namespace {
std::string CityLine(const CompanyProfile& p) {
  if (!p.City.empty() && !p.Country.empty()) return p.City + ", " + p.Country;
  return p.City.empty() ? p.Country : p.City;
}

// Fax stands before Email here although SetCompanyInfo takes Email first.
std::vector<std::string> LetterheadLines(const CompanyProfile& p) {
  std::vector<std::string> lines;
  auto add = [&](const std::string& source, const std::string& line) {
    if (!source.empty()) lines.push_back(line);
  };
  add(p.Address1, p.Address1);
  add(p.Address2, p.Address2);
  add(p.Address3, p.Address3);
  const std::string city = CityLine(p);
  add(city, city);
  add(p.phone, "Tel: " + p.phone);
  add(p.Fax, "Fax: " + p.Fax);
  add(p.Email, "Email: " + p.Email);
  add(p.Website, "Website: " + p.Website);
  return lines;
}
}  // namespace

// The logo stands at the right margin from the company name's top down to the rule under the
// letterhead, as wide as its proportions make it: nothing of the letterhead moves for it.
void PrintLogo(Surface& obj, const RasterImage& logo, double top, double rule_y) {
  constexpr double kGap = 60;  // keeps the picture clear of the rule
  const double height = rule_y - top - kGap;
  if (height <= 0) return;
  const double width = height * logo.width / logo.height;
  const double right = obj.Width() - 1000;
  obj.DrawImage(right - width, top, right, top + height, logo.source);
}

void PrintLetterhead(Surface& obj) {
  const CompanyProfile& p = Profile();
  obj.Print("");
  obj.Print("");
  const double saved_size = obj.Font().Size();
  obj.Font().Size(20);
  obj.CurrentX(1000);
  const double name_top = obj.CurrentY();
  obj.Print(p.CompanyName);
  obj.Font().Size(10);
  obj.CurrentX(1000);
  for (const std::string& line : LetterheadLines(p)) {
    obj.CurrentX(1000);
    obj.Print(line);
  }
  obj.Line(4, 1000, obj.CurrentY(), obj.Width() - 1000, obj.CurrentY(), 0);
  if (p.Logo) PrintLogo(obj, *p.Logo, name_top, obj.CurrentY());
  obj.Print("");
  obj.Font().Size(saved_size);
}

}  // namespace ModuleCompanyInfo

ClassCompanyInfo::ClassCompanyInfo() { ModuleCompanyInfo::Profile().BottomReserve = 5500; }

void ClassCompanyInfo::SetCompanyInfo(std::string CompanyName, std::string Address1,
                                      std::string Address2, std::string Address3, std::string City,
                                      std::string Country, std::string phone, std::string Email,
                                      std::string Fax, std::string Website,
                                      std::string DefaultCurrencySign,
                                      std::string DefaultCurrencyName) {
  CompanyProfile& p = ModuleCompanyInfo::Profile();
  p.CompanyName = std::move(CompanyName);
  p.Address1 = std::move(Address1);
  p.Address2 = std::move(Address2);
  p.Address3 = std::move(Address3);
  p.City = std::move(City);
  p.Country = std::move(Country);
  p.phone = std::move(phone);
  p.Email = std::move(Email);
  p.Fax = std::move(Fax);
  p.Website = std::move(Website);
  p.DefaultCurrencySign = std::move(DefaultCurrencySign);
  p.DefaultCurrencyName = std::move(DefaultCurrencyName);
}

void ClassCompanyInfo::SetTopMargin(int32_t margin) {
  CompanyProfile& p = ModuleCompanyInfo::Profile();
  p.TopMargin = margin;
  p.BottomReserve = 5500.0 - margin;
}

void ClassCompanyInfo::SetLogo(std::string path) {
  ModuleCompanyInfo::Profile().Logo = path.empty() ? nullptr : LoadRasterImage(path);
}

void StartDocumentHead(Surface& obj, bool printHeader, int blank_lines) {
  obj.CurrentY(ModuleCompanyInfo::Profile().TopMargin);
  if (printHeader) {
    ModuleCompanyInfo::PrintLetterhead(obj);
  } else {
    for (int i = 0; i < blank_lines; ++i) obj.Print("");
  }
}

}  // namespace quorvel

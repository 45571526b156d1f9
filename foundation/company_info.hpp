// The process-wide company profile, the class hosts set it with, and the letterhead routine.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "foundation/raster_image.hpp"
#include "foundation/surface.hpp"

namespace quorvel {

struct CompanyProfile {
  std::string CompanyName, Address1, Address2, Address3, City, Country, phone, Email, Fax,
      Website, DefaultCurrencySign, DefaultCurrencyName;
  double TopMargin = 0;      // y of every document's first line; empty reads as 0
  double BottomReserve = 0;  // height kept free at the page foot; 0 until a ClassCompanyInfo exists
  std::shared_ptr<const RasterImage> Logo;  // printed at the letterhead's right; none by default
};

namespace ModuleCompanyInfo {
// The one profile of the process, read by every printer.
CompanyProfile& Profile();
// Draws the letterhead from the surface's current position; leaves the size as it found it.
void PrintLetterhead(Surface& obj);
}  // namespace ModuleCompanyInfo

// Writes the profile; has no state of its own. Creating one sets BottomReserve to 5500 and
// leaves TopMargin alone, so a second instance after SetTopMargin keeps the shifted top.
class ClassCompanyInfo {
 public:
  ClassCompanyInfo();
  void SetCompanyInfo(std::string CompanyName, std::string Address1, std::string Address2,
                      std::string Address3, std::string City, std::string Country,
                      std::string phone, std::string Email, std::string Fax, std::string Website,
                      std::string DefaultCurrencySign, std::string DefaultCurrencyName);
  // TopMargin = margin; BottomReserve = 5500 − margin, always from 5500.
  void SetTopMargin(int32_t margin);
  // Reads the PNG or JPEG file now (an unreadable one is an error here, not at print time);
  // an empty path removes the logo.
  void SetLogo(std::string path);
};

// Every document routine starts this way: CurrentY at the top margin, then the letterhead, or
// `blank_lines` empty lines that keep the room of a pre-printed one.
void StartDocumentHead(Surface& obj, bool printHeader, int blank_lines = 12);

}  // namespace quorvel

// Placement of QR codes: sizes a phone reads from paper, never over a printed text or rule.
#include "invoices/invoice_qr.hpp"

#include <algorithm>

#include "foundation/company_info.hpp"
#include "foundation/errors.hpp"
#include "foundation/printer_surface.hpp"
#include "foundation/qr_code.hpp"

namespace quorvel {

namespace {
constexpr double kTwipsPerDot203 = 1440.0 / 203;
constexpr double kGap = 100;  // between the code and anything printed near it
}  // namespace

void PrintInvoiceQr(Surface& surface, const std::string& data, double right, double top) {
  const int modules = QrSideModules(data);
  for (double module : {kPageQrMaxModule, (kPageQrMaxModule + kPageQrMinModule) / 2, kPageQrMinModule}) {
    const double side = modules * module, y = top + kGap;
    if (y + side <= surface.Height() && surface.IsBlank(right - side, y, right, y + side)) {
      surface.DrawQr(right - side, y, module, data);
      return;
    }
  }
  const double side = modules * kPageQrMinModule;
  double y = surface.CurrentY() + kGap;
  if (y + side > surface.Height() && surface.BreaksPages()) {
    surface.NewPage();
    y = ModuleCompanyInfo::Profile().TopMargin;
  }
  surface.DrawQr(1000, y, kPageQrMinModule, data);
  surface.CurrentY(y + side);
}

void PrintReceiptQr(Surface& surface, const std::string& data, double slip_width) {
  const int modules = QrSideModules(data);
  double module = 4 * kTwipsPerDot203;
  if (modules * module > slip_width) module = 3 * kTwipsPerDot203;
  if (modules * module > slip_width)
    Raise(err::kInvalidArgument, "QRCode: " + std::to_string(data.size()) +
                                     " bytes make a code wider than the receipt");
  const double y = surface.CurrentY();
  surface.DrawQr((slip_width - modules * module) / 2, y, module, data);
  surface.CurrentX(0);
  surface.CurrentY(y + modules * module);
}

}  // namespace quorvel

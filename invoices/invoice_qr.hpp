// Where the QR code goes on an invoice's last page and on a receipt slip.
#pragma once

#include <string>

#include "foundation/surface.hpp"

namespace quorvel {

// A module of 0.4 mm is the smallest a phone camera reads reliably from a printed page; up to
// 0.6 mm when the room allows.
constexpr double kPageQrMinModule = 0.4 / 25.4 * 1440;
constexpr double kPageQrMaxModule = 0.6 / 25.4 * 1440;

// Draws the code on the last page: against the left of the totals box (its right edge at
// `right`, its top under the totals' top `top`) with modules of 0.6 down to 0.4 mm where that
// spot is blank; otherwise at the left margin under everything printed, or on a page of its
// own when the page has no room left (a preview draws it where it stands).
void PrintInvoiceQr(Surface& surface, const std::string& data, double right, double top);

// The receipt's code, centred on the slip under the current line, with modules of 4 printer
// dots at 203 dpi (3 when the slip is too narrow for 4); moves the pen below it.
void PrintReceiptQr(Surface& surface, const std::string& data, double slip_width);

}  // namespace quorvel

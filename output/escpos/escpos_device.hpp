// The ESC/POS receipt-printer device: pages as raster images, sent whole to a file, a network
// printer, a device node or a raw print queue.
#pragma once

#include <memory>

#include "output/device.hpp"

namespace quorvel::escpos {

// Dots across the printable width: 576 (80 mm at 203 dpi), 512 (80 mm at 180 dpi), 384 (58 mm
// at 203 dpi) or 360 (58 mm at 180 dpi). Other paper widths or resolutions raise the
// invalid-argument error.
int PrintableDots(const EscPosOptions& options);

// Checks the options and the destination (`output.path`) before any page is drawn: a bad
// option, destination or file folder raises now, not after the document was rendered.
void CheckEscPosOutput(const PrinterOutput& output);

}  // namespace quorvel::escpos

// The fixture of the receipt-printer tests: a fixed sale time, the system printer put back, and
// the PNG path's picture of the same pages to compare the printed dots with.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "foundation/draw_ops.hpp"
#include "output/device.hpp"
#include "support/escpos_reader.hpp"

namespace quorvel::testing {

// A dot burns when its grey is darker than half: the rule the PNG pictures are read with.
constexpr int kBurnBelow = 128;
// The 80 mm roll page and an A4 page, in twips.
constexpr double kRollWidth = 4535, kRollLength = 16838, kA4Width = 11906, kA4Height = 16838;

inline const std::string kReceiptSample = QUORVEL_SOURCE_DIR "/demo/samples/receipt.json";
inline const std::string kQuorvelCommand = QUORVEL_BINARY_DIR "/cli/quorvel";

class EscPosPrinting : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // An ESC/POS output to `destination` with the default options (80 mm, 203 dpi, cut, no drawer).
  static PrinterOutput EscPos(const std::string& destination, int timeout_seconds = 10);
  // The sample receipt through the loader onto the system printer, to its current output.
  static void PrintSampleReceipt();
  // The pages the system printer drew for `print`, read back from an ops file.
  std::vector<DrawOps> DrawnPages(const std::function<void()>& print);
  // The page as the PNG path renders it `dots` across, thresholded.
  Bitmap PngPicture(const DrawOps& page, double width, double height, int dots);
  std::string dir_;
};

bool Contains(const std::string& text, const std::string& part);

}  // namespace quorvel::testing

// The number/date block at the top right of invoices and delivery notes.
#pragma once

#include <string>

#include "foundation/surface.hpp"

namespace quorvel {

// Where the block's columns and rows fell, for the box drawn around it.
struct NumberDateBlock {
  double number_x = 0, date_x = 0;  // left edges of the number column and the date column left of it
  double top = 0, caption_bottom = 0, value_bottom = 0;
};

// At y `top`: the number column 1400 wide at the right margin (" " + title over " " + number)
// and the date column 1515 wide to its left (" Date" over " " + date), then one empty line.
NumberDateBlock PrintNumberDateBlock(Surface& surface, double top, const std::string& title,
                                     const std::string& number, const std::string& date);

}  // namespace quorvel

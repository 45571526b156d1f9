// The number/date block shared by the invoice and the delivery note.
#include "foundation/number_date_block.hpp"

namespace quorvel {

namespace {
constexpr double kNumberWidth = 1400;
constexpr double kDateWidth = 1500 + 15;
}  // namespace

NumberDateBlock PrintNumberDateBlock(Surface& surface, double top, const std::string& title,
                                     const std::string& number, const std::string& date) {
  NumberDateBlock block;
  block.top = top;
  block.number_x = surface.Width() - 1000 - kNumberWidth;
  block.date_x = block.number_x - kDateWidth;
  surface.CurrentY(top);
  surface.CurrentX(block.number_x);
  surface.Print(" " + title);
  surface.CurrentX(block.number_x);
  surface.Print(" " + number);
  surface.CurrentY(top);
  surface.CurrentX(block.date_x);
  surface.Print(" Date");
  block.caption_bottom = surface.CurrentY();
  surface.CurrentX(block.date_x);
  surface.Print(" " + date);
  block.value_bottom = surface.CurrentY();
  surface.Print("");
  return block;
}

}  // namespace quorvel

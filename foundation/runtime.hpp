// The runtime rules every printer relies on: 16-bit integers, num(t), Int(x), and number-to-text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvel {

// Converts to a 16-bit signed integer: nearest, halves to even; outside -32768..32767 (or not a
// number) raises the overflow error, naming `what` when given.
int16_t ToInt16(double value, std::string_view what = {});
int32_t ToInt32(double value, std::string_view what = {});

// 16-bit addition that raises the overflow error instead of wrapping.
int16_t AddInt16(int16_t a, int16_t b, std::string_view what = {});

// num(t): leading blanks skipped, the longest numeric prefix taken, 0 when there is none.
double Num(std::string_view text);

// Int(x): the largest whole number not greater than x.
double Int(double x);

// A whole number as text with a leading blank in place of a plus sign (" 300", "-4").
std::string SignedText(long long n);

// A number as text, shortest form ("12", "12.5", "-0.25").
std::string NumberText(double value);

}  // namespace quorvel

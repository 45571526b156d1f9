// The clock a receipt's date line reads, replaceable so that a slip can be reproduced.
#pragma once

#include <ctime>
#include <functional>
#include <string>

namespace quorvel {

// The time the next receipt prints. An empty function (the default) means the machine's clock.
void SetReceiptClock(std::function<std::time_t()> clock);
std::time_t ReceiptNow();

// The machine's short date and long time of `when`, in local time: strftime's "%x %X" in the
// process's LC_TIME locale ("03/15/24 14:05:09" in the C locale).
std::string ReceiptDateTimeText(std::time_t when);

}  // namespace quorvel

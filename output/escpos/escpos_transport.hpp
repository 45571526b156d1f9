// Where an ESC/POS job goes: the destinations a host names, and sending a job's bytes whole.
#pragma once

#include <string>

namespace quorvel::escpos {

// A destination as the host writes it:
//   NAME.escpos        a file, written whole or not at all
//   tcp://HOST[:PORT]  a network printer's raw port (9100 when none is given)
//   cups://[QUEUE]     a CUPS raw queue (the default destination when QUEUE is empty)
//   any other path     a device node such as /dev/usb/lp0
struct Destination {
  enum class Kind { File, Tcp, DeviceNode, Queue };
  Kind kind = Kind::File;
  std::string path;  // the file or device node
  std::string host, port;
  std::string queue;
};

// Raises the invalid-argument error for a destination that names nothing usable (an empty
// text, a tcp:// without a host, a port that is not 1..65535).
Destination ParseDestination(const std::string& text);

// Sends `job` to a printer's raw port. Returns only when the printer took every byte: it closed
// the connection after the job (as raw ports do at its end), or at least acknowledged all of it
// within the time-out. A refused or failed connection, a time-out, or a printer that closes
// before the end raises the printer error (482) with the cause.
void SendToNetwork(const std::string& host, const std::string& port, const std::string& job, int timeout_seconds);

// Writes `job` to a device node (opened for writing only, never created), all of it within the
// time-out, or raises the printer error with the cause.
void WriteToDeviceNode(const std::string& path, const std::string& job, int timeout_seconds);

}  // namespace quorvel::escpos

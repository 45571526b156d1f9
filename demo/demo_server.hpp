// `quorvel demo --serve`: the demonstration form as a web page on this machine only.
#pragma once

namespace quorvel::demo {

// Serves the form on 127.0.0.1:`port` (0: any free port) and prints its address; returns the
// exit code once SIGINT or SIGTERM has stopped it.
int ServeDemo(int port);

}  // namespace quorvel::demo

// The library's version, for hosts that check which Quorvel they loaded.
#include "quorvel.h"

#ifndef QUORVEL_VERSION_TEXT
#error "the build gives QUORVEL_VERSION_TEXT (the project's version)"
#endif

extern "C" const char* quorvel_version(void) { return QUORVEL_VERSION_TEXT; }

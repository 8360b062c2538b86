#pragma once

/// The sockets of the system, and the option of macOS that turns SIGPIPE off for one of them.

#include_next <sys/socket.h>

#define SO_NOSIGPIPE 0x1022

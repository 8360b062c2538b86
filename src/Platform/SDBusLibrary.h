#pragma once

/// sd-bus, the D-Bus client of libsystemd, loaded when the first secret is asked for: a client may talk to
/// the program for long without opening a mailbox, and the library brings five others along. Linux only;
/// included by source files alone, since it brings the library's headers with it.
///
/// Within the namespace the names below mean pointers that hide the functions of the same name, so that calls
/// read as always. A function that is used and not listed does not link.
///
/// Threads: after `loadSDBusLibrary` has returned true, any.

#include <systemd/sd-bus.h>

#define TARNWELL_SD_BUS_FUNCTIONS(EACH) \
  EACH(sd_bus_call)                     \
  EACH(sd_bus_close_unref)              \
  EACH(sd_bus_error_free)               \
  EACH(sd_bus_is_ready)                 \
  EACH(sd_bus_message_append_array)     \
  EACH(sd_bus_message_append_basic)     \
  EACH(sd_bus_message_close_container)  \
  EACH(sd_bus_message_enter_container)  \
  EACH(sd_bus_message_exit_container)   \
  EACH(sd_bus_message_new_method_call)  \
  EACH(sd_bus_message_open_container)   \
  EACH(sd_bus_message_read_array)       \
  EACH(sd_bus_message_read_basic)       \
  EACH(sd_bus_message_sensitive)        \
  EACH(sd_bus_message_skip)             \
  EACH(sd_bus_message_unref)            \
  EACH(sd_bus_new)                      \
  EACH(sd_bus_process)                  \
  EACH(sd_bus_set_address)              \
  EACH(sd_bus_set_bus_client)           \
  EACH(sd_bus_start)                    \
  EACH(sd_bus_wait)

namespace tarnwell {

// NOLINTNEXTLINE(bugprone-macro-parentheses): a name that is declared stands in none.
#define TARNWELL_DECLARE_POINTER(NAME) inline decltype(&::NAME) NAME = nullptr;
TARNWELL_SD_BUS_FUNCTIONS(TARNWELL_DECLARE_POINTER)
#undef TARNWELL_DECLARE_POINTER

/// Loads the library and sets the pointers, once; it stays until the process ends. False when it is not
/// installed or lacks one of the functions. None of them may be called before this has returned true.
bool loadSDBusLibrary();

}  // namespace tarnwell

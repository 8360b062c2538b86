#pragma once

/// The part of the unified log that src/Platform uses, declared from os_log(3). What is a macro there is a
/// function here; Clang checks the format and its arguments in both.

#include <stdint.h>

#ifdef __clang__
#define CHECKED_LOG_FORMAT __attribute__((format(os_log, 3, 4)))
#else
#define CHECKED_LOG_FORMAT
#endif

extern "C" {

typedef struct OpaqueLog* os_log_t;

enum os_log_type_t : uint8_t {
  OS_LOG_TYPE_DEFAULT = 0x00,
  OS_LOG_TYPE_INFO = 0x01,
  OS_LOG_TYPE_DEBUG = 0x02,
  OS_LOG_TYPE_ERROR = 0x10,
};

os_log_t os_log_create(const char* subsystem, const char* category);
bool os_log_type_enabled(os_log_t log, os_log_type_t type);
CHECKED_LOG_FORMAT void os_log_with_type(os_log_t log, os_log_type_t type, const char* format, ...);
}

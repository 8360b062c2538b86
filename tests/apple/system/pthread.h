#pragma once

/// The threads of the system, and the one function beyond POSIX that Asio calls on macOS.

#include_next <pthread.h>

extern "C" int pthread_cond_timedwait_relative_np(pthread_cond_t* condition, pthread_mutex_t* mutex,
                                                  const struct timespec* duration);

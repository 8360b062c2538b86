#pragma once

/// The one request of Darwin's ptrace(2) that is used.

#include <sys/types.h>

constexpr int PT_DENY_ATTACH = 31;

extern "C" int ptrace(int request, pid_t process, caddr_t address, int data);

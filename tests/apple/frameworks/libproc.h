#pragma once

/// The list of processes of Darwin.

#include <stdint.h>
#include <sys/proc_info.h>

extern "C" {
int proc_listallpids(void* buffer, int size);
int proc_pidinfo(int process, int flavor, uint64_t argument, void* buffer, int size);
int proc_pidpath(int process, void* buffer, uint32_t size);
}

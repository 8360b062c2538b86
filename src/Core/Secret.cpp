#include "Core/Secret.h"

#include <cstring>

namespace tarnwell {

void wipe(void* memory, std::size_t size) noexcept {
  if (size == 0) {
    return;
  }
  std::memset(memory, 0, size);
  // The empty statement claims to read the memory, so that the compiler cannot drop the writes above as
  // useless. GCC and Clang both understand it, on every system.
  asm volatile("" : : "r"(memory) : "memory");
}

}  // namespace tarnwell

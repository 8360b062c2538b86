#include "Platform/RandomBytes.h"

#include <sys/random.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace tarnwell {

void fillWithRandom(std::span<unsigned char> bytes) {
  if (::getentropy(bytes.data(), bytes.size()) != 0) {
    throw std::system_error(errno, std::generic_category(), "no random bytes");
  }
}

}  // namespace tarnwell

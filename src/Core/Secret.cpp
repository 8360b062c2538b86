#include "Core/Secret.h"

#include <algorithm>
#include <cstring>

namespace tarnwell {

void wipe(void* memory, std::size_t size) noexcept {
  if (size == 0) {
    return;
  }
  std::memset(memory, 0, size);
  // The empty statement tells the compiler that the memory is read, so the compiler keeps the writes above.
  // GCC and Clang both support it.
  asm volatile("" : : "r"(memory) : "memory");
}

bool Secret::operator==(const Secret& other) const noexcept {
  // Volatile, so that the compiler does not leave the loop at the first difference.
  volatile std::size_t difference = bytes_.size() ^ other.bytes_.size();
  for (std::size_t index = 0; !bytes_.empty() && index < other.bytes_.size(); ++index) {
    const auto mine = static_cast<unsigned char>(bytes_[index % bytes_.size()]);
    const auto theirs = static_cast<unsigned char>(other.bytes_[index]);
    difference = difference | static_cast<std::size_t>(mine ^ theirs);
  }
  return difference == 0;
}

std::string masked(std::string_view text, std::initializer_list<std::string_view> secrets) {
  std::vector<bool> isHidden(text.size());
  for (const std::string_view secret : secrets) {
    std::size_t hiddenEnd = 0;
    for (std::size_t found = secret.empty() ? text.npos : text.find(secret); found != text.npos;
         found = text.find(secret, found + 1)) {
      for (hiddenEnd = std::max(hiddenEnd, found); hiddenEnd < found + secret.size(); ++hiddenEnd) {
        isHidden[hiddenEnd] = true;
      }
    }
  }
  std::string result;
  for (std::size_t position = 0; position < text.size(); ++position) {
    if (!isHidden[position]) {
      result.push_back(text[position]);
    } else if (position == 0 || !isHidden[position - 1]) {
      result.append("***");
    }
  }
  return result;
}

}  // namespace tarnwell

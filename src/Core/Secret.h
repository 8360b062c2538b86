#pragma once

/// A password, or bytes that contain one.
///
/// It cannot be printed, logged or converted to a text by accident. Its memory is overwritten when it is
/// destroyed, grows or is cleared. Call `view()` only where the secret is sent.
///
/// Threads: a plain value, one thread at a time.

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell {

/// Overwrites memory in a way that the compiler may not optimize away.
void wipe(void* memory, std::size_t size) noexcept;

/// Overwrites every block of memory before it frees it.
template <class T>
struct WipingAllocator {
  using value_type = T;

  WipingAllocator() = default;
  template <class U>
  WipingAllocator(const WipingAllocator<U>&) noexcept {}

  T* allocate(std::size_t count) { return std::allocator<T>().allocate(count); }
  void deallocate(T* memory, std::size_t count) noexcept {
    wipe(memory, count * sizeof(T));
    std::allocator<T>().deallocate(memory, count);
  }

  template <class U>
  bool operator==(const WipingAllocator<U>&) const noexcept {
    return true;
  }
};

/// A vector stores no short values inside itself, so every byte lies in memory that is wiped.
class Secret {
 public:
  Secret() = default;
  explicit Secret(std::string_view text) { append(text); }

  void append(std::string_view text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }
  void append(char byte) { bytes_.push_back(byte); }
  void clear() {
    wipe(bytes_.data(), bytes_.size());
    bytes_.clear();
  }

  bool empty() const { return bytes_.empty(); }
  std::size_t size() const { return bytes_.size(); }
  std::string_view view() const { return {bytes_.data(), bytes_.size()}; }

  /// Takes the same time whatever the bytes are: it depends on the two lengths only. So somebody who may
  /// guess often does not learn how much of a guess is right.
  bool operator==(const Secret& other) const noexcept;

 private:
  std::vector<char, WipingAllocator<char>> bytes_;
};

/// The text with each secret replaced by "***". Secrets that overlap or touch become one "***". An empty
/// secret is ignored.
std::string masked(std::string_view text, std::initializer_list<std::string_view> secrets);

}  // namespace tarnwell

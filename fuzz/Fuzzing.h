#pragma once

/// Shared by the fuzz targets. A target is one function that libFuzzer calls with one input after the other.
/// It reports a mistake by ending the process; libFuzzer then keeps the input.
///
///     FUZZ_TARGET(std::string_view input) { require(isValidUTF8(repairedUTF8(input)), "repaired"); }
///
/// Deliberate: nothing copies the whole input before it is read. AddressSanitizer then detects a read beyond
/// its end.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tarnwell::fuzz {

void run(std::string_view input);

/// Ends the process with the claim when it is false.
inline void require(bool holds, const char* claim) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", claim);
    std::abort();
  }
}

/// Takes one byte from the front as a number, counted from the digit "0", so that inputs can be written by
/// hand. 0 at the end of the input.
inline unsigned takeChoice(std::string_view& input) {
  if (input.empty()) {
    return 0;
  }
  const auto byte = static_cast<unsigned char>(input.front() - '0');
  input.remove_prefix(1);
  return byte;
}

/// Takes a line from the front, without its LF. Takes the whole input when there is no LF.
inline std::string_view takeLine(std::string_view& input) {
  const std::size_t end = input.find('\n');
  const std::string_view line = input.substr(0, end);
  input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
  return line;
}

/// Cuts a stream into pieces. Four numbers at the front of the input give the lengths in turn.
class Cuts {
 public:
  explicit Cuts(std::string_view& input) {
    for (std::size_t& length : lengths_) {
      length = takeChoice(input) + 1;
    }
  }

  static Cuts intoSingleBytes() {
    std::string_view lengthsOfOne = "0000";
    return Cuts(lengthsOfOne);
  }

  template <class Consumer>
  void forEachPiece(std::string_view stream, Consumer consume) const {
    for (std::size_t turn = 0; !stream.empty(); ++turn) {
      const std::string_view piece = stream.substr(0, lengths_[turn % count]);
      consume(piece);
      stream.remove_prefix(piece.size());
    }
  }

 private:
  static constexpr std::size_t count = 4;
  std::size_t lengths_[count];  // in bytes
};

}  // namespace tarnwell::fuzz

/// The function that libFuzzer calls, and the beginning of the target's own function.
#define FUZZ_TARGET(parameter)                                                        \
  extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) { \
    tarnwell::fuzz::run(std::string_view(reinterpret_cast<const char*>(data), size)); \
    return 0;                                                                         \
  }                                                                                   \
  void tarnwell::fuzz::run(parameter)

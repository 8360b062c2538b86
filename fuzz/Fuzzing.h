#pragma once

/// What the fuzz targets share. A target is one function that libFuzzer calls with one input after the
/// other; it reports a mistake by ending the process, which makes libFuzzer keep the input.
///
///     FUZZ_TARGET(std::string_view input) { require(isValidUTF8(repairedUTF8(input)), "repaired"); }
///
/// Deliberate: the input is never copied as a whole before it is read, so that AddressSanitizer sees a read
/// beyond its end.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tarnwell::fuzz {

void run(std::string_view input);

/// Ends the process with the claim when it does not hold.
inline void require(bool holds, const char* claim) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", claim);
    std::abort();
  }
}

/// Takes one byte off the front as a choice, counted from the digit "0" so that inputs can be written by
/// hand; 0 at the end of the input.
inline unsigned takeChoice(std::string_view& input) {
  if (input.empty()) {
    return 0;
  }
  const auto byte = static_cast<unsigned char>(input.front() - '0');
  input.remove_prefix(1);
  return byte;
}

/// Takes a line without its LF off the front; all of the input when there is no LF.
inline std::string_view takeLine(std::string_view& input) {
  const std::size_t end = input.find('\n');
  const std::string_view line = input.substr(0, end);
  input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
  return line;
}

/// How a stream is cut into pieces: four choices off the front of the input are their lengths in turn.
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

/// The function that libFuzzer looks for, and the head of the target's own.
#define FUZZ_TARGET(parameter)                                                        \
  extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) { \
    tarnwell::fuzz::run(std::string_view(reinterpret_cast<const char*>(data), size)); \
    return 0;                                                                         \
  }                                                                                   \
  void tarnwell::fuzz::run(parameter)

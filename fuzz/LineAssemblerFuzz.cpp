// A server's bytes, cut at any place, give the same lines, and the lines together are the stream.

#include "IMAP/Connection/LineAssembler.h"

#include <string>
#include <vector>

#include "Fuzzing.h"

namespace tarnwell {
namespace {

std::vector<std::string> linesOf(LineAssembler& assembler) {
  std::vector<std::string> lines;
  while (std::optional<std::string> line = assembler.next()) {
    lines.push_back(*std::move(line));
  }
  return lines;
}

void requireSameLines(const std::vector<std::string>& lines, std::string_view stream,
                      const fuzz::Cuts& cuts) {
  LineAssembler assembler;
  cuts.forEachPiece(stream, [&](std::string_view piece) { assembler.append(piece); });
  fuzz::require(linesOf(assembler) == lines, "the cuts do not change the lines");
}

}  // namespace
}  // namespace tarnwell

FUZZ_TARGET(std::string_view input) {
  const Cuts cuts(input);
  LineAssembler whole;
  whole.append(input);
  const std::vector<std::string> lines = linesOf(whole);
  requireSameLines(lines, input, cuts);
  requireSameLines(lines, input, Cuts::intoSingleBytes());

  std::string rejoined;
  for (const std::string& line : lines) {
    rejoined += line + "\r\n";
  }
  require(input.starts_with(rejoined), "the lines are the beginning of the stream");
}

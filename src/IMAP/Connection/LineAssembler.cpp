#include "IMAP/Connection/LineAssembler.h"

#include <algorithm>
#include <utility>

#include "Text/ASCIICase.h"
#include "Text/DecimalNumber.h"

namespace tarnwell {
namespace {

constexpr std::string_view crlf = "\r\n";

}  // namespace

void LineAssembler::append(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t taken = literalBytesMissing_ > 0 ? appendLiteral(bytes) : appendLine(bytes);
    bytes.remove_prefix(taken);
  }
}

std::size_t LineAssembler::appendLiteral(std::string_view bytes) {
  const std::uint64_t taken = std::min<std::uint64_t>(literalBytesMissing_, bytes.size());
  assembled_.append(bytes, 0, taken);
  literalBytesMissing_ -= taken;
  if (literalBytesMissing_ == 0) {
    physicalLineBegin_ = assembled_.size();
  }
  return taken;
}

std::size_t LineAssembler::appendLine(std::string_view bytes) {
  const std::size_t lineFeed = bytes.find('\n');
  const std::size_t taken = lineFeed == std::string_view::npos ? bytes.size() : lineFeed + 1;
  assembled_.append(bytes, 0, taken);
  // The CR may belong to an earlier piece, but not to the literal before this line.
  if (std::string_view(assembled_).substr(physicalLineBegin_).ends_with(crlf)) {
    endPhysicalLine();
  }
  return taken;
}

void LineAssembler::endPhysicalLine() {
  const std::size_t end = assembled_.size() - crlf.size();
  const std::string_view line(assembled_.data() + physicalLineBegin_, end - physicalLineBegin_);
  if (const std::optional<std::int64_t> announced = trailingLiteralLength(line)) {
    literalBytesMissing_ = static_cast<std::uint64_t>(*announced);
    physicalLineBegin_ = assembled_.size();
    return;
  }
  assembled_.resize(end);
  complete_.push_back(std::move(assembled_));
  assembled_.clear();
  physicalLineBegin_ = 0;
}

std::optional<std::string> LineAssembler::next() {
  if (complete_.empty()) {
    return std::nullopt;
  }
  std::string line = std::move(complete_.front());
  complete_.pop_front();
  return line;
}

std::optional<std::int64_t> LineAssembler::trailingLiteralLength(std::string_view line) {
  if (!line.ends_with('}')) {
    return std::nullopt;
  }
  line.remove_suffix(1);
  if (line.ends_with('+')) {
    line.remove_suffix(1);
  }
  const auto digitsBegin = std::find_if_not(line.rbegin(), line.rend(), isASCIIDigit).base();
  const std::string_view digits(digitsBegin, line.end());
  line.remove_suffix(digits.size());
  if (!line.ends_with('{')) {
    return std::nullopt;
  }
  return decimalNumber<std::int64_t>(digits);
}

}  // namespace tarnwell

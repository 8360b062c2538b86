// A body in each transfer encoding and charset. The first two bytes of the input choose them.

#include "IMAP/Decoding/TextDecoding.h"

#include <iterator>

#include "Fuzzing.h"
#include "Text/Text.h"
#include "support/TextDecodingReference.h"

namespace tarnwell::TextDecoding {
namespace {

std::string base64Of(std::string_view bytes) {
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::string_view group = bytes.substr(at, 3);
    std::uint32_t bits = 0;
    for (std::size_t index = 0; index < 3; ++index) {
      bits = bits << 8 | (index < group.size() ? byteAt(group, index) : 0U);
    }
    for (std::size_t index = 0; index < 4; ++index) {
      text += index <= group.size() ? base64Letters[bits >> (18 - 6 * index) & 63] : '=';
    }
    text += at % 57 == 54 ? "\r\n" : "";
  }
  return text;
}

}  // namespace
}  // namespace tarnwell::TextDecoding

FUZZ_TARGET(std::string_view input) {
  using namespace TextDecoding;
  constexpr std::string_view encodings[] = {"base64", "quoted-printable", "7bit", "8bit", "x-unknown"};
  constexpr std::string_view charsets[] = {
      "utf-8",     "us-ascii", "iso-8859-1",  "iso-8859-2", "windows-1252", "windows-1251",
      "shift_jis", "euc-jp",   "iso-2022-jp", "utf-16",     "gb18030",      "utf-7",
      "koi8-r",    "euc-kr",   "big5",        "utf-32",     "iso-2022-kr",  "hz-gb-2312"};
  const std::string_view encoding = encodings[takeChoice(input) % std::size(encodings)];
  const unsigned charset = takeChoice(input) % (std::size(charsets) + 2);
  std::optional<std::string_view> name;
  if (charset < std::size(charsets)) {
    name = charsets[charset];
  } else if (charset == std::size(charsets)) {
    name = takeLine(input);
  }

  const std::string text = decodeText(std::string(input), encoding, name);
  require(isValidUTF8(text), "a decoded text is valid UTF-8");
  for (const Underscore underscore : {Underscore::isUnderscore, Underscore::isSpace}) {
    require(decodeQuotedPrintable(input, underscore) == referenceBytes(input, underscore),
            "quoted-printable is read by its rules");
  }
  require(decodeBase64(input) == referenceBase64(input), "base64 is read by its rules");
  require(decodeBase64(base64Of(input)) == input, "what was encoded is decoded");
}

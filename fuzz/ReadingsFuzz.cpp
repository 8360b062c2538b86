// The readings of any body and any header field are valid UTF-8, and no `end` lies far beyond its text. The
// first bytes choose the charset, the form and the place of the cut.

#include "IMAP/Decoding/Readings.h"

#include <algorithm>
#include <iterator>

#include "Fuzzing.h"
#include "IMAP/Decoding/HTMLToText.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "Text/Text.h"

FUZZ_TARGET(std::string_view input) {
  using namespace TextDecoding;
  constexpr std::string_view charsets[] = {"utf-8",  "us-ascii",    "iso-8859-1", "windows-1252", "shift_jis",
                                           "euc-jp", "iso-2022-jp", "utf-16",     "utf-7",        "x-none"};
  const std::string_view charset = charsets[takeChoice(input) % std::size(charsets)];
  const unsigned form = takeChoice(input);
  const std::size_t cut = takeChoice(input);

  for (const std::string& reading : headerReadings(input)) {
    require(isValidUTF8(reading), "the reading of a field is valid UTF-8");
  }

  DecodedPart part = decodePart(std::string(input), form % 2 == 0 ? "8bit" : "base64", charset);
  part.source.isHTML = form / 2 % 2 == 1;
  if (part.source.isHTML) {
    const std::string html = part.text;
    std::string marked = html;
    reduceHTMLToText(part.text);
    reduceHTMLToMarkedText(marked);
    require(sourceLength(marked, Charset::utf8, marked.size()) == marked.size(),
            "all code points are counted");
    require(isValidUTF8(withoutInlineMarks(marked)), "the text without marks is valid UTF-8");
  }
  const std::size_t leaving = form / 4 % 2 == 0
                                  ? characterPrefix(part.text, cut).size()
                                  : snippetSourceLength(part.text, static_cast<std::int64_t>(cut));
  require(leaving <= part.text.size(), "no more leaves than there is");
  const std::vector<Passage> readings = bodyReadings(part.source, part.text, leaving);
  require(!readings.empty(), "the text itself is a reading");
  for (const Passage& reading : readings) {
    require(isValidUTF8(reading.text), "a reading is valid UTF-8");
    require(reading.end <= reading.text.size() + 32, "a reading ends in its text");
  }
}

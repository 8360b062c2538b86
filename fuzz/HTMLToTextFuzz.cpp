// HTML is reduced as the regular expressions say. Invalid UTF-8 changes nothing around it.

#include "Fuzzing.h"
#include "Text/Text.h"
#include "support/TextDecodingReference.h"

FUZZ_TARGET(std::string_view input) {
  using namespace TextDecoding;
  const std::string html = repairedUTF8(input);
  const std::string text = htmlToText(html);
  require(text == referenceText(html), "the text is that of the expressions");
  require(repairedUTF8(htmlToText(input)) == text, "invalid bytes pass through");
}

// A header field is decoded as the regular expression says, and the result is valid UTF-8.

#include "Fuzzing.h"
#include "Text/Text.h"
#include "support/TextDecodingReference.h"

FUZZ_TARGET(std::string_view input) {
  using namespace TextDecoding;
  const std::optional<std::string> fromAnyBytes = decodeRFC2047(input);
  require(fromAnyBytes.has_value(), "a field that is there stays there");

  const std::string field = repairedUTF8(input);
  const std::optional<std::string> decoded = decodeRFC2047(field);
  require(decoded == referenceField(field), "the field has the meaning of the expression");
  require(isValidUTF8(*decoded), "a valid field stays valid");
}

// A preview equals the one of the step-by-step reference. The first byte chooses the limit, also below 0.

#include "Fuzzing.h"
#include "Text/Text.h"
#include "support/TextDecodingReference.h"

FUZZ_TARGET(std::string_view input) {
  using namespace TextDecoding;
  const auto maxChars = static_cast<std::int8_t>(takeChoice(input));
  const Snippet preview = snippet(input, maxChars);
  require(isValidUTF8(preview.text), "a preview is valid UTF-8");
  require(preview == referenceSnippet(repairedUTF8(input), maxChars), "the preview is that of the steps");
}

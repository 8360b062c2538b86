// Reads the input as a mailbox name from the server, and also encodes it as a text.

#include "IMAP/Decoding/ModifiedUTF7.h"

#include "Fuzzing.h"
#include "Text/Text.h"
#include "support/ModifiedUTF7Reference.h"

FUZZ_TARGET(std::string_view input) {
  using namespace ModifiedUTF7;
  static const test::ICUConverter converter = test::mailboxNameConverter();
  const std::optional<std::string> text = decoded(input);
  const std::string name(input);
  if (text) {
    require(isValidUTF8(*text), "a decoded name is valid UTF-8");
    require(encoded(*text) == name, "a valid name is the one spelling of its text");
    require(*text == test::referenceNameText(name, converter), "a name is decoded as ICU decodes it");
    require(readable(name) == *text || readable(name) == name, "a name is decoded or stays");
  } else {
    require(test::referenceName(test::referenceNameText(name, converter), converter) != name,
            "a name that ICU gives back is valid");
    require(readable(name) == name, "a name that is not valid stays");
  }
  const std::string repaired = repairedUTF8(input);
  require(encoded(repaired) == test::referenceName(repaired, converter),
          "a text is encoded as ICU encodes it");
  require(decoded(encoded(repaired)) == repaired, "what was encoded is decoded");
}

// A server's response gives the tokens of the reference tokenizer. Every reader ends and returns valid UTF-8
// that survives its JSON form.

#include <nlohmann/json.hpp>

#include "Fuzzing.h"
#include "IMAP/Responses/IMAPParser.h"
#include "Text/Text.h"
#include "support/ReferenceTokenizer.h"

namespace tarnwell {
namespace {

template <class Value>
void requireJSONForm(const Value& value) {
  const std::string written = nlohmann::json(value).dump();  // throws for a text that is not UTF-8
  fuzz::require(nlohmann::json::parse(written).get<Value>() == value, "the JSON form gives the value back");
}

/// The section is used in a command.
void requireSection(const IMAPBodyInfo& body) {
  if (body.preferredText) {
    const std::string& section = body.preferredText->section;
    fuzz::require(!section.empty() && section.find_first_not_of("0123456789.") == std::string::npos,
                  "a section is a number with dots");
  }
}

}  // namespace
}  // namespace tarnwell

FUZZ_TARGET(std::string_view response) {
  // The reference tokenizer is recursive, and copies each nested list once for every list around it.
  constexpr std::size_t longestForReference = 2048;

  const IMAPTokens tokens = IMAPParser::tokenize(response);
  if (response.size() <= longestForReference) {
    require(test::printed(tokens) == test::ReferenceTokenizer(response).printed(),
            "the tokens are the plain ones");
  }
  requireJSONForm(IMAPParser::parseEnvelope(tokens.elements()));
  if (const std::optional<IMAPFolder> folder = IMAPParser::parseList(tokens.elements())) {
    requireJSONForm(*folder);
  }
  if (const std::optional<IMAPMessage> message = IMAPParser::parseFetchMessage(tokens.elements())) {
    requireJSONForm(message->envelope);
    requireSection(message->bodyInfo);
  }
  for (const IMAPToken token : tokens.elements()) {
    IMAPParser::parseEnvelope(token.list());
    requireSection(IMAPParser::parseBodyStructure(token.list()));
  }
  requireSection(IMAPParser::parseBodyStructure(tokens.elements()));
  if (const auto found = IMAPParser::parseSearch(response)) {
    require(found->size() <= response.size() / 2, "each number has a blank before it");
  }
  if (const auto completion = IMAPParser::parseCompletion(response, "A0001")) {
    require(trimmed(response).starts_with("A0001"), "a completion is that of the tag");
  }
}

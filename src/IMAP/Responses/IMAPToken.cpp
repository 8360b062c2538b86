#include "IMAP/Responses/IMAPToken.h"

#include "Text/ASCIICase.h"
#include "Text/Text.h"

namespace tarnwell {
namespace {

/// The bytes of a quoted string without the backslashes that escape. Keeps a backslash at the very end: the
/// input stopped there, so it escapes nothing.
std::string withoutEscapes(std::string_view bytes) {
  std::string plain;
  plain.reserve(bytes.size());
  for (std::size_t position = 0; position < bytes.size(); ++position) {
    if (bytes[position] == '\\' && position + 1 < bytes.size()) {
      ++position;
    }
    plain.push_back(bytes[position]);
  }
  return plain;
}

}  // namespace

std::optional<std::string> IMAPToken::text() const {
  const IMAPTokens::Entry& entry = tokens_->tape_[index_];
  switch (entry.form()) {
    case IMAPTokens::Form::atom:
    case IMAPTokens::Form::string:
      return repairedUTF8(tokens_->bytes(entry));
    case IMAPTokens::Form::escapedString:
      return repairedUTF8(withoutEscapes(tokens_->bytes(entry)));
    case IMAPTokens::Form::list:
    case IMAPTokens::Form::nilToken:
      break;
  }
  return std::nullopt;
}

std::optional<std::string> IMAPToken::bytes() const {
  const IMAPTokens::Entry& entry = tokens_->tape_[index_];
  switch (entry.form()) {
    case IMAPTokens::Form::atom:
    case IMAPTokens::Form::string:
      return std::string(tokens_->bytes(entry));
    case IMAPTokens::Form::escapedString:
      return withoutEscapes(tokens_->bytes(entry));
    case IMAPTokens::Form::list:
    case IMAPTokens::Form::nilToken:
      break;
  }
  return std::nullopt;
}

bool IMAPToken::escapedTextEquals(std::string_view word) const {
  const IMAPTokens::Entry& entry = tokens_->tape_[index_];
  return equalsIgnoringASCIICase(withoutEscapes(tokens_->bytes(entry)), word);
}

std::optional<IMAPToken> IMAPTokenList::operator[](std::size_t position) const {
  for (const IMAPToken element : *this) {
    if (position-- == 0) {
      return element;
    }
  }
  return std::nullopt;
}

}  // namespace tarnwell

#include "Core/SecurityMail/SecretMailRule.h"

#include <algorithm>
#include <optional>

#include "Core/SecurityMail/SecretMailReading.h"
#include "Text/ASCIICase.h"
#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell {

namespace {

struct Origin {
  std::size_t begin;
  std::size_t end;
};

/// A folded piece of a text. The origins of its bytes take many times the memory of the bytes, so a long text
/// is read in pieces.
struct Piece {
  std::size_t begin;
  std::size_t end;
  std::string folded;
  std::vector<Origin> origins;  // of each byte of the folded text
};

constexpr std::size_t enoughForPiece = 16'384;
constexpr std::size_t mostOfPiece = 65'536;  // for a text without a place to cut

bool isLetter(char byte) { return isASCIILetterOrDigit(byte) && (byte < '0' || byte > '9'); }

/// True when the text may be cut before this character: no group reaches over the cut, and nothing that
/// decides about a group. A cut before a blank needs a word of letters before it. A cut before a character of
/// three bytes or more needs a stretch without digits before it.
bool endsBefore(std::string_view folded, std::string_view character) {
  if (character == " ") {
    const auto word = std::find_if_not(folded.rbegin(), folded.rend(), isLetter);
    return word != folded.rbegin() && (word == folded.rend() || *word == ' ');
  }
  constexpr std::size_t longestAfterNumber = 16;
  return byteAt(character, 0) >= 0xE0 && folded.size() > longestAfterNumber &&
         folded.find_first_of("0123456789", folded.size() - longestAfterNumber) == std::string_view::npos;
}

/// Reads the piece that begins at `next` and moves `next` to its end.
Piece readPiece(std::string_view text, std::size_t& next) {
  Piece piece{next, next, {}, {}};
  while (next < text.size() && piece.folded.size() < mostOfPiece) {
    const std::size_t begin = next;
    const char32_t codePoint = nextCodePoint(text, next);
    const std::string character = isWhitespace(codePoint) ? " "
                                  : codePoint < 0x80      ? std::string(1, static_cast<char>(codePoint))
                                                     : foldedForScanning(text.substr(begin, next - begin));
    if (piece.folded.size() >= enoughForPiece && !character.empty() && endsBefore(piece.folded, character)) {
      next = begin;
      break;
    }
    piece.folded += character;
    piece.origins.resize(piece.folded.size(), {begin, next});
  }
  piece.end = next;
  return piece;
}

void appendMasked(const Piece& piece, std::string_view text, std::string& masked) {
  std::size_t copied = piece.begin;
  for (const CodeGroup& group : codeGroupsIn(piece.folded)) {
    masked.append(text, copied, piece.origins[group.begin].begin - copied);
    copied = piece.origins[group.end - 1].end;
    for (std::size_t byte = group.begin; byte < group.end; ++byte) {
      const bool isFirstOfCharacter =
          byte == group.begin || piece.origins[byte].begin != piece.origins[byte - 1].begin;
      masked += isFirstOfCharacter ? "•" : "";
    }
  }
  masked.append(text, copied, piece.end - copied);
}

}  // namespace

std::vector<RiskSignal> SecretMailRule::signals(const Mail& mail) {
  const SecretMailReading reading(mail.subject.substr(0, mostLookedAt), mail.from.substr(0, mostLookedAt),
                                  mail.text.substr(0, mostLookedAt));
  std::vector<RiskSignal> found;
  const auto add = [&](const char* category, const char* location, std::optional<std::string_view> term) {
    if (term) {
      found.push_back({category, std::string(*term), location});
    }
  };
  add("one_time_code", "subject", wordTellingCode(reading, MailLocation::subject));
  add("one_time_code", "from", codeNameIn(reading.wordsOfSender()));
  add("one_time_code", "body", wordTellingCode(reading, MailLocation::body));
  add("account_link", "subject", wordTellingLink(reading, MailLocation::subject));
  add("account_link", "body", wordTellingLink(reading, MailLocation::body));
  return found;
}

std::string SecretMailRule::maskedCodes(std::string_view text) {
  std::string masked;
  masked.reserve(text.size());
  for (std::size_t next = 0; next < text.size();) {
    appendMasked(readPiece(text, next), text, masked);
  }
  return masked;
}

}  // namespace tarnwell

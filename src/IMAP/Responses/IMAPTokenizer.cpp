#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "IMAP/Responses/IMAPParser.h"
#include "Text/ASCIICase.h"

namespace tarnwell {
namespace {

using ByteSet = std::array<bool, 256>;

constexpr ByteSet bytesOf(std::string_view members) {
  ByteSet set{};
  for (const char member : members) {
    set[static_cast<unsigned char>(member)] = true;
  }
  return set;
}

/// The bytes that end an atom.
/// Deliberate: only these. Brackets, backslashes, wildcards and angle brackets belong to an atom, so
/// BODY[1.2]<0>, [READ-WRITE] and \Noselect are one atom each. CR and LF belong to it too: within a response
/// they occur only after the announcement of a literal.
constexpr ByteSet atomEnds = bytesOf(" \t\"(){");

/// How many tokens may begin at or right after a byte: itself, the atom after it, or both.
constexpr std::array<std::uint8_t, 256> tokensBegun = [] {
  std::array<std::uint8_t, 256> numbers{};
  for (const char byte : {' ', '\t', '"', ')'}) {
    numbers[static_cast<unsigned char>(byte)] = 1;
  }
  for (const char byte : {'(', '{'}) {
    numbers[static_cast<unsigned char>(byte)] = 2;
  }
  return numbers;
}();

}  // namespace

/// Writes the tokens of a response to the tape, in one pass, without recursion or a stack for nested lists.
/// While a list is open, its `end` holds the index of the open list around it.
class IMAPTokenizer {
 public:
  explicit IMAPTokenizer(std::string_view response) : response_(response), tokens_(response) {
    // Enough for the summary of an ordinary message, but little for a body of many megabytes.
    tokens_.tape_.reserve(std::min<std::size_t>(response.size() / 6, 256));
  }

  IMAPTokens tokens() && {
    while (position_ < response_.size()) {
      const char byte = response_[position_];
      if (byte == ' ' || byte == '\t') {
        ++position_;
      } else {
        readTokenAt(byte);
      }
    }
    while (innermostList_ != noList) {
      closeList();
    }
    return std::move(tokens_);
  }

 private:
  using Form = IMAPTokens::Form;
  static constexpr std::size_t noList = std::numeric_limits<std::size_t>::max();

  /// Reads the token that begins at the position. The byte there is not a blank.
  void readTokenAt(char byte) {
    switch (byte) {
      case '(':
        ++position_;
        openList();
        break;
      case ')':
        ++position_;
        closeList();
        break;
      case '"':
        ++position_;
        readQuoted();
        break;
      case '{':
        ++position_;
        readLiteral();
        break;
      default:
        readAtom();
    }
  }

  void add(Form form, std::size_t begin, std::size_t end) {
    if (tokens_.tape_.size() == tokens_.tape_.capacity()) {
      makeRoom();
    }
    const IMAPTokens::Entry entry(form, begin, end);
    tokens_.tape_.push_back(entry);
  }

  /// Reserves memory for all tokens that can still come. A tape that grows step by step would be copied again
  /// and again. Each copy would cost more once the tape is larger than the processor's caches.
  void makeRoom() {
    std::size_t coming = 1;
    for (const char byte : response_.substr(std::min(position_, response_.size()))) {
      coming += tokensBegun[static_cast<unsigned char>(byte)];
    }
    tokens_.tape_.reserve(tokens_.tape_.size() + coming);
  }

  void openList() {
    add(Form::list, position_, innermostList_);
    innermostList_ = tokens_.tape_.size() - 1;
  }

  /// Skips a parenthesis that closes nothing.
  void closeList() {
    if (innermostList_ == noList) {
      return;
    }
    IMAPTokens::Entry& list = tokens_.tape_[innermostList_];
    innermostList_ = static_cast<std::size_t>(list.end);
    list.end = tokens_.tape_.size();
  }

  void readAtom() {
    const std::size_t begin = position_;
    std::size_t end = begin;
    while (end < response_.size() && !atomEnds[static_cast<unsigned char>(response_[end])]) {
      ++end;
    }
    position_ = end;
    const bool isNIL = equalsIgnoringASCIICase(response_.substr(begin, end - begin), "NIL");
    add(isNIL ? Form::nilToken : Form::atom, begin, end);
  }

  /// RFC 3501, section 9: quoted = DQUOTE *QUOTED-CHAR DQUOTE. A backslash may escape any byte, not only the
  /// two that need it. A string without its closing quote ends with the response.
  void readQuoted() {
    const std::size_t begin = position_;
    std::size_t end = firstAt('"', begin, response_.size());
    Form form = Form::string;
    std::size_t unescaped = begin;
    for (std::size_t backslash; (backslash = firstAt('\\', unescaped, end)) < end;) {
      form = Form::escapedString;
      unescaped = std::min(backslash + 2, response_.size());  // the last byte may be a backslash
      if (unescaped > end) {
        end = firstAt('"', unescaped, response_.size());
      }
    }
    position_ = end;
    add(form, begin, end);
    skipOne('"');
  }

  /// RFC 3501, section 9: literal = "{" number "}" CRLF *CHAR8. The announced length is only an upper limit:
  /// a truncated literal has the bytes that arrived.
  void readLiteral() {
    const std::uint64_t announced = readAnnouncement();
    skipOne('\r');
    skipOne('\n');
    const std::size_t begin = position_;
    position_ += static_cast<std::size_t>(std::min<std::uint64_t>(announced, response_.size() - position_));
    add(Form::string, begin, position_);
  }

  /// The number up to the closing brace. Only digits count, so the "+" of RFC 7888 is ignored. Without
  /// digits, or for a number of more than 63 bits, the result is 0.
  std::uint64_t readAnnouncement() {
    constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    std::uint64_t number = 0;
    bool fits = true;
    for (; position_ < response_.size() && response_[position_] != '}'; ++position_) {
      if (!isASCIIDigit(response_[position_])) {
        continue;
      }
      const auto digit = static_cast<std::uint64_t>(response_[position_] - '0');
      fits = fits && number <= (largest - digit) / 10;
      number = fits ? number * 10 + digit : 0;
    }
    skipOne('}');
    return number;
  }

  /// The first position of the byte from `begin` on, or `end`.
  std::size_t firstAt(char byte, std::size_t begin, std::size_t end) const {
    return std::min(response_.substr(0, end).find(byte, begin), end);
  }

  void skipOne(char byte) {
    if (position_ < response_.size() && response_[position_] == byte) {
      ++position_;
    }
  }

  std::string_view response_;
  std::size_t position_ = 0;
  IMAPTokens tokens_;
  std::size_t innermostList_ = noList;
};

IMAPTokens IMAPParser::tokenize(std::string_view response) { return IMAPTokenizer(response).tokens(); }

}  // namespace tarnwell

#include "IMAP/Decoding/TextDecoding.h"

#include <algorithm>

#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell::TextDecoding {

namespace {

/// Hands out a text piece by piece, its white space collapsed to single spaces and trimmed. A space is
/// only written together with what follows it, so that every prefix is trimmed too.
class CollapsedText {
 public:
  explicit CollapsedText(std::string_view text) : text_(text) {}

  bool isComplete() const { return position_ == text_.size(); }
  const std::string& soFar() const { return collapsed_; }

  /// Goes on until `size` bytes are there or the text ends.
  void growTo(std::size_t size) {
    while (position_ < text_.size() && collapsed_.size() < size) {
      if (text_[position_] == ' ') {
        isBehindSpace_ = true;
        ++position_;
        continue;
      }
      if (const std::size_t run = lengthOfRun(size - collapsed_.size()); run > 0) {
        separate();
        collapsed_.append(text_, position_, run);
        position_ += run;
        continue;
      }
      const char32_t codePoint = nextCodePoint(text_, position_);
      if (isWhitespace(codePoint)) {
        isBehindSpace_ = true;
        continue;
      }
      separate();
      appendCodePoint(collapsed_, codePoint);
    }
  }

 private:
  static bool isVisibleASCII(char byte) { return byte > ' ' && byte <= '~'; }

  /// How many bytes from here on stay as they are: visible characters, and single spaces before those of
  /// ASCII. Little more than `size`, and 0 at white space and at bytes that are not UTF-8.
  std::size_t lengthOfRun(std::size_t size) const {
    const std::string_view text = text_.substr(position_);
    std::size_t end = 0;
    while (end < std::min(size, text.size())) {
      if (isVisibleASCII(text[end])) {
        ++end;
      } else if (text[end] == ' ') {
        if (end + 1 == text.size() || !isVisibleASCII(text[end + 1])) {
          break;
        }
        end += 2;
      } else {
        std::size_t next = end;
        bool isValid = true;
        const char32_t codePoint = nextCodePoint(text, next, &isValid);
        if (!isValid || isWhitespace(codePoint)) {
          break;
        }
        end = next;
      }
    }
    return end;
  }

  void separate() {
    if (isBehindSpace_ && !collapsed_.empty()) {
      collapsed_.push_back(' ');
    }
    isBehindSpace_ = false;
  }

  std::string_view text_;
  std::size_t position_ = 0;
  std::string collapsed_;
  bool isBehindSpace_ = false;
};

}  // namespace

Snippet snippet(std::string_view text, std::int64_t maxChars) {
  const auto limit = static_cast<std::size_t>(std::max<std::int64_t>(maxChars, 0));
  CollapsedText collapsed(text);
  // A preview of a long text needs its beginning only: one code point behind the cut shows both that
  // there is more and where the last character ends. How many bytes that takes is not known beforehand; to
  // begin with, three times as many as characters, which is what most Japanese has.
  // Steps by another factor would make twice the text cost less than twice here and more than twice there.
  constexpr std::size_t largestGuess = 8192;
  for (std::size_t size = 3 * std::min(limit, largestGuess / 3) + 16;; size *= 2) {
    collapsed.growTo(size);
    const std::string_view cut = characterPrefix(collapsed.soFar(), limit);
    if (cut.size() < collapsed.soFar().size()) {
      return {.text = std::string(trimmed(cut)) + "…", .truncated = true};
    }
    if (collapsed.isComplete()) {
      return {.text = collapsed.soFar(), .truncated = false};
    }
  }
}

std::size_t snippetSourceLength(std::string_view text, std::int64_t maxChars) {
  const Snippet wanted = snippet(text, maxChars);
  constexpr std::string_view ellipsis = "…";
  const std::size_t size = wanted.text.size() - (wanted.truncated ? ellipsis.size() : 0);
  std::size_t written = 0;
  std::size_t end = 0;
  bool isAfterSpace = false;
  std::string character;
  for (std::size_t position = 0; position < text.size() && written < size;) {
    const char32_t codePoint = nextCodePoint(text, position);
    if (isWhitespace(codePoint)) {
      isAfterSpace = written > 0;
      continue;
    }
    character.clear();
    appendCodePoint(character, codePoint);
    written += character.size() + (isAfterSpace ? 1 : 0);
    isAfterSpace = false;
    end = position;
  }
  return end;
}

}  // namespace tarnwell::TextDecoding

#include "IMAP/Decoding/TextDecoding.h"

#include <algorithm>

#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell::TextDecoding {

namespace {

/// Returns a text piece by piece, trimmed, with white space collapsed to single spaces. A space is written
/// only together with the next character, so every prefix is trimmed too.
class CollapsedText {
 public:
  explicit CollapsedText(std::string_view text) : text_(text) {}

  bool isComplete() const { return position_ == text_.size(); }
  const std::string& soFar() const { return collapsed_; }

  /// Continues until there are `size` bytes or the text ends.
  void growTo(std::size_t size) {
    while (position_ < text_.size() && collapsed_.size() < size) {
      if (text_[position_] == ' ') {
        isAfterSpace_ = true;
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
        isAfterSpace_ = true;
        continue;
      }
      separate();
      appendCodePoint(collapsed_, codePoint);
    }
  }

 private:
  static bool isVisibleASCII(char byte) { return byte > ' ' && byte <= '~'; }

  /// The number of bytes from here on that stay unchanged: visible characters, and single spaces before
  /// visible ASCII. It may exceed `size` a little. 0 at other white space and at bytes that are not UTF-8.
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
    if (isAfterSpace_ && !collapsed_.empty()) {
      collapsed_.push_back(' ');
    }
    isAfterSpace_ = false;
  }

  std::string_view text_;
  std::size_t position_ = 0;
  std::string collapsed_;
  bool isAfterSpace_ = false;
};

}  // namespace

Snippet snippet(std::string_view text, std::int64_t maxChars) {
  const auto limit = static_cast<std::size_t>(std::max<std::int64_t>(maxChars, 0));
  CollapsedText collapsed(text);
  // A preview needs only the beginning of a long text. One code point after the cut shows that there is more
  // and where the last character ends. The number of bytes for that is not known before. The first guess is
  // three for each character, which fits most Japanese. With steps of a factor other than two, a text of
  // twice the length would not cost about twice as much.
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

#include "Core/SecurityMail/SecretMailScan.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cstdint>
#include <limits>
#include <map>
#include <numeric>
#include <span>
#include <string>
#include <tuple>

#include "Text/ASCIICase.h"
#include "Text/UTF8.h"

namespace tarnwell {

namespace {

/// True after an ASCII letter or digit, an underscore, or a character of two bytes from U+00C0 on. These
/// include the letters of Latin, Greek and Cyrillic.
bool endsInLetter(std::string_view text, std::size_t position) {
  if (position == 0) {
    return false;
  }
  const char last = text[position - 1];
  return isASCIILetterOrDigit(last) || last == '_' ||
         (isContinuationByte(last) && position >= 2 && byteAt(text, position - 2) >= 0xC3 &&
          byteAt(text, position - 2) < 0xE0);
}

bool beginsWithLetter(std::string_view text, std::size_t position) {
  return position < text.size() && (isASCIILetterOrDigit(text[position]) || text[position] == '_' ||
                                    (byteAt(text, position) >= 0xC3 && byteAt(text, position) < 0xE0));
}

bool isASCII(char byte) { return (byte & 0x80) == 0; }

/// The end of the term that begins at `begin`. `begin` when the term is not there.
std::size_t endOfTerm(std::string_view text, std::size_t begin, std::string_view term) {
  std::size_t next = begin;
  for (std::size_t place = 0; place < term.size(); ++place) {
    const char wanted = term[place];
    const char found = next < text.size() ? asciiLowercasedByte(text[next]) : '\0';
    if (found == wanted) {
      ++next;
      continue;
    }
    if (wanted == ' ') {
      next += found == '-' ? 1 : 0;
      continue;
    }
    // The byte after a blank begins a character. So this matches only between two characters of the term.
    if (found != ' ' || place == 0 || isASCII(wanted) || isASCII(term[place - 1]) ||
        next + 1 == text.size() || text[next + 1] != wanted) {
      return begin;
    }
    next += 2;
  }
  if (!isASCII(term.back()) || !beginsWithLetter(text, next)) {
    return next;
  }
  const bool isPlural = asciiLowercasedByte(text[next]) == 's' && !beginsWithLetter(text, next + 1);
  return isPlural ? next + 1 : begin;
}

/// Maps bytes that a term and a text treat as equal to one byte: letters of either case, and a hyphen and a
/// blank.
constexpr std::array<std::uint8_t, 256> plainBytes = [] {
  std::array<std::uint8_t, 256> plain{};
  for (std::size_t byte = 0; byte < plain.size(); ++byte) {
    plain[byte] = static_cast<std::uint8_t>(byte == '-' ? ' ' : asciiLowercasedByte(static_cast<char>(byte)));
  }
  return plain;
}();

struct Term {
  std::string_view text;
  MailRoles roles;
};

/// All terms by their first three bytes, the longest first.
class TermIndex {
 public:
  TermIndex() {
    std::map<std::string_view, MailRoles> roles;
    for (const auto& rows : {englishCodeWords(), englishContextWords(), japaneseSecretMailWords()}) {
      for (const SecretMailWords& row : rows) {
        for (std::string_view rest = row.terms; !rest.empty();) {
          const std::string_view term = rest.substr(0, rest.find('|'));
          rest.remove_prefix(std::min(rest.size(), term.size() + 1));
          roles[term] |= row.roles;
        }
      }
    }
    std::vector<std::pair<std::size_t, Term>> bySlot;
    for (const auto& [term, rolesOfTerm] : roles) {
      bySlot.push_back({slot(term), {term, rolesOfTerm}});
      // A blank may match nothing, so the term may also begin with other bytes.
      std::string joined(term);
      std::erase(joined, ' ');
      if (slot(joined) != slot(term)) {
        bySlot.push_back({slot(joined), {term, rolesOfTerm}});
      }
    }
    std::ranges::sort(bySlot, {}, [](const auto& entry) {
      return std::tuple(entry.first, std::numeric_limits<std::size_t>::max() - entry.second.text.size(),
                        entry.second.text);
    });
    for (const auto& [slotOfTerm, term] : bySlot) {
      terms_.push_back(term);
      beginnings_.set(firstCharacter(term.text));
      ++ends_[slotOfTerm];
    }
    std::partial_sum(ends_.begin(), ends_.end(), ends_.begin());
  }

  /// False when no term begins with the first character of the text.
  bool hasBeginning(std::string_view text) const { return beginnings_[firstCharacter(text)]; }

  std::span<const Term> beginningAs(std::string_view text) const {
    const std::size_t wanted = slot(text);
    const std::size_t begin = wanted == 0 ? 0 : ends_[wanted - 1];
    return std::span(terms_).subspan(begin, ends_[wanted] - begin);
  }

 private:
  /// A number that depends only on the first character of the text.
  static std::size_t firstCharacter(std::string_view text) {
    const std::size_t first = byteAt(text, 0);
    return first < firstOfJapanese || text.size() < lookAhead
               ? plainBytes[first]
               : (first & 0xF) << 12 | (byteAt(text, 1) & 0x3FU) << 6 | (byteAt(text, 2) & 0x3FU);
  }

  /// The slot comes from the first three bytes. For Japanese these are the first character, so the last byte
  /// of the second character counts too; a blank before the second character is skipped. A Japanese term must
  /// therefore have at least two characters.
  static std::size_t slot(std::string_view text) {
    std::size_t sum = 0;
    for (std::size_t place = 0; place < std::min(text.size(), lookAhead); ++place) {
      sum = sum * 67 + plainBytes[byteAt(text, place)];
    }
    if (byteAt(text, 0) >= firstOfJapanese && text.size() > lookAhead) {
      const std::size_t last = lookAhead + (text[lookAhead] == ' ' ? 1 : 0) + 2;
      sum = sum * 67 + (last < text.size() ? byteAt(text, last) : 0);
    }
    return sum % slotCount;
  }

  static constexpr std::size_t lookAhead = 3;
  static constexpr unsigned char firstOfJapanese = 0xE0;
  static constexpr std::size_t slotCount = 8192;
  std::bitset<0x10000> beginnings_;              // the first characters
  std::vector<Term> terms_;                      // slot by slot
  std::array<std::uint16_t, slotCount> ends_{};  // of the terms of each slot
};

const TermIndex& termIndex() {
  static const TermIndex index;
  return index;
}

/// The bytes of the character that begins with this byte of a valid text.
std::size_t lengthOfSequence(char lead) {
  const auto byte = static_cast<std::uint8_t>(lead);
  return byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

}  // namespace

std::vector<FoundWord> wordsIn(std::string_view folded) {
  const TermIndex& index = termIndex();
  std::vector<FoundWord> words;
  std::size_t endOfOther = 0;
  for (std::size_t begin = 0; begin < folded.size(); begin += lengthOfSequence(folded[begin])) {
    if (begin < endOfOther || !index.hasBeginning(folded.substr(begin))) {
      continue;
    }
    if (isASCIILetterOrDigit(folded[begin]) && endsInLetter(folded, begin)) {
      continue;  // inside a word
    }
    for (const Term& term : index.beginningAs(folded.substr(begin))) {
      const std::size_t end = endOfTerm(folded, begin, term.text);
      if (end != begin) {
        words.push_back({begin, end, term.text, term.roles});
        if (words.back().is(mail_role::other)) {
          endOfOther = end;
          break;
        }
      }
    }
  }
  return words;
}

}  // namespace tarnwell

#include "Core/SecretMailScan.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <string>

#include "Platform/ASCIICase.h"
#include "Platform/UTF8.h"

namespace tarnwell {

namespace {

/// True for the letters and digits of ASCII and for the two-byte letters of Latin, Greek and Cyrillic.
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

/// Where the term ends when it stands at `begin`; `begin` when it does not.
std::size_t endOfTerm(std::string_view text, std::size_t begin, std::string_view term) {
  std::size_t next = begin;
  for (std::size_t place = 0; place < term.size(); ++place) {
    const bool isBlank = next < text.size() && (text[next] == ' ' || text[next] == '-');
    if (term[place] == ' ') {
      next += isBlank ? 1 : 0;
      continue;
    }
    const bool isBetweenJapanese = place > 0 && !isASCII(term[place]) && !isASCII(term[place - 1]);
    if (isBetweenJapanese && isBlank && text[next] == ' ' && !isContinuationByte(term[place])) {
      ++next;
    }
    if (next == text.size() || asciiLowercasedByte(text[next]) != term[place]) {
      return begin;
    }
    ++next;
  }
  if (!isASCII(term.back()) || !beginsWithLetter(text, next)) {
    return next;
  }
  const bool isPlural = asciiLowercasedByte(text[next]) == 's' && !beginsWithLetter(text, next + 1);
  return isPlural ? next + 1 : begin;
}

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
    for (const auto& [term, roleBits] : roles) {
      const std::size_t withBlank = slot(term);
      slots_[withBlank].push_back({term, roleBits});
      std::string joined(term);
      std::erase(joined, ' ');
      if (slot(joined) != withBlank) {
        slots_[slot(joined)].push_back({term, roleBits});
      }
    }
    for (std::vector<Term>& terms : slots_) {
      std::ranges::stable_sort(terms, std::greater<>(), [](const Term& term) { return term.text.size(); });
    }
  }

  const std::vector<Term>& beginningAs(std::string_view text) const { return slots_[slot(text)]; }

 private:
  static std::size_t slot(std::string_view text) {
    constexpr std::size_t lookAhead = 3;
    std::size_t sum = 0;
    for (const char byte : text.substr(0, lookAhead)) {
      const char plain = byte == '-' ? ' ' : asciiLowercasedByte(byte);
      sum = sum * 31 + static_cast<unsigned char>(plain);
    }
    return sum % slotCount;
  }

  static constexpr std::size_t slotCount = 2048;
  std::array<std::vector<Term>, slotCount> slots_;
};

const TermIndex& termIndex() {
  static const TermIndex index;
  return index;
}

/// True where a term may begin.
bool isBeginning(std::string_view text, std::size_t position) {
  if (isASCII(text[position])) {
    return isASCIILetterOrDigit(text[position]) ? !endsInLetter(text, position) : text[position] == '%';
  }
  return !isContinuationByte(text[position]);
}

}  // namespace

std::vector<FoundWord> wordsIn(std::string_view folded) {
  std::vector<FoundWord> words;
  std::size_t endOfOther = 0;
  for (std::size_t begin = 0; begin < folded.size(); ++begin) {
    if (begin < endOfOther || !isBeginning(folded, begin)) {
      continue;
    }
    for (const Term& term : termIndex().beginningAs(folded.substr(begin, 3))) {
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

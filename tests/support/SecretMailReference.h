#pragma once

/// The result of `SecretMailRule`, computed slowly and simply from the words and groups of the slow scan.

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Core/SecurityMail/SecretMailRule.h"
#include "Text/Text.h"
#include "support/SecretMailScanReference.h"

namespace tarnwell {

/// Compares every word with every group, action and object.
class ReferenceMail {
 public:
  explicit ReferenceMail(const SecretMailRule::Mail& mail)
      : text_(foldedForScanning(mail.subject.substr(0, 65536))) {
    endOfSubject_ = text_.size();
    text_ += '\n' + foldedForScanning(mail.text.substr(0, 65536));
    words_ = referenceWords(text_);
    sender_ = referenceWords(foldedForScanning(mail.from.substr(0, 65536)));
    groups_ = referenceGroups(text_);
  }

  std::vector<RiskSignal> signals() const {
    std::vector<RiskSignal> found;
    for (const char* location : {"subject", "from", "body"}) {
      if (const auto term = codeIn(location)) {
        found.push_back({"one_time_code", *term, location});
      }
    }
    for (const char* location : {"subject", "body"}) {
      for (const FoundWord& word : words_) {
        if (isIn(location, word.begin) && isLink(word)) {
          found.push_back({"account_link", std::string(word.term), location});
          break;
        }
      }
    }
    return found;
  }

 private:
  using Word = FoundWord;

  bool isIn(std::string_view location, std::size_t place) const {
    return location == (place < endOfSubject_ ? "subject" : "body");
  }

  /// True when a word with one of the roles begins inside the place, or at most so many bytes before or after
  /// it.
  bool isSaid(MailRoles roles, std::size_t begin, std::size_t end, std::size_t bytes) const {
    return std::ranges::any_of(words_, [&](const Word& word) {
      return word.is(roles) && word.begin + bytes >= begin && word.begin <= end + bytes;
    });
  }

  bool isSaidInHeader(MailRoles roles) const {
    const auto says = [&](const Word& word) { return word.is(roles); };
    return std::ranges::any_of(words_,
                               [&](const Word& word) { return says(word) && isIn("subject", word.begin); }) ||
           std::ranges::any_of(sender_, [&](const Word& word) { return word.is(roles & mail_role::signIn); });
  }

  std::optional<std::string> codeIn(std::string_view location) const {
    using namespace mail_role;
    if (location != "body") {
      for (const Word& word : location == "from" ? sender_ : words_) {
        if (word.is(codeName) && location == "from") {
          return std::string(word.term);
        }
        if (word.is(codeName) && location == "subject" && isIn("subject", word.begin) && !word.is(password) &&
            !isSaidInHeader(elsewhere) && !isOverInLatin(word)) {
          return std::string(word.term);
        }
      }
      if (location == "from") {
        return std::nullopt;
      }
    }
    for (const CodeGroup& group : groups_) {
      const auto term = isIn(location, group.begin) ? codeAt(group) : std::nullopt;
      if (term) {
        return term;
      }
    }
    for (const Word& word : words_) {
      const std::string_view after = std::string_view(text_).substr(word.end);
      if (isIn(location, word.begin) && word.is(codeName) && word.is(password) && isPasswordAfter(word)) {
        return std::string(word.term);
      }
      if (isIn(location, word.begin) && word.is(codeName) &&
          (isSaid(handOver, word.begin, word.end, 30) || after.starts_with(":") ||
           after.starts_with(" is ")) &&
          isSaid(shortLived | mistake, word.begin, word.end, 400)) {
        return std::string(word.term);
      }
    }
    return std::nullopt;
  }

  std::optional<std::string> codeAt(const CodeGroup& group) const {
    using namespace mail_role;
    const Word* best = nullptr;
    const Word* handing = nullptr;
    for (const Word& word : words_) {
      const bool isBefore = word.end <= group.begin;
      const std::size_t away = isBefore                  ? group.begin - word.end
                               : word.begin >= group.end ? word.begin - group.end
                                                         : 0;
      if (word.is(other) && isBefore && away <= 6) {
        return std::nullopt;
      }
      handing = word.is(handOver) && away <= 60 && word.begin + 280 >= group.begin ? &word : handing;
      const bool isIntroduced = isSaid(handOver, word.begin, word.end, 30);
      const bool reaches =
          (away <= 80 || (isBefore && isIntroduced && away <= 280)) && word.begin + 280 >= group.begin;
      if (reaches && (word.is(codeName) || (word.is(code) && (best == nullptr || !best->is(codeName))))) {
        best = &word;
      }
    }
    for (const Word& word : words_) {
      if (handing == nullptr && word.is(signsIn) && isIn("subject", word.begin) &&
          isIn("subject", group.begin)) {
        handing = &word;
      }
    }
    if (best == nullptr && handing == nullptr) {
      return std::nullopt;
    }
    int points = best == nullptr ? 0 : best->is(codeName) ? 3 : 1;
    const bool isTied = best != nullptr && best->end <= group.begin && group.begin - best->end <= 8 &&
                        isFoundByICU(std::string_view(text_).substr(best->end, group.begin - best->end),
                                     ":|=| is |は|「|【", LetterCase::matters);
    points +=
        handing != nullptr || isTied || (best != nullptr && isSaid(handOver, best->begin, best->end, 30)) ? 1
                                                                                                          : 0;
    points += isSaid(signIn, group.begin, group.end, 400) || isSaidInHeader(signIn) ? 1 : 0;
    constexpr MailRoles care = shortLived | secret | mistake;
    points += isSaid(care, group.begin, group.end, 400) || isSaidInHeader(care) ? 1 : 0;
    points += best != nullptr && isIn("subject", best->begin) && isIn("subject", group.begin) ? 1 : 0;
    points += text_.substr(group.begin, group.end - group.begin).find(' ') != std::string::npos ? 1 : 0;
    const bool isPassword = isTied && best->is(password);
    points -= !isPassword && isSaid(elsewhere, group.begin, group.end, 120) ? 3 : 0;
    return points >= 3 ? std::optional(std::string(best != nullptr ? best->term : handing->term))
                       : std::nullopt;
  }

  bool isOverInLatin(const Word& name) const {
    return std::ranges::any_of(words_, [&](const Word& over) {
      return over.is(mail_role::done) && static_cast<unsigned char>(over.term.front()) < 0x80 &&
             over.begin >= name.end && over.begin <= name.end + 21;
    });
  }

  bool isPasswordAfter(const Word& name) const {
    const std::string after = text_.substr(name.end, 60);
    const std::string tie = name.term.ends_with(" is")
                                ? "(?: is)?+(?:は)?+ ?+:?+ ?+(?:「)?+"
                                : "(?=(?: is)?+(?:は)?+ ?+:?+ ?+(?:「)?+(?<=is|は|:|「|is |は |: ))"
                                  "(?: is)?+(?:は)?+ ?+:?+ ?+(?:「)?+";
    return isFoundByICU(after, "\\A" + tie + "(?=[!-~]{6})[!-~]*[0-9]", LetterCase::matters);
  }

  bool isAdvised(std::size_t begin) const {
    return std::ranges::any_of(words_, [&](const Word& word) {
      return word.is(mail_role::advice) && word.begin + 100 >= begin && word.begin <= begin;
    });
  }

  bool isInAddress(std::size_t begin) const {
    const std::size_t start = begin - std::min<std::size_t>(begin, 120);
    return isFoundByICU(text_.substr(start, begin - start), "://[^ \\n]*\\z", LetterCase::matters);
  }

  bool isLink(const Word& word) const {
    using namespace mail_role;
    if (word.is(linkSubject) && isIn("subject", word.begin)) {
      return true;
    }
    if (word.is(signsIn) && !isInAddress(word.begin) && isSaid(press, word.begin, word.end, 200) &&
        (word.begin == 0 || isSaid(linkTerms, word.begin, word.end, 400))) {
      return true;
    }
    const CodeGroup link = word.is(linkName) ? CodeGroup{word.begin, word.end} : linkOf(word);
    if (link.end == 0 || std::ranges::any_of(words_, [&](const Word& over) {
          return over.is(done) && !isLike(text_.substr(over.begin, 1), "[A-Z]") && over.begin >= link.end &&
                 over.begin <= link.end + 21;
        })) {
      return false;
    }
    if ((word.is(resets) && isAdvised(link.begin)) ||
        isLike(text_.substr(link.end), "(?:の場合|場合|の方は|方は)(?s:.*)")) {
      return false;
    }
    const int points = 2 - (isSaid(elsewhere, link.begin, link.end, 120) ? 1 : 0) +
                       (isSaid(press, link.begin, link.end, 200) ? 1 : 0) + (isLabel(link) ? 1 : 0) +
                       (isIn("subject", link.begin) ? 1 : 0) +
                       (isSaid(shortLived | mistake, link.begin, link.end, 400) ? 1 : 0);
    return points >= 3;
  }

  /// The place of the action and its object. Both ends are 0 without an object.
  CodeGroup linkOf(const Word& action) const {
    using namespace mail_role;
    const MailRoles objects = (action.is(resets) ? password : 0) |
                              (action.is(confirms) ? account | registration : 0) |
                              (action.is(completes) ? registration : 0);
    for (const Word& word : words_) {
      if ((action.term.front() & 0x80) != 0) {
        if (word.is(objects) && word.end <= action.begin && action.begin - word.end <= 6) {
          return {word.begin, action.end};
        }
      } else if (word.begin >= action.end && word.begin <= action.end + 45 && word.is(objects | matter) &&
                 objects != 0) {
        const std::string between = text_.substr(action.end, word.begin - action.end);
        return word.is(matter) || between.find(". ") != std::string::npos ? CodeGroup{0, 0}
                                                                          : CodeGroup{action.begin, word.end};
      }
    }
    return {0, 0};
  }

  bool isLabel(const CodeGroup& link) const {
    const std::string label = text_.substr(link.begin, link.end - link.begin);
    const std::string after = text_.substr(link.end);
    if ((label.front() & 0x80) != 0) {
      return isFoundByICU(after, "\\Aする(?: |\\z)", LetterCase::matters);
    }
    return isLike(label, "(?s)[A-Z].* [A-Z][^ ]*") ||
           (isLike(label, "(?s)[A-Z].*") &&
            isFoundByICU(after, "\\A(?i: address)?+(?i: now)?+(?:\\z| [A-Z\\u0080-\\U0010FFFF])",
                         LetterCase::matters));
  }

  std::string text_;
  std::size_t endOfSubject_ = 0;
  std::vector<Word> words_;
  std::vector<Word> sender_;
  std::vector<CodeGroup> groups_;
};

inline std::vector<RiskSignal> referenceSignals(const SecretMailRule::Mail& mail) {
  return ReferenceMail(mail).signals();
}

}  // namespace tarnwell

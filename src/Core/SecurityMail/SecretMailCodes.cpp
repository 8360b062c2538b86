// Does a mail carry a one-time code? SecretMailRule.h lists the points.

#include <algorithm>

#include "Core/SecurityMail/SecretMailReading.h"

namespace tarnwell {

namespace {

using namespace mail_role;

// The largest distances at which things are still near, in bytes.
constexpr std::size_t besideCode = 80;  // a code word and its group
constexpr std::size_t introducedCode =
    280;                                  // the same, when the word is handed over: "the following code ..."
constexpr std::size_t besideWord = 30;    // a word of handing over and its code word
constexpr std::size_t aroundGroup = 60;   // a word of handing over and a group
constexpr std::size_t besideLabel = 6;    // "order no." and its number
constexpr std::size_t longestLabel = 60;  // longer than any term
constexpr std::size_t longestPassword = 60;  // with the words that tie it to its name
constexpr std::size_t nameToDone = 21;
constexpr std::size_t sameMatter = 120;  // other subjects of the mail
constexpr std::size_t sameMail = 400;    // words of signing in or of expiring

class CodeQuestion {
 public:
  explicit CodeQuestion(const SecretMailReading& mail) : mail_(mail) {}

  /// The word that shows the group to be a code.
  std::optional<std::string_view> wordTelling(const MailPlace& group) const {
    if (isLabelledOtherwise(group)) {
      return std::nullopt;
    }
    const FoundWord* best = nullptr;
    const FoundWord* handing = nullptr;
    int points = 0;
    for (const FoundWord& word : mail_.wordsAround(group, introducedCode, besideCode)) {
      if (word.is(handOver) && distance(placeOf(word), group) <= aroundGroup) {
        handing = &word;
      }
      const int pointsOfWord = word.is(codeName) ? enoughPoints : 1;
      if (word.is(codeName | code) && pointsOfWord >= points && reaches(word, group)) {
        best = &word;
        points = pointsOfWord;
      }
    }
    if (handing == nullptr && mail_.isInSubject(group.begin)) {
      handing = wordOfSigningInSubject();
    }
    if (best == nullptr && handing == nullptr) {
      return std::nullopt;
    }
    const bool isHandedOver =
        handing != nullptr || (best != nullptr && (isIntroduced(*best) || isTiedTo(*best, group)));
    const MailRoles roles = mail_.rolesAround(group, sameMail) | mail_.headerRoles();
    points += isHandedOver ? 1 : 0;
    points += (roles & signIn) != 0 ? 1 : 0;
    points += (roles & (shortLived | secret | mistake)) != 0 ? 1 : 0;
    points += best != nullptr && mail_.isInSubject(best->begin) && mail_.isInSubject(group.begin) ? 1 : 0;
    points += isSpaced(group) ? 1 : 0;
    const bool isPassword = best != nullptr && best->is(password) && isTiedTo(*best, group);
    points -= !isPassword && (mail_.rolesAround(group, sameMatter) & elsewhere) != 0 ? enoughPoints : 0;
    if (points < enoughPoints) {
      return std::nullopt;
    }
    return best != nullptr ? best->term : handing->term;
  }

  /// True for a name as in "recovery codes regenerated". Japanese words do not count here: they also say that
  /// a code was sent.
  bool isOver(const FoundWord& name) const {
    const std::span<const FoundWord> after = mail_.wordsAround({name.end, name.end}, 0, nameToDone);
    return std::ranges::any_of(
        after, [](const FoundWord& word) { return word.is(done) && (word.term.front() & 0x80) == 0; });
  }

  /// True when the mail hands over the code of this name although no group looks like a code. Such a code may
  /// have letters only.
  bool isCodeHandedOver(const FoundWord& name) const {
    const std::string_view after = mail_.text().substr(name.end);
    if (name.is(password) && isPasswordAfter(name)) {
      return true;
    }
    const bool isHandedOver = isIntroduced(name) || after.starts_with(':') || after.starts_with(" is ");
    return isHandedOver && (mail_.rolesAround(placeOf(name), sameMail) & (shortLived | mistake)) != 0;
  }

 private:
  /// True for "temporary password: tulip-Rk42", where a word with a digit follows.
  bool isPasswordAfter(const FoundWord& name) const {
    std::string_view after = mail_.text().substr(name.end, longestPassword);
    const auto passOver = [&after](std::string_view tie) {
      const bool isThere = after.starts_with(tie);
      after.remove_prefix(isThere ? tie.size() : 0);
      return isThere;
    };
    bool isTied = name.term.ends_with(" is");
    for (const std::string_view tie : {" is", "は", " ", ":", " ", "「"}) {
      isTied = (passOver(tie) && tie != " ") || isTied;
    }
    const auto end = std::ranges::find_if(after, [](char byte) { return byte <= ' ' || byte > '~'; });
    const std::string_view given(after.begin(), end);
    return isTied && given.size() >= 6 && given.find_first_of("0123456789") != std::string_view::npos;
  }

  /// The word in a subject such as "493021 - your Acme login".
  const FoundWord* wordOfSigningInSubject() const {
    const std::span<const FoundWord> words = mail_.wordsOfSubject();
    const auto found = std::ranges::find_if(words, [](const FoundWord& word) { return word.is(signsIn); });
    return found == words.end() ? nullptr : &*found;
  }

  /// True for "4 9 3 0 2 1" and "493 021".
  bool isSpaced(const MailPlace& group) const {
    return mail_.text().substr(group.begin, group.end - group.begin).find(' ') != std::string_view::npos;
  }

  bool isLabelledOtherwise(const MailPlace& group) const {
    const std::span<const FoundWord> before =
        mail_.wordsAround({group.begin, group.begin}, longestLabel + besideLabel, 0);
    return std::ranges::any_of(before, [&](const FoundWord& word) {
      return word.is(other) && word.end <= group.begin && group.begin - word.end <= besideLabel;
    });
  }

  /// True when the word is near enough to refer to the group.
  bool reaches(const FoundWord& word, const MailPlace& group) const {
    const std::size_t away = distance(placeOf(word), group);
    return away <= besideCode || (word.end <= group.begin && away <= introducedCode && isIntroduced(word));
  }

  /// True for "use the following code".
  bool isIntroduced(const FoundWord& word) const {
    return (mail_.rolesAround(placeOf(word), besideWord) & handOver) != 0;
  }

  /// True for "code: 493021" and "code is 493021".
  bool isTiedTo(const FoundWord& word, const MailPlace& group) const {
    constexpr std::size_t longest = 8;
    if (word.end > group.begin || group.begin - word.end > longest) {
      return false;
    }
    const std::string_view between = mail_.text().substr(word.end, group.begin - word.end);
    return std::ranges::any_of(std::initializer_list<std::string_view>{":", "=", " is ", "は", "「", "【"},
                               [between](std::string_view tie) { return between.find(tie) != between.npos; });
  }

  const SecretMailReading& mail_;
};

}  // namespace

std::optional<std::string_view> codeNameIn(std::span<const FoundWord> words) {
  const auto name = std::ranges::find_if(words, [](const FoundWord& word) { return word.is(codeName); });
  return name == words.end() ? std::nullopt : std::optional(name->term);
}

std::optional<std::string_view> wordTellingCode(const SecretMailReading& mail, MailLocation location) {
  const bool isSubject = location == MailLocation::subject;
  const CodeQuestion question(mail);
  if (isSubject && (mail.headerRoles() & elsewhere) == 0) {
    for (const FoundWord& word : mail.wordsOfSubject()) {
      if (word.is(codeName) && !word.is(password) && !question.isOver(word)) {
        return word.term;
      }
    }
  }
  for (const CodeGroup& group : mail.groups()) {
    if (mail.isInSubject(group.begin) == isSubject) {
      if (const auto term = question.wordTelling({group.begin, group.end})) {
        return term;
      }
    }
  }
  for (const FoundWord& word : isSubject ? mail.wordsOfSubject() : mail.wordsOfBody()) {
    if (word.is(codeName) && question.isCodeHandedOver(word)) {
      return word.term;
    }
  }
  return std::nullopt;
}

}  // namespace tarnwell

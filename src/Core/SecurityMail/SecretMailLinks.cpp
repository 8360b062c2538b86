// Does a mail carry a link that opens an account? SecretMailRule.h lists the points.

#include <algorithm>

#include "Core/SecurityMail/SecretMailReading.h"
#include "Text/ASCIICase.h"

namespace tarnwell {

namespace {

using namespace mail_role;

// The largest distances at which things are still near, in bytes.
constexpr std::size_t actionToObject = 45;
constexpr std::size_t objectToAction = 6;  // two Japanese characters: "のご"
constexpr std::size_t linkToPress = 200;
constexpr std::size_t linkToDone = 21;
constexpr std::size_t adviceToAction = 100;
constexpr std::size_t sameMatter = 120;  // other subjects of the mail
constexpr std::size_t sameMail = 400;    // words of expiring

bool isJapanese(std::string_view text) { return (text.front() & 0x80) != 0; }

MailRoles objectsOf(const FoundWord& action) {
  MailRoles objects = action.is(resets) ? password : 0;
  objects |= action.is(confirms) ? account | registration : 0;
  objects |= action.is(completes) ? registration : 0;
  return objects;
}

class LinkQuestion {
 public:
  explicit LinkQuestion(const SecretMailReading& mail) : mail_(mail) {}

  bool isTold(const FoundWord& word) const {
    if (word.is(linkSubject) && mail_.isInSubject(word.begin)) {
      return true;
    }
    if (word.is(signsIn) && !isInAddress(word) && isSignInLink(word)) {
      return true;
    }
    const std::optional<MailPlace> link = word.is(linkName) ? placeOf(word) : actionOnObject(word);
    return link && !isOver(*link) && !(word.is(resets) && isAdvised(*link)) && !isCondition(*link) &&
           points(*link) >= enoughPoints;
  }

 private:
  /// True for "https://example.org/login/join". On some sites every address has the word.
  bool isInAddress(const FoundWord& word) const {
    constexpr std::size_t longestStart = 120;  // how far back the start of an address is searched
    const std::string_view before = mail_.text().substr(word.begin - std::min(word.begin, longestStart),
                                                        std::min(word.begin, longestStart));
    return before.substr(before.find_last_of(" \n") + 1).find("://") != std::string_view::npos;
  }

  bool isSignInLink(const FoundWord& word) const {
    return (mail_.rolesAround(placeOf(word), linkToPress) & press) != 0 &&
           (word.begin == 0 || (mail_.rolesAround(placeOf(word), sameMail) & linkTerms) != 0);
  }

  /// True for "if this wasn't you, change your password".
  bool isAdvised(const MailPlace& link) const {
    const std::span<const FoundWord> before = mail_.wordsAround({link.begin, link.begin}, adviceToAction, 0);
    return std::ranges::any_of(before, [](const FoundWord& word) { return word.is(advice); });
  }

  /// True for "パスワードをお忘れの場合", which speaks to those who forgot it.
  bool isCondition(const MailPlace& link) const {
    const std::string_view after = mail_.text().substr(link.end);
    return std::ranges::any_of(std::initializer_list<std::string_view>{"の場合", "場合", "の方は", "方は"},
                               [after](std::string_view condition) { return after.starts_with(condition); });
  }

  /// The place of the action and its object. Absent when the word is no action or has no object near.
  std::optional<MailPlace> actionOnObject(const FoundWord& action) const {
    const MailRoles objects = objectsOf(action);
    if (objects == 0) {
      return std::nullopt;
    }
    return isJapanese(action.term) ? objectBefore(action, objects) : objectAfter(action, objects);
  }

  std::optional<MailPlace> objectBefore(const FoundWord& action, MailRoles objects) const {
    for (const FoundWord& word : mail_.wordsAround({action.begin, action.begin}, actionToObject, 0)) {
      if (word.is(objects) && word.end <= action.begin && action.begin - word.end <= objectToAction) {
        return MailPlace{word.begin, action.end};
      }
    }
    return std::nullopt;
  }

  std::optional<MailPlace> objectAfter(const FoundWord& action, MailRoles objects) const {
    for (const FoundWord& word : mail_.wordsAround({action.end, action.end}, 0, actionToObject)) {
      const std::string_view between = mail_.text().substr(action.end, word.begin - action.end);
      if (word.is(matter) || between.find(". ") != std::string_view::npos) {
        return std::nullopt;
      }
      if (word.is(objects)) {
        return MailPlace{action.begin, word.end};
      }
    }
    return std::nullopt;
  }

  int points(const MailPlace& link) const {
    int points = 2;
    points += (mail_.rolesAround(link, linkToPress) & press) != 0 ? 1 : 0;
    points += isLabel(link) ? 1 : 0;
    points += mail_.isInSubject(link.begin) ? 1 : 0;
    points += (mail_.rolesAround(link, sameMail) & (shortLived | mistake)) != 0 ? 1 : 0;
    points -= (mail_.rolesAround(link, sameMatter) & elsewhere) != 0 ? 1 : 0;
    return points;
  }

  bool isOver(const MailPlace& link) const {
    const std::span<const FoundWord> after = mail_.wordsAround({link.end, link.end}, 0, linkToDone);
    return std::ranges::any_of(after, [&](const FoundWord& word) {
      return word.is(done) && !isASCIICapital(mail_.text()[word.begin]);
    });
  }

  /// True when the text looks like the label of a button: "Confirm email", "Verify Your Account", "Reset your
  /// password Or copy ...", "アカウントを有効化する".
  bool isLabel(const MailPlace& link) const {
    const std::string_view label = mail_.text().substr(link.begin, link.end - link.begin);
    std::string_view after = mail_.text().substr(link.end);
    if (isJapanese(label)) {
      constexpr std::string_view todo = "する";
      return after.starts_with(todo) && (after.size() == todo.size() || after[todo.size()] == ' ');
    }
    if (!isASCIICapital(label.front())) {
      return false;
    }
    const std::size_t lastBlank = label.rfind(' ');
    if (lastBlank != std::string_view::npos && isASCIICapital(label[lastBlank + 1])) {
      return true;
    }
    for (const std::string_view more : {" address", " now"}) {
      after.remove_prefix(startsWithIgnoringASCIICase(after, more) ? more.size() : 0);
    }
    return after.empty() ||
           (after.size() > 1 && after[0] == ' ' && (isASCIICapital(after[1]) || isJapanese(after.substr(1))));
  }

  const SecretMailReading& mail_;
};

}  // namespace

std::optional<std::string_view> wordTellingLink(const SecretMailReading& mail, MailLocation location) {
  const LinkQuestion question(mail);
  for (const FoundWord& word :
       location == MailLocation::subject ? mail.wordsOfSubject() : mail.wordsOfBody()) {
    if (question.isTold(word)) {
      return word.term;
    }
  }
  return std::nullopt;
}

}  // namespace tarnwell

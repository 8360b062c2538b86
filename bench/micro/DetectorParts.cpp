#include <string_view>

#include "Core/SecurityMail/EmailRiskDetector.h"
#include "Core/SecurityMail/SecretMailRule.h"
#include "MailInputs.h"
#include "Parts.h"
#include "Text/Text.h"

namespace tarnwell::bench {

namespace {

void addBody(std::vector<Part>& parts, const std::string& name, const std::string& text) {
  constexpr std::size_t length = 800;
  const std::string body(characterPrefix(text, length));
  parts.push_back(
      {.name = "detector, 800 characters, " + name,
       .bytes = body.size(),
       .goal = {.microseconds = 40},
       .work = [body] { return EmailRiskDetector::shared().assess({.bodyPrefix = body}).signals.size(); }});
}

void addSecretMail(std::vector<Part>& parts, const std::string& name, const std::string& text) {
  constexpr std::size_t length = 4'000;
  const std::string body(characterPrefix(text, length));
  parts.push_back(
      {.name = "secret mail, 4,000 characters, " + name,
       .bytes = body.size(),
       .goal = {.microseconds = 50},
       .work = [body] { return SecretMailRule::signals({.subject = "Hello", .text = body}).size(); }});
}

}  // namespace

void addDetectorParts(std::vector<Part>& parts) {
  constexpr std::size_t enough = 20'000;
  addBody(parts, "Latin", prose(Script::latin, enough));
  addBody(parts, "Japanese", prose(Script::japanese, enough));
  addBody(parts, "Latin with emoji", prose(Script::latinWithEmoji, enough));
  addBody(parts, "beginnings of English keywords",
          repeated("verification cod, security cold, sign-in cope, one-time passwort. ", enough));
  addBody(parts, "beginnings of Japanese keywords",
          repeated("認証コート、確認コー、パスワードの再設、", enough));
  addBody(parts, "acronyms inside of words", repeated("hotpot 2fast ", enough));
  addBody(parts, "acronyms inside of Japanese words", repeated("本日のOTPは2FAの", enough));
  addSecretMail(parts, "Latin", prose(Script::latin, enough));
  addSecretMail(parts, "Japanese", prose(Script::japanese, enough));
  addSecretMail(parts, "Japanese with full-width digits",
                repeated("お問い合わせは１２３まで。会議は十時に始まります。", enough));
  addSecretMail(parts, "Latin with emoji", prose(Script::latinWithEmoji, enough));
  addSecretMail(parts, "numbers", repeated("order 493021, room 4930; ", enough));
  addSecretMail(parts, "words that tell nothing alone",
                repeated("Enter the order code at the door, confirm by phone. ", enough));
}

}  // namespace tarnwell::bench

#include <string_view>

#include "Core/EmailRiskDetector.h"
#include "MailInputs.h"
#include "Parts.h"
#include "Platform/Text.h"

namespace tarnwell::bench {

namespace {

void addBody(std::vector<Part>& parts, const std::string& name, const std::string& text) {
  constexpr std::size_t length = 800;
  const std::string body(characterPrefix(text, length));
  parts.push_back(
      {.name = "detector, 800 characters, " + name,
       .bytes = body.size(),
       .goal = {.microseconds = 10},
       .work = [body] { return EmailRiskDetector::shared().assess({.bodyPrefix = body}).signals.size(); }});
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
}

}  // namespace tarnwell::bench

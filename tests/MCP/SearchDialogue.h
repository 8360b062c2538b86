#pragma once

#include <string>

#include "MCP/Tools/FakeMail.h"
#include "support/SessionScript.h"

namespace tarnwell::test {

/// A search that finds the messages 1 to `count`.
inline Dialogue search(std::uint32_t count) {
  SessionScript script;
  std::string uids;
  std::string set;
  std::string summaries;
  for (std::uint32_t uid = 1; uid <= count; ++uid) {
    uids += " " + std::to_string(uid);
    set = std::to_string(uid) + (set.empty() ? "" : ",") + set;
    summaries += FakeMail{.uid = uid}.summary();
  }
  script.command("UID SEARCH ALL", "* SEARCH" + uids + "\r\n");
  script.command("UID FETCH " + set + " (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)", summaries);
  std::string commands;
  Dialogue answers;
  for (std::uint32_t uid = count; uid > 0; --uid) {
    const FakeMail mail{.uid = uid};
    const std::string number = std::to_string(6 + count - uid);
    const std::string tag = "A" + std::string(4 - number.size(), '0') + number;
    commands += tag + " " + mail.fetchBody() + "\r\n";
    answers.push_back(answer(mail.bodyPart() + tag + " OK done\r\n"));
  }
  const std::string number = std::to_string(6 + count);
  const std::string tag = "A" + std::string(4 - number.size(), '0') + number;
  return script.dialogue() + Dialogue{expect(commands)} + answers +
         Dialogue{expect(tag + " LOGOUT\r\n"), answer("* BYE\r\n" + tag + " OK done\r\n")};
}

}  // namespace tarnwell::test

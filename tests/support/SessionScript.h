#pragma once

#include <string>

#include "support/FakeIMAPServer.h"

namespace tarnwell::test {

/// Writes the dialogue of one session, beginning with the login, and numbers the tags.
///
///     serve(SessionScript("SELECT INBOX").command("UID STORE 7 +FLAGS (\\Seen)").withLogout());
class SessionScript {
 public:
  explicit SessionScript(const std::string& select = "EXAMINE INBOX") : dialogue_(loginDialogue(select)) {}

  /// Expects the command and answers it: first the untagged lines unchanged, then the completion.
  SessionScript& command(const std::string& text, const std::string& untagged = "",
                         const std::string& completion = "OK done") {
    const std::string tag = nextTag();
    dialogue_.push_back(expect(tag + " " + text + "\r\n"));
    dialogue_.push_back(answer(untagged + tag + " " + completion + "\r\n"));
    return *this;
  }

  /// The dialogue so far, without an end.
  const Dialogue& dialogue() const { return dialogue_; }

  /// The dialogue with LOGOUT at its end.
  Dialogue withLogout() {
    command("LOGOUT", "* BYE\r\n");
    return dialogue_;
  }

 private:
  std::string nextTag() {
    const std::string number = std::to_string(++tagNumber_);
    return "A" + std::string(4 - number.size(), '0') + number;
  }

  Dialogue dialogue_;
  /// LOGIN, CAPABILITY and the selection have the tags before.
  unsigned tagNumber_ = 3;
};

}  // namespace tarnwell::test

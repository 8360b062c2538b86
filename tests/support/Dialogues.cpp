#include "support/FakeIMAPServer.h"

namespace tarnwell::test {

Dialogue loginDialogue(const std::string& select) {
  return {
      answer("* OK ready\r\n"),
      expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
      answer("A0001 OK logged in\r\n"),
      expect("A0002 CAPABILITY\r\n"),
      answer("* CAPABILITY IMAP4rev1 UIDPLUS MOVE\r\nA0002 OK done\r\n"),
      expect("A0003 " + select + "\r\n"),
      answer("A0003 OK selected\r\n"),
  };
}

Dialogue operator+(Dialogue first, const Dialogue& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

std::string expectedBytes(const Dialogue& dialogue) {
  std::string bytes;
  for (const Step& step : dialogue) {
    bytes += step.kind == Step::Kind::expect ? step.bytes : "";
  }
  return bytes;
}

}  // namespace tarnwell::test

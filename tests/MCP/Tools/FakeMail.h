#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "MCP/JSON/JSONValue.h"

namespace tarnwell::test {

/// One mail of a fake mailbox, with the server's answers about it.
struct FakeMail {
  std::uint32_t uid = 9;
  /// The server sends NIL for an absent subject or body.
  std::optional<std::string> subject = "Tea at four";
  std::optional<std::string> body = "Hello";
  /// Address lists and body structure in the wire form.
  std::string from = R"((("Al" NIL "al" "example.org")))";
  std::string to = "NIL";
  std::string cc = "NIL";
  std::string flags = "";
  std::string structure = R"(("text" "plain" ("charset" "utf-8") NIL NIL "8bit" 1 1))";
  std::string section = "1";

  static constexpr const char* date = "Mon, 3 Jun 2024 10:00:00 +0000";

  static std::string literal(const std::string& bytes) {
    return "{" + std::to_string(bytes.size()) + "}\r\n" + bytes;
  }

  std::string fetchSummary() const {
    return "UID FETCH " + std::to_string(uid) + " (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)";
  }
  std::string summary() const {
    return "* 1 FETCH (UID " + std::to_string(uid) + " FLAGS (" + flags + ") ENVELOPE (\"" + date + "\" " +
           (subject ? literal(*subject) : "NIL") + " " + from + " NIL NIL " + to + " " + cc +
           " NIL NIL \"<x@example.org>\") BODYSTRUCTURE " + structure + ")\r\n";
  }

  std::string fetchBody() const {
    return "UID FETCH " + std::to_string(uid) + " (BODY.PEEK[" + section + "])";
  }
  std::string bodyPart() const {
    return "* 1 FETCH (UID " + std::to_string(uid) + " BODY[" + section + "] " +
           (body ? literal(*body) : "NIL") + ")\r\n";
  }
};

}  // namespace tarnwell::test

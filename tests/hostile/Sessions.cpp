#include "hostile/Sessions.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace tarnwell::test {

namespace {

constexpr const char* folderLines =
    "* LIST () \"/\" INBOX\r\n"
    "* LIST () \"/\" Archive\r\n"
    "* LIST (\\Trash) \"/\" \"Deleted Messages\"\r\n";

constexpr const char* bodyLine = "* 1 FETCH (UID 7 BODY[1] {12}\r\nSee you at 1)\r\n";

std::string taggedOK(const std::string& tag) { return tag + " OK done\r\n"; }

void readMessage(Session& session) {
  session.then("FETCH", "UID FETCH 7 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)", summaryLine());
}

Session upToMove() {
  return Session("move_message", {{"uid", 7}, {"targetFolder", "Archive"}}, "SELECT")
      .then("LIST", "LIST \"\" \"*\"", folderLines)
      .then("MOVE", "UID MOVE 7 \"Archive\"");
}

void readBody(Session& session) { session.then("BODY", "UID FETCH 7 (BODY.PEEK[1])", bodyLine); }

}  // namespace

std::string summaryLine() {
  return "* 1 FETCH (UID 7 FLAGS (\\Recent) INTERNALDATE \"01-Feb-2024 10:00:00 +0000\" ENVELOPE "
         "(\"Thu, 1 Feb 2024 10:00:00 +0000\" \"Lunch\" ((\"Ann\" NIL \"ann\" \"example.org\")) NIL NIL NIL "
         "NIL "
         "NIL NIL \"<1@example.org>\") BODYSTRUCTURE (\"TEXT\" \"PLAIN\" (\"CHARSET\" \"UTF-8\") NIL NIL "
         "\"7BIT\" 12 1))\r\n";
}

Session::Session(std::string toolName, JSONObject toolArguments, const std::string& select)
    : tool(std::move(toolName)), arguments(std::move(toolArguments)) {
  exchanges.push_back({"greeting", "", "", "* OK ready\r\n"});
  then("LOGIN", "LOGIN \"user@example.org\" \"app-pass-word\"");
  then("CAPABILITY", "CAPABILITY", "* CAPABILITY IMAP4rev1 UIDPLUS MOVE\r\n");
  then(select, select + " INBOX");
  exchanges[position("CAPABILITY")].command += std::exchange(exchanges.back().command, "");
}

std::string Session::tag(std::size_t number) const {
  std::string digits = std::to_string(number);
  return "A" + std::string(4 - std::min<std::size_t>(digits.size(), 4), '0') + digits;
}

Session& Session::then(const std::string& name, const std::string& command, const std::string& untagged) {
  const std::string ownTag = tag(++commands_);
  exchanges.push_back({name, ownTag, ownTag + " " + command + "\r\n", untagged + taggedOK(ownTag)});
  return *this;
}

Session& Session::thenLiteral(const std::string& name, const std::string& piece) {
  const bool isBegin = piece.starts_with("UID ");
  const std::string begin = isBegin ? tag(++commands_) + " " : "";
  exchanges.push_back({name, tag(commands_), begin + piece + "\r\n", "+ go\r\n"});
  return *this;
}

Session& Session::thenRest(const std::string& name, const std::string& rest, const std::string& untagged) {
  exchanges.push_back({name, tag(commands_), rest + "\r\n", untagged + taggedOK(tag(commands_))});
  return *this;
}

Session Session::answering(const std::string& name, const std::string& answer) const {
  Session changed = *this;
  Exchange& exchange = changed.exchanges[position(name)];
  exchange.answer = answer;
  for (std::size_t mark = 0; (mark = exchange.answer.find("TAG", mark)) != std::string::npos;) {
    exchange.answer.replace(mark, 3, exchange.tag);
  }
  return changed;
}

Session Session::leavingAfter(std::string_view name) const {
  Session changed = *this;
  std::size_t kept = position(name) + 1;
  while (kept < exchanges.size() && exchanges[kept].command.empty()) {
    ++kept;
  }
  changed.exchanges.resize(kept);
  changed.commands_ = static_cast<unsigned>(std::stoi(changed.exchanges.back().tag.substr(1)));
  return changed.then("LOGOUT", "LOGOUT");
}

std::size_t Session::position(std::string_view name) const {
  const auto found = std::ranges::find(exchanges, name, &Exchange::name);
  if (found == exchanges.end()) {
    throw std::logic_error("the session has no exchange of that name");
  }
  return static_cast<std::size_t>(found - exchanges.begin());
}

Dialogue honest(const Session& session) {
  Dialogue dialogue;
  for (const Exchange& exchange : session.exchanges) {
    dialogue.push_back(expect(exchange.command));
    dialogue.push_back(answer(exchange.answer));
  }
  return dialogue;
}

Dialogue answeredBy(const Session& session, std::string_view name, const Dialogue& steps) {
  Dialogue dialogue = honest(session);
  const auto place = dialogue.begin() + static_cast<std::ptrdiff_t>(2 * session.position(name) + 1);
  dialogue.insert(dialogue.erase(place), steps.begin(), steps.end());
  return dialogue;
}

Dialogue brokenAt(const Session& session, std::size_t position, const Step& fault,
                  const std::string& answerBegin) {
  Dialogue dialogue = honest(session);
  dialogue.resize(2 * position + 1, closeHere());
  dialogue.push_back(answer(answerBegin));
  dialogue.push_back(fault);
  return dialogue;
}

ServerAttack attackDuring(const Session& session, std::string name, std::string attack, std::string outcome) {
  return attackDuring(session, honest(session), std::move(name), std::move(attack), std::move(outcome));
}

ServerAttack attackDuring(const Session& session, Dialogue dialogue, std::string name, std::string attack,
                          std::string outcome) {
  return {.name = std::move(name),
          .attack = std::move(attack),
          .outcome = std::move(outcome),
          .tool = session.tool,
          .arguments = session.arguments,
          .dialogue = std::move(dialogue),
          .isFallbackAllowed = session.isFallbackAllowed};
}

Session listSession() {
  return Session("list_folders", {}).then("LIST", "LIST \"\" \"*\"", folderLines).then("LOGOUT", "LOGOUT");
}

Session searchSession() {
  Session session("search_inbox", {{"from", "a"}, {"subject", "b"}, {"query", "lunch"}});
  session.thenLiteral("FROM", "UID SEARCH FROM {1}")
      .thenLiteral("SUBJECT", "a SUBJECT {1}")
      .thenLiteral("TEXT", "b TEXT {5}")
      .thenRest("SEARCH", "lunch", "* SEARCH 7\r\n");
  readMessage(session);
  readBody(session);
  return session.then("LOGOUT", "LOGOUT");
}

Session summarySession() {
  Session session("get_message_summary", {{"uid", 7}});
  readMessage(session);
  readBody(session);
  return session.then("LOGOUT", "LOGOUT");
}

Session bodySession() {
  Session session = summarySession();
  session.tool = "get_message_body";
  return session;
}

Session cleanupSession() {
  Session session("propose_inbox_cleanup", {});
  session.then("SEARCH", "UID SEARCH ALL", "* SEARCH 7\r\n");
  readMessage(session);
  readBody(session);
  return session.then("LOGOUT", "LOGOUT");
}

Session moveSession() { return upToMove().then("LOGOUT", "LOGOUT"); }

Session fallbackSession() {
  Session session = upToMove().answering("MOVE", "TAG NO cannot\r\n");
  session.isFallbackAllowed = true;
  return session.then("COPY", "UID COPY 7 \"Archive\"")
      .then("STORE", "UID STORE 7 +FLAGS (\\Deleted)")
      .then("LOGOUT", "LOGOUT");
}

Session markReadSession() {
  Session session("mark_as_read", {{"uid", 7}}, "SELECT");
  readMessage(session);
  return session.then("STORE", "UID STORE 7 +FLAGS (\\Seen)").then("LOGOUT", "LOGOUT");
}

Session trashSession() {
  return Session("trash_message", {{"uid", 7}}, "SELECT")
      .then("LIST", "LIST \"\" \"*\"", folderLines)
      .then("MOVE", "UID MOVE 7 \"Deleted Messages\"")
      .then("LOGOUT", "LOGOUT");
}

std::vector<SessionStep> everyStep() {
  std::vector<SessionStep> steps;
  for (const Session& session : {listSession(), searchSession(), summarySession(), bodySession(),
                                 cleanupSession(), moveSession(), markReadSession(), trashSession()}) {
    for (std::size_t position = 0; position < session.exchanges.size(); ++position) {
      steps.push_back({session, position});
    }
  }
  const Session fallback = fallbackSession();
  for (std::size_t position = fallback.position("MOVE"); position < fallback.exchanges.size(); ++position) {
    steps.push_back({fallback, position});
  }
  return steps;
}

}  // namespace tarnwell::test

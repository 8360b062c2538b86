/// Searches for the password where it must not be: in logs, results and standard streams, and in the memory
/// of the program after a call.

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "Core/BridgeConstants.h"
#include "hostile/Launchers.h"
#include "hostile/MemoryScan.h"
#include "hostile/ServerAttack.h"
#include "hostile/TestSecrets.h"
#include "support/DatagramSocket.h"

namespace tarnwell::test {

namespace {

/// It has a quote and a backslash, so it is another text on the wire. It occurs nowhere else by chance.
constexpr const char* password = "Zq7#vK\"9x\\Wm2pLr8t-Yb4";
constexpr const char* passwordOnTheWire = "Zq7#vK\\\"9x\\\\Wm2pLr8t-Yb4";

/// All pieces of eight bytes.
std::set<std::string> pieces(std::string_view whole) {
  constexpr std::size_t pieceLength = 8;
  std::set<std::string> result;
  for (std::size_t at = 0; at + pieceLength <= whole.size(); ++at) {
    result.emplace(whole.substr(at, pieceLength));
  }
  return result;
}

/// The texts that only the LOGIN line has.
std::set<std::string> wireTraces() {
  std::set<std::string> result = pieces(passwordOnTheWire);
  for (const std::string& piece : pieces(password)) {
    result.erase(piece);
  }
  return result;
}

/// The password itself, and in the form that is sent.
std::set<std::string> traces() {
  std::set<std::string> result = pieces(passwordOnTheWire);
  result.merge(pieces(password));
  return result;
}

Dialogue loginWith(const std::string& answerToLogin) {
  return {answer("* OK ready\r\n"),
          expect("A0001 LOGIN \"" + std::string(testEmail) + "\" \"" + passwordOnTheWire + "\"\r\n"),
          pauseHere(), answer(answerToLogin)};
}

/// A session on the inbox up to its selection. After that the server sends nothing secret.
Dialogue openInbox(const std::string& selection) {
  return loginWith("A0001 OK logged in\r\n") +
         Dialogue{expect("A0002 CAPABILITY\r\n"), answer("* CAPABILITY IMAP4rev1\r\nA0002 OK done\r\n"),
                  expect("A0003 " + selection + " INBOX\r\n"), answer("A0003 OK selected\r\n")};
}

Dialogue farewell(const std::string& tag) {
  return {expect(tag + " LOGOUT\r\n"), answer(tag + " OK bye\r\n")};
}

Dialogue command(const std::string& line, const std::string& answerToIt) {
  return Dialogue{expect("A0004 " + line + "\r\n"), answer(answerToIt)} + farewell("A0005");
}

/// The folders, and the move of a message to one of them.
Dialogue moving(const std::string& target, const std::string& folders) {
  return Dialogue{expect("A0004 LIST \"\" \"*\"\r\n"), answer(folders),
                  expect("A0005 UID MOVE 7 \"" + target + "\"\r\n"), answer("A0005 OK moved\r\n")} +
         farewell("A0006");
}

constexpr const char* fetchOfSeven = "UID FETCH 7 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)";

struct Session {
  const char* tool;
  JSONObject arguments;
  Dialogue dialogue;
};

/// One session of every tool that opens one, and sessions that fail at the login or after it.
std::vector<Session> sessions() {
  const JSONObject seven{{"uid", 7}};
  const JSONObject really{{"uid", 7}, {"targetFolder", "Archive"}, {"dryRun", false}};
  const Dialogue examined = openInbox("EXAMINE");
  const Dialogue selected = openInbox("SELECT");
  const std::string done = "A0004 OK done\r\n";
  const std::string folders = "* LIST () \"/\" Archive\r\n* LIST (\\Trash) \"/\" Bin\r\n" + done;
  return {
      {"list_folders", {}, examined + command("LIST \"\" \"*\"", done)},
      {"search_inbox", {}, examined + command("UID SEARCH ALL", done)},
      {"propose_inbox_cleanup", {}, examined + command("UID SEARCH ALL", done)},
      {"get_message_summary", seven, examined + command(fetchOfSeven, done)},
      {"get_message_body", seven, examined + command(fetchOfSeven, done)},
      {"mark_as_read", really, selected + command(fetchOfSeven, done)},
      {"move_message", really, selected + moving("Archive", folders)},
      {"trash_message", really, selected + moving("Bin", folders)},
      {"list_folders", {}, loginWith("A0001 NO no such user or password\r\n") + farewell("A0002")},
      {"list_folders", {}, loginWith("") + Dialogue{closeHere()}},
      {"list_folders", {}, examined + Dialogue{expect("A0004 LIST \"\" \"*\"\r\n"), resetHere()}},
  };
}

/// A refused login. The refusal repeats the password.
Session indiscreetServer() {
  const std::string refusal = "A0001 NO [ALERT] no such user or password: ";
  return {"list_folders", {}, loginWith(refusal + password + "\r\n") + farewell("A0002")};
}

/// A refused command. The refusal repeats the login.
Session gossipingServer() {
  const std::string refusal =
      std::string("A0003 NO for ") + testEmail + " " + password + ", as in \"" + passwordOnTheWire + "\"\r\n";
  return {"list_folders",
          {},
          loginWith("A0001 OK logged in\r\n") +
              Dialogue{expect("A0002 CAPABILITY\r\n"), answer("A0002 OK done\r\n"),
                       expect("A0003 EXAMINE INBOX\r\n"), answer(refusal)} +
              farewell("A0004")};
}

/// A program whose password is in a keyring.
class PasswordTest {
 public:
  explicit PasswordTest(const std::string& busAddress, const Launcher& launcher = {}) {
    home_.environment["DBUS_SESSION_BUS_ADDRESS"] = busAddress;
    home_.launcher = launcher;
    program_.emplace(home_);
  }

  Home& home() { return home_; }
  ServeProgram& program() { return *program_; }

  /// Plays a session and returns the result. Calls `during` before the server has answered the login.
  JSONValue play(const Session& session, const std::function<void()>& during = [] {}) {
    FakeIMAPServer server(session.dialogue);
    home_.useServer(server.port());
    program_->sendCall(session.tool, session.arguments);
    EXPECT_TRUE(server.awaitPause()) << session.tool;
    during();
    server.resume();
    const JSONValue result = program_->readAnswer().result;
    EXPECT_EQ(server.mismatch(), "") << session.tool << ": " << result.serialized();
    return result;
  }

 private:
  Home home_;
  std::optional<ServeProgram> program_;
};

/// Searches twice. During the login the password must be found, which shows that the search works. After the
/// call nothing of it may be found.
void lookIntoMemory(const std::string& busAddress) {
  PasswordTest test(busAddress);
  const ProcessView& process = test.program().view();
  int number = 0;
  for (const Session& session : sessions()) {
    SCOPED_TRACE("session " + std::to_string(++number) + ", " + session.tool);
    test.play(session, [&] {
      EXPECT_FALSE(findInMemory(process, pieces(password)).empty());
      EXPECT_FALSE(findInMemory(process, wireTraces()).empty());
    });
    EXPECT_EQ(findInMemory(process, traces()), std::vector<std::string>());
  }
  EXPECT_EQ(test.program().call("get_status").result["configured"], JSONValue(true));
  EXPECT_EQ(findInMemory(process, traces()), std::vector<std::string>());
  EXPECT_TRUE(test.program().answersPing());
  expectQuietEnd(test.program());
}

void lookIntoMemoryOverAKeyring() {
  PrivateKeyring keyring;
  keyring.storeByTool({"service", std::string(BridgeConstants::keychainService), "account", testEmail},
                      password);
  lookIntoMemory(keyring.bus().address());
}

/// Here the message from the bus contains the password unencrypted.
void lookIntoMemoryOverAPlainService() {
  PrivateBus bus;
  FakeSecretService service(bus, passwordAnswers(password));
  lookIntoMemory(bus.address());
}

/// All entries that reached the journal.
std::string entriesOf(const DatagramSocket& journal) {
  std::string all;
  while (const std::optional<std::string> datagram = journal.receive()) {
    all += *datagram;
  }
  return all;
}

void lookIntoLogsAndResults() {
  PrivateBus bus;
  FakeSecretService service(bus, passwordAnswers(password));
  const TemporaryDirectory directory;
  const DatagramSocket journal(directory / "socket");
  const std::string place = "/run/systemd/journal";
  PasswordTest test(bus.address(),
                    inMountNamespace("mount -t tmpfs tmpfs /run; mkdir -p " + place + "; mount --bind '" +
                                     directory.path().string() + "' " + place));
  std::string said = test.program().request("initialize", JSONObject{}).serialized();
  said += test.program().call("get_status").result.serialized();
  std::string logged = entriesOf(journal);
  std::vector<Session> all = sessions();
  all.push_back(indiscreetServer());
  all.push_back(gossipingServer());
  for (const Session& session : all) {
    said += test.play(session).serialized();
    logged += entriesOf(journal);
  }
  const Ending ending = test.program().end();
  logged += entriesOf(journal);
  EXPECT_EQ(ending, Ending{});

  EXPECT_NE(logged.find("tool call: mark_as_read"), std::string::npos) << logged;
  EXPECT_NE(logged.find("Authenticated to IMAP for us***@example.org"), std::string::npos) << logged;
  EXPECT_NE(logged.find("Authentication failed."), std::string::npos) << logged;
  EXPECT_NE(said.find("Authentication failed."), std::string::npos) << said;
  EXPECT_NE(logged.find("IMAP EXAMINE failed: for us***@example.org ***, as in \"***\""), std::string::npos)
      << logged;
  EXPECT_EQ(logged.find(testEmail), std::string::npos) << logged;
  for (const std::string& trace : traces()) {
    EXPECT_EQ(logged.find(trace), std::string::npos) << trace << ": " << logged;
    EXPECT_EQ(said.find(trace), std::string::npos) << trace << ": " << said;
  }
}

}  // namespace

std::vector<Attack> passwordAttacks() {
  return {
      {"inLogsAndResults",
       "every log entry, result and stream is read, over every tool and over logins that fail",
       "the password is in none, not even when the server repeats it", lookIntoLogsAndResults},
      {"inMemoryOverAKeyring", "the writable memory of the program is searched after each call",
       "finds neither the password nor eight bytes of it", lookIntoMemoryOverAKeyring},
      {"inMemoryOverAPlainService", "the same over a secret service that does not encrypt what it sends",
       "finds neither the password nor eight bytes of it", lookIntoMemoryOverAPlainService},
  };
}

}  // namespace tarnwell::test

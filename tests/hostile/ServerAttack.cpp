#include "hostile/ServerAttack.h"

#include <gtest/gtest.h>

#include <memory>

#include "hostile/TestSecrets.h"

namespace tarnwell::test {

namespace {

std::string withPort(std::string text, std::uint16_t port) {
  if (const std::size_t mark = text.find("PORT"); mark != std::string::npos) {
    text.replace(mark, 4, std::to_string(port));
  }
  return text;
}

/// A login, one folder, a farewell.
Dialogue honestDialogue() {
  return loginDialogue() + Dialogue{
                               expect("A0004 LIST \"\" \"*\"\r\n"),
                               answer("* LIST () \"/\" INBOX\r\nA0004 OK done\r\n"),
                               expect("A0005 LOGOUT\r\n"),
                               answer("A0005 OK bye\r\n"),
                           };
}

/// All that the client may have said by the end of the dialogue.
std::string expectedBytes(const Dialogue& dialogue) {
  std::string bytes;
  for (const Step& step : dialogue) {
    bytes += step.kind == Step::Kind::expect ? step.bytes : "";
  }
  return bytes;
}

/// The client said what the dialogue expects, as far as it went, and nothing else.
void expectOnlyExpectedBytes(const ServerAttack& row, FakeIMAPServer& server) {
  const std::string problem = server.mismatch();
  const std::string received = server.received();
  if (!row.isBrokenOff) {
    EXPECT_EQ(problem, "");
  } else if (row.options.plainText) {
    // What came is the beginning of a TLS handshake.
    EXPECT_EQ(received.find("LOGIN"), std::string::npos);
    EXPECT_EQ(received.find(testPassword), std::string::npos);
  } else {
    EXPECT_TRUE(expectedBytes(row.dialogue).starts_with(received)) << received;
  }
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

void expectPeakBelow(std::size_t megabytes, const ServeProgram& program) {
  const std::size_t peak = program.peakKilobytes() / 1000;
  testing::Test::RecordProperty("peakMegabytes", static_cast<int>(peak));
  if (!isSanitized) {
    EXPECT_LE(peak, megabytes) << "megabytes at the peak";
  }
}

void play(const ServerAttack& row) {
  FakeIMAPServer server(row.dialogue, row.options);
  Home home;
  home.email = row.email;
  home.isFallbackAllowed = row.isFallbackAllowed;
  home.useServer(server.port(), row.host);
  storePassword(row.password);
  ServeProgram program(home);

  const ToolAnswer answer = program.call(row.tool, row.arguments);
  const std::string error = withPort(row.error, server.port());
  EXPECT_TRUE(answer.error() == error) << answer.error().substr(0, 1000) << "\ninstead of\n"
                                       << error.substr(0, 1000);
  EXPECT_EQ(answer.isError, !row.error.empty()) << answer.result.serialized().substr(0, 1000);
  if (row.check) {
    row.check(answer.result);
  }
  EXPECT_EQ(server.acceptCount(), row.connections);
  if (row.connections > 0) {
    expectOnlyExpectedBytes(row, server);
  }
  if (row.peakMegabytes > 0) {
    expectPeakBelow(row.peakMegabytes, program);
  }
  expectSound(home, program);
  expectQuietEnd(program);
}

}  // namespace

Attack byServer(ServerAttack row) {
  Attack attack{row.name, row.attack, row.outcome, {}};
  // Shared, since functions are copied and rows may be large.
  attack.play = [row = std::make_shared<const ServerAttack>(std::move(row))] { play(*row); };
  return attack;
}

std::vector<Attack> byServer(std::vector<ServerAttack> rows) {
  std::vector<Attack> attacks;
  for (ServerAttack& row : rows) {
    attacks.push_back(byServer(std::move(row)));
  }
  return attacks;
}

void expectSound(Home& home, ServeProgram& program) {
  EXPECT_TRUE(program.answersPing());
  FakeIMAPServer honest(honestDialogue());
  storePassword(testPassword);
  home.email = testEmail;
  home.useServer(honest.port());
  EXPECT_EQ(program.call("get_status").result["configured"], JSONValue(true));
  const ToolAnswer folders = program.call("list_folders");
  EXPECT_EQ(folders.error(), "");
  EXPECT_EQ(folders.result["count"], JSONValue(1));
  EXPECT_EQ(honest.mismatch(), "");
}

void expectQuietEnd(ServeProgram& program) { EXPECT_EQ(program.end(), Ending{}); }

}  // namespace tarnwell::test

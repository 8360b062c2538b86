#include "hostile/ServerAttack.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "hostile/ProcessFacts.h"
#include "hostile/TestSecrets.h"

namespace tarnwell::test {

namespace {

std::string withPort(std::string text, std::uint16_t port) {
  if (const std::size_t mark = text.find("PORT"); mark != std::string::npos) {
    text.replace(mark, 4, std::to_string(port));
  }
  return text;
}

/// A login, one folder and a logout.
Dialogue honestDialogue() {
  return loginDialogue() + Dialogue{
                               expect("A0004 LIST \"\" \"*\"\r\n"),
                               answer("* LIST () \"/\" INBOX\r\nA0004 OK done\r\n"),
                               expect("A0005 LOGOUT\r\n"),
                               answer("A0005 OK bye\r\n"),
                           };
}

/// The client sent only what the dialogue expects, up to its end or the fault.
void expectOnlyExpectedBytes(const ServerAttack& row, FakeIMAPServer& server) {
  const std::string problem = server.mismatch();
  const std::string received = server.received();
  const std::string expected = expectedBytes(row.dialogue);
  if (!row.isBrokenOff) {
    EXPECT_EQ(problem, "");
  }
  if (row.options.plainText || row.options.mute) {
    // The bytes are the beginning of a TLS handshake.
    EXPECT_EQ(received.find("LOGIN"), std::string::npos);
    EXPECT_EQ(received.find(testPassword), std::string::npos);
  } else if (row.isBrokenOff) {
    EXPECT_TRUE(expected.starts_with(received)) << received.substr(0, 1000);
  } else {
    // Includes bytes that came after the server fell silent.
    EXPECT_TRUE(received == expected) << received.substr(0, 1000);
  }
}

void expectPeakBelow(std::size_t megabytes, const ServeProgram& program) {
  const auto peak = static_cast<std::size_t>(processFigure(program.processID(), "VmHWM")) / 1000;
  testing::Test::RecordProperty("peakMegabytes", static_cast<int>(peak));
  if (!isSanitized) {
    EXPECT_LE(peak, megabytes) << "megabytes at the peak";
  }
}

/// A row during its play. The row must outlive it.
class Play {
 public:
  /// Starts the server and the program, and sends the call.
  explicit Play(const ServerAttack& row) : row_(row), server_(row.dialogue, row.options) {
    home_.email = row.email;
    home_.isFallbackAllowed = row.isFallbackAllowed;
    home_.useServer(server_.port(), row.host);
    storePassword(row.password);
    program_.emplace(home_);
    program_->sendCall(row.tool, row.arguments);
  }

  /// Waits for the answer and checks everything.
  void finish() {
    expectAnswer(program_->readAnswer());
    EXPECT_EQ(server_.acceptCount(), row_.connections);
    if (row_.connections > 0) {
      expectOnlyExpectedBytes(row_, server_);
    }
    if (row_.peakMegabytes > 0) {
      expectPeakBelow(row_.peakMegabytes, *program_);
    }
    expectSound(home_, *program_);
    expectQuietEnd(*program_);
  }

 private:
  void expectAnswer(const ToolAnswer& answer) const {
    const std::string error = withPort(row_.error, server_.port());
    EXPECT_TRUE(answer.error() == error) << answer.error().substr(0, 1000) << "\ninstead of\n"
                                         << error.substr(0, 1000);
    EXPECT_EQ(answer.isError, !row_.error.empty()) << answer.result.serialized().substr(0, 1000);
    if (row_.check) {
      row_.check(answer.result);
    }
  }

  const ServerAttack& row_;
  FakeIMAPServer server_;
  Home home_;
  std::optional<ServeProgram> program_;
};

/// Rows whose calls run at the same time.
class PlaysAtOnce {
 public:
  explicit PlaysAtOnce(std::vector<ServerAttack> rows) : rows_(std::move(rows)) {}

  void finish(std::size_t number) {
    if (plays_.empty()) {
      for (const ServerAttack& row : rows_) {
        plays_.push_back(std::make_unique<Play>(row));
      }
    }
    const std::unique_ptr<Play> play = std::move(plays_[number]);
    play->finish();
  }

 private:
  const std::vector<ServerAttack> rows_;
  std::vector<std::unique_ptr<Play>> plays_;
};

}  // namespace

Attack byServer(ServerAttack row) {
  Attack attack{row.name, row.attack, row.outcome, {}};
  // Shared, because functions are copied and rows may be large.
  attack.play = [row = std::make_shared<const ServerAttack>(std::move(row))] { Play(*row).finish(); };
  return attack;
}

std::vector<Attack> byServer(std::vector<ServerAttack> rows) {
  std::vector<Attack> attacks;
  for (ServerAttack& row : rows) {
    attacks.push_back(byServer(std::move(row)));
  }
  return attacks;
}

std::vector<Attack> byServersAtOnce(std::vector<ServerAttack> rows) {
  std::vector<Attack> attacks;
  for (const ServerAttack& row : rows) {
    attacks.push_back({row.name, row.attack, row.outcome, {}});
  }
  const auto plays = std::make_shared<PlaysAtOnce>(std::move(rows));
  for (std::size_t number = 0; number < attacks.size(); ++number) {
    attacks[number].play = [plays, number] { plays->finish(number); };
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

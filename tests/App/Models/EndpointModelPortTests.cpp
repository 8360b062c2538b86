#include <gmock/gmock.h>

#include <QSignalSpy>
#include <fstream>

#include "App/support/EndpointModelFixture.h"
#include "MCP/HTTP/MCPHTTPServer.h"

namespace tarnwell::test {
namespace {

using State = EndpointModel::State;
using Kind = EndpointNews::Kind;

class EndpointModelPort : public testing::Test, public EndpointModelFixture {
 protected:
  /// Nothing can be written any more.
  void breakTheSettings() {
    std::filesystem::remove_all(store.configURL().parent_path());
    std::ofstream(store.configURL().parent_path()) << "no folder";
  }
};

TEST_F(EndpointModelPort, takenPortIsNamedAndAFreeOneOffered) {
  open();
  MCPServer dispatcher(MCPTools::shared());
  MCPHTTPServer other(dispatcher, model->port());
  other.start();
  ASSERT_TRUE(other.isRunning());
  model->start();
  ASSERT_TRUE(become(State::failed));
  EXPECT_FALSE(model->isRunning());
  EXPECT_EQ(model->news().kind, Kind::portTaken);
  EXPECT_EQ(model->news().details, "Address already in use");
  const int free = model->news().freePort.value();
  EXPECT_GT(free, model->port());

  model->startAtFreePort();
  ASSERT_TRUE(become(State::running));
  EXPECT_EQ(model->port(), free);
  EXPECT_EQ(statusWith(token()), 200);
  EXPECT_TRUE(until([this] { return !settings->isSaving(); }));
  EXPECT_EQ(store.load().httpPort, free);
}

TEST_F(EndpointModelPort, takenPortCanBeTriedAgain) {
  open();
  MCPServer dispatcher(MCPTools::shared());
  auto other = std::make_unique<MCPHTTPServer>(dispatcher, model->port());
  other->start();
  model->start();
  ASSERT_TRUE(become(State::failed));
  other.reset();
  EXPECT_TRUE(start());
  EXPECT_EQ(model->news().kind, Kind::none);
}

TEST_F(EndpointModelPort, reasonsOfTheSystemHaveNames) {
  const std::pair<std::errc, Kind> rows[] = {{std::errc::address_in_use, Kind::portTaken},
                                             {std::errc::permission_denied, Kind::portNeedsRights},
                                             {std::errc::too_many_files_open, Kind::notStarted},
                                             {std::errc::address_not_available, Kind::notStarted}};
  for (const auto& [reason, kind] : rows) {
    const std::error_code code(static_cast<int>(reason), std::system_category());
    const EndpointNews news = endpointNewsOf(code, 1234);
    EXPECT_EQ(news.kind, kind) << code.message();
    EXPECT_EQ(news.details.toStdString(), code.message());
    EXPECT_EQ(news.freePort, 1234);
  }
}

TEST_F(EndpointModelPort, portChangesOnlyWhileItDoesNotRun) {
  open();
  const int before = model->port();
  ASSERT_TRUE(start());
  EXPECT_FALSE(model->mayChangePort());
  model->setPort(before + 1);
  EXPECT_EQ(model->port(), before);
  model->stop();
  ASSERT_TRUE(become(State::stopped));
  const int after = freePort();
  model->setPort(after);
  EXPECT_EQ(model->port(), after);
  EXPECT_EQ(model->address(), QStringLiteral("http://127.0.0.1:%1/mcp").arg(after));
  ASSERT_TRUE(start());
  EXPECT_EQ(statusWith(token()), 200);
}

TEST_F(EndpointModelPort, portsBeyondTheRangeMeanTheUsualOne) {
  const std::pair<std::int64_t, int> rows[] = {{70000, 8765}, {0, 8765}, {-1, 8765}, {65535, 65535}, {1, 1}};
  for (const auto& [inFile, shown] : rows) {
    store.update([port = inFile](AppConfig& config) { config.httpPort = port; });
    EXPECT_EQ(open().port(), shown);
  }
}

TEST_F(EndpointModelPort, settingsThatCannotBeSavedAreNamed) {
  open();
  const int before = model->port();
  breakTheSettings();
  model->setPort(before + 1);
  EXPECT_TRUE(until([this] { return model->news().kind == Kind::settingsNotSaved; }));
  EXPECT_FALSE(model->news().details.isEmpty());
}

/// The page shows two ports then: the one where it listens, and that of the file.
TEST_F(EndpointModelPort, portThatCannotBeSavedIsNamedAlsoWhenTheEndpointStarts) {
  open();
  breakTheSettings();
  model->setPort(freePort());
  model->start();
  ASSERT_TRUE(until([this] { return model->state() == State::running && !settings->isSaving(); }));
  EXPECT_EQ(model->news().kind, Kind::settingsNotSaved);
  model->stop();
  EXPECT_EQ(model->news().kind, Kind::none);
}

TEST_F(EndpointModelPort, changeOfAnotherPageThatCannotBeSavedIsNoNewsHere) {
  open();
  model->setPort(freePort());
  ASSERT_TRUE(until([this] { return !settings->isSaving(); }));
  MCPServer dispatcher(MCPTools::shared());
  MCPHTTPServer other(dispatcher, model->port());
  other.start();
  model->start();
  ASSERT_TRUE(become(State::failed));
  breakTheSettings();
  QSignalSpy notSaved(&*settings, &SettingsFile::notSaved);
  settings->change([](AppConfig& config) { config.safety.maxFetch = 7; });
  ASSERT_TRUE(until([&] { return notSaved.count() == 1; }));
  EXPECT_EQ(model->news().kind, Kind::portTaken);
}

TEST_F(EndpointModelPort, takenPortTellsWhetherATokenMayHaveBeenSentThere) {
  open();
  MCPServer dispatcher(MCPTools::shared());
  MCPHTTPServer other(dispatcher, model->port());
  other.start();
  for (const bool hadToken : {false, true}) {  // the first start makes one
    model->start();
    ASSERT_TRUE(become(State::failed));
    EXPECT_EQ(model->news().kind, Kind::portTaken);
    EXPECT_EQ(model->news().hadToken, hadToken);
  }
}

}  // namespace
}  // namespace tarnwell::test

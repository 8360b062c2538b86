#include <gmock/gmock.h>

#include <fstream>

#include "App/support/EndpointModelFixture.h"
#include "MCP/HTTP/MCPHTTPServer.h"

namespace tarnwell::test {
namespace {

using State = EndpointModel::State;
using Kind = EndpointNews::Kind;

class EndpointModelPort : public testing::Test, public EndpointModelFixture {};

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
  const int after = freeLoopbackPort(static_cast<std::uint16_t>(before + 1)).value();
  model->setPort(after);
  EXPECT_EQ(model->port(), after);
  EXPECT_EQ(model->address(), QStringLiteral("http://127.0.0.1:%1/mcp").arg(after));
  ASSERT_TRUE(start());
  EXPECT_EQ(statusWith(token()), 200);
}

TEST_F(EndpointModelPort, portsBeyondTheRangeMeanTheUsualOne) {
  const std::pair<std::int64_t, int> rows[] = {{70000, 8765}, {0, 8765}, {-1, 8765}, {65535, 65535}, {1, 1}};
  for (const auto& [inFile, shown] : rows) {
    store.update([&](AppConfig& config) { config.httpPort = inFile; });
    EXPECT_EQ(open().port(), shown);
  }
}

TEST_F(EndpointModelPort, settingsThatCannotBeSavedAreNamed) {
  open();
  const int before = model->port();
  std::filesystem::remove_all(store.configURL().parent_path());
  std::ofstream(store.configURL().parent_path()) << "no folder";
  model->setPort(before + 1);
  EXPECT_TRUE(until([this] { return model->news().kind == Kind::settingsNotSaved; }));
  EXPECT_FALSE(model->news().details.isEmpty());
}

}  // namespace
}  // namespace tarnwell::test

/// The page over real files in a home directory of its own: from the key to the bytes and back.

#include <gtest/gtest.h>

#include <optional>

#include "App/Pages/AssistantsPage.h"
#include "App/support/PageFixture.h"
#include "Assistants/FakeMachine.h"

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;

class AssistantsPageFile : public PageTest {
 protected:
  AssistantsPageFile() {
    settings_.emplace(store_);
    model_.emplace(*settings_, AssistantWork::on(machine_.machine));
    page_.emplace(*model_);
  }

  bool untilIdle() {
    return eventually([this] { return !model_->isLooking() && !model_->isWriting() && !isPlanning(); });
  }
  bool isPlanning() const {
    return model_->progress(AssistantID::cursor).step == AssistantsModel::Step::planning;
  }
  void begin() {
    open(*page_);
    ASSERT_TRUE(untilIdle());
  }
  bool press(const QString& button) { return tabTo(button) && (test::press(Qt::Key_Return), untilIdle()); }
  std::string shownDifference() const {
    return page_->findChild<DifferenceView*>()->toPlainText().toStdString();
  }

  FakeMachine machine_;
  std::optional<SettingsFile> settings_;
  std::optional<AssistantsModel> model_;
  std::optional<AssistantsPage> page_;
};

const char* const before =
    "{\r\n"
    "\t// my servers\r\n"
    "\t\"mcpServers\": {\r\n"
    "\t\t\"time\": {\"command\": \"uvx\", \"args\": [\"mcp-server-time\"]},\r\n"
    "\t},\r\n"
    "}\r\n";

TEST_F(AssistantsPageFile, connectsShowsTheDifferenceAndUndoes) {
  const fs::path file = machine_.put(".cursor/mcp.json", before);
  begin();
  ASSERT_TRUE(press("Cursor: Connect"));
  const std::string helper = machine_.machine.helper.string();
  EXPECT_TRUE(shownDifference().find("\n+ \t\t\"tarnwell\":") != std::string::npos) << shownDifference();
  EXPECT_TRUE(shownDifference().find(helper) != std::string::npos);
  EXPECT_EQ(shownDifference().find("\n\u2212 "), std::string::npos) << "nothing is taken away";
  EXPECT_EQ(fileContents(file), before) << "nothing is written yet";

  ASSERT_TRUE(press("Write the change"));
  EXPECT_EQ(machine_.state(AssistantID::cursor).connection, AssistantState::Connection::here);
  const std::string after = fileContents(file);
  const std::string beginning = std::string(before).substr(0, std::string(before).find("\t},\r\n}"));
  EXPECT_TRUE(after.starts_with(beginning)) << after;
  EXPECT_TRUE(after.ends_with("\t},\r\n}\r\n")) << after;
  EXPECT_TRUE(after.find(helper) != std::string::npos);

  ASSERT_TRUE(press("Cursor: Undo"));
  EXPECT_EQ(fileContents(file), before);
  EXPECT_EQ(machine_.state(AssistantID::cursor).connection, AssistantState::Connection::none);
  EXPECT_TRUE(tabTo("Cursor: Connect"));
}

TEST_F(AssistantsPageFile, disconnectsWhatItConnected) {
  const fs::path file = machine_.put(".cursor/mcp.json", before);
  begin();
  ASSERT_TRUE(press("Cursor: Connect"));
  ASSERT_TRUE(press("Write the change"));
  ASSERT_TRUE(press("Cursor: Disconnect"));
  EXPECT_TRUE(shownDifference().find("\n\u2212 \t\t\"tarnwell\":") != std::string::npos) << shownDifference();
  ASSERT_TRUE(press("Write the change"));
  EXPECT_EQ(fileContents(file), before);
}

TEST_F(AssistantsPageFile, fileThatSomebodyWritesMeanwhileIsNotOverwritten) {
  const fs::path file = machine_.put(".cursor/mcp.json", before);
  begin();
  ASSERT_TRUE(press("Cursor: Connect"));
  machine_.put(".cursor/mcp.json", "{\"mcpServers\": {\"new\": {\"command\": \"x\"}}}\n");
  ASSERT_TRUE(press("Write the change"));
  EXPECT_EQ(fileContents(file), "{\"mcpServers\": {\"new\": {\"command\": \"x\"}}}\n");
  EXPECT_TRUE(shown(*page_).contains("have changed meanwhile, so nothing was done."));
  EXPECT_TRUE(shownDifference().find("\"new\"") != std::string::npos) << shownDifference();
  ASSERT_TRUE(press("Write the change"));
  EXPECT_TRUE(
      fileContents(file).starts_with("{\"mcpServers\": {\"new\": {\"command\": \"x\"}, \"tarnwell\": "));
}

TEST_F(AssistantsPageFile, fileThatIsNoJSONIsNeverTouched) {
  const fs::path file = machine_.put(".cursor/mcp.json", "{\n  'mcpServers': {}\n}\n");
  begin();
  EXPECT_TRUE(shown(*page_).contains("cannot be read as JSON: see line 2, column 3."));
  EXPECT_TRUE(tabTo("Cursor: Look again"));
  machine_.put(".cursor/mcp.json", "{}\n");
  ASSERT_TRUE(press("Cursor: Look again"));
  EXPECT_TRUE(tabTo("Cursor: Connect"));
}

TEST_F(AssistantsPageFile, fileThatOthersMayWriteIsNotCalledUnreadable) {
  const fs::path file = machine_.put(".cursor/mcp.json", before);
  fs::permissions(file, fs::perms(0666));
  begin();
  EXPECT_TRUE(shown(*page_).contains("Somebody else may write the settings file of Cursor"));
  EXPECT_FALSE(shown(*page_).contains("cannot be read"));
  fs::permissions(file, fs::perms(0600));
  ASSERT_TRUE(press("Cursor: Look again"));
  EXPECT_TRUE(tabTo("Cursor: Connect"));
}

TEST_F(AssistantsPageFile, entryThatIsSwitchedOffStaysSo) {
  machine_.put(".cursor/mcp.json",
               "{\"mcpServers\": {\"tarnwell\": {\"command\": \"/old/tarnwell\", \"disabled\": true}}}");
  begin();
  ASSERT_TRUE(press("Cursor: Use this one"));
  ASSERT_TRUE(press("Write the change"));
  EXPECT_TRUE(shown(*page_).contains("Connected, but switched off in Cursor. Switch it on there."));
}

}  // namespace
}  // namespace tarnwell::test

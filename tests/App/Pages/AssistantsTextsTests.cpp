/// The sentences of the page "Assistants".

#include "App/Pages/AssistantsTexts.h"

#include <gtest/gtest.h>

#include "App/Pages/AssistantsPageFixture.h"
#include "JSONEditor/JSONEditError.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Kind = AssistantNews::Kind;
using enum AssistantID;

class AssistantsTextsIn : public AssistantsPageIn {};
INSTANTIATE_TEST_SUITE_P(Table, AssistantsTextsIn, testing::ValuesIn(AppLanguages::allCases), languageName);

struct NewsRow {
  const char* name;
  ConnectingWay way;
  AssistantNews news;
  const char* text;
};

TEST(AssistantNewsTexts, fitWhatWasDone) {
  using enum ConnectingWay;
  const NewsRow rows[] = {
      {"command",
       ownCommand,
       {Kind::commandWithoutEffect},
       "The command of Cursor succeeded but changed nothing. The details are its own words."},
      {"file",
       file,
       {Kind::commandWithoutEffect},
       "The settings of Cursor were written, but this changed nothing. Quit Cursor and try again."},
      {"copy",
       file,
       {.kind = Kind::notVerified, .backup = "/tmp/mcp.json.tarnwell-20261122T193000Z"},
       "Another program wrote the settings of Cursor at the same time. Quit Cursor and try again.\n"
       "The file as it was: /tmp/mcp.json.tarnwell-20261122T193000Z"},
      {"noCopy",
       file,
       {Kind::notVerified, "mcp.json: changed"},
       "Another program wrote the settings of Cursor at the same time. Quit Cursor and try again."},
      {"undoneByCommand",
       ownCommand,
       {Kind::undone},
       "Undone. The entry for Tarnwell in Cursor is as it was."},
      {"undone", file, {Kind::undone}, "Undone. The entry for Tarnwell in Cursor is as it was."},
  };
  for (const NewsRow& row : rows) {
    AssistantState state = assistant(cursor, "Cursor");
    state.way = row.way;
    AssistantProgress progress;
    progress.news = row.news;
    EXPECT_EQ(AssistantsTexts::news(state, progress).remove(QChar(0x200B)), row.text) << row.name;
  }
}

template <class Error, class... Arguments>
std::exception_ptr problem(Arguments... arguments) {
  return std::make_exception_ptr(Error(arguments...));
}

TEST(AssistantNewsTexts, nameWhyAFileCannotBeReadAndWhatToDo) {
  using FileKind = ConfigurationFileError::Kind;
  const std::pair<std::exception_ptr, const char*> rows[] = {
      {problem<JSONEditError>(JSONEditError::Kind::notJSON, 3U, 5U),
       "The settings of Cursor cannot be read as JSON: see line 3, column 5."},
      {problem<JSONEditError>(JSONEditError::Kind::notUTF8), "The settings of Cursor are no UTF-8 text"},
      {problem<ConfigurationFileError>(FileKind::unreadable, "/x", "no"),
       "The settings file of Cursor cannot be read. Make sure that it is a file and that you may read it"},
      {problem<ConfigurationFileError>(FileKind::tooLarge, "/x", "no"),
       "The settings of Cursor are too large for this"},
      {problem<ConfigurationFileError>(FileKind::otherWriter, "/x", "no"),
       "Somebody else may write the settings file of Cursor"},
      {problem<AssistantError>(AssistantError::Kind::notTOML, cursor, "line 2: not TOML"),
       "The settings of Cursor cannot be read as TOML; the details say why. You can still add"},
  };
  for (const auto& [why, sentence] : rows) {
    AssistantState state = assistant(cursor, "Cursor", Connection::unknown);
    state.problem = why;
    const QString remedy = AssistantsTexts::remedy(state).remove(QChar(0x200B));
    EXPECT_TRUE(remedy.startsWith(sentence)) << remedy.toStdString();
    EXPECT_TRUE(remedy.endsWith("\nThe file: /home/anna/.config/Cursor/mcp.json")) << remedy.toStdString();
  }
}

TEST(AssistantsTexts, lastStepOfARemovalIsAboutWhatIsStillOpen) {
  AssistantState state = assistant(codex, "Codex", Connection::here);
  state.way = ConnectingWay::block;
  EXPECT_EQ(AssistantsTexts::steps(state, FakeAssistants::planFor(state, Goal::disconnect)).back(),
            "End the open sessions of Codex: they may use Tarnwell until then.");
}

TEST(AssistantNewsTexts, nameTheProgramThatHasToBeRestarted) {
  AssistantProgress progress;
  progress.news = {Kind::disconnected};
  EXPECT_EQ(AssistantsTexts::news(assistant(cline, "Cline"), progress),
            "Disconnected. Restart Visual Studio Code: Cline may use Tarnwell until then.");
  EXPECT_EQ(AssistantsTexts::news(assistant(cursor, "Cursor"), progress),
            "Disconnected. Restart Cursor: it may use Tarnwell until then.");
  EXPECT_EQ(AssistantsTexts::news(assistant(claudeDesktop, "Claude Desktop"), progress), "Disconnected.")
      << "it was closed for the change";
}

/// Every news has a sentence of its own, with every name filled in.
TEST_P(AssistantsTextsIn, everyNewsHasItsOwnSentence) {
  QStringList sentences;
  for (int kind = 1; kind <= static_cast<int>(Kind::failed); ++kind) {
    AssistantProgress progress;
    progress.news.kind = static_cast<Kind>(kind);
    const QString sentence = AssistantsTexts::news(assistant(cursor, "Cursor"), progress);
    EXPECT_FALSE(sentence.isEmpty()) << kind;
    EXPECT_FALSE(sentence.contains('%')) << sentence.toStdString();
    sentences.append(sentence);
  }
  EXPECT_EQ(sentences.removeDuplicates(), 0);
}

TEST_P(AssistantsTextsIn, nextStepFitsEachAssistant) {
  QStringList sentences;
  for (int id = 0; id <= static_cast<int>(AssistantID::roo); ++id) {
    sentences.append(AssistantsTexts::restart(assistant(static_cast<AssistantID>(id), "X")));
    EXPECT_FALSE(sentences.back().contains('%'));
  }
  EXPECT_EQ(sentences.removeDuplicates(), 7) << "four kinds";
  sentences.clear();
  for (int id = 0; id <= static_cast<int>(AssistantID::roo); ++id) {
    sentences.append(AssistantsTexts::restartToStop(assistant(static_cast<AssistantID>(id), "X")));
    EXPECT_FALSE(sentences.back().contains('%'));
  }
  EXPECT_EQ(sentences.removeDuplicates(), 8) << "three kinds";
}

/// A settings file and the paths in it are another program's.
TEST(AssistantsTexts, showWhatWouldTurnTheTextAround) {
  using Line = DifferenceLine;
  const auto lines = AssistantsTexts::lines({{Line::Kind::same, "a \u202e b \u2066 c\td", 0}});
  EXPECT_EQ(lines.at(0).text, QString::fromUtf8("a ‹U+202E› b ‹U+2066› c\td"));
  EXPECT_EQ(AssistantsTexts::pathInSentence("a\u202eb\nc").remove(QChar(0x200B)),
            QString::fromUtf8("a‹U+202E›b c"));
  ConnectionPlan plan;
  plan.commands = {{"claude", "mcp", "add", "a\u202eb"}, {"c\u2066d"}};
  EXPECT_TRUE(AssistantsTexts::commands(plan).contains(QString::fromUtf8("a‹U+202E›b")));
  EXPECT_TRUE(AssistantsTexts::commands(plan).contains(QString::fromUtf8("c‹U+2066›d")));
  plan.block = "command = \"a\u202eb\"\nargs = []\n";
  EXPECT_EQ(AssistantsTexts::block(plan), QString::fromUtf8("command = \"a‹U+202E›b\"\nargs = []\n"));
}

}  // namespace
}  // namespace tarnwell::test

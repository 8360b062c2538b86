/// What the page "Activity" says of a call, from the lines of the log to the words on the screen.
#include "App/Pages/CallTexts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "App/Models/ActivityCalls.h"
#include "App/Models/Language.h"
#include "App/Pages/ActivityTexts.h"
#include "App/support/FakeActivity.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

struct Row {
  const char* name;
  std::vector<std::string> lines;
  const char* english;
  const char* japanese;
};

/// The first row of what these lines make.
QString rowOf(const std::vector<std::string>& lines) {
  std::vector<ActivityItem*> changed;
  ActivityCalls calls(changed);
  std::deque<ActivityItem> items;
  for (const std::string& line : lines) {
    items.emplace_back(activityEntry(followedEntry(1, line, "tool")), items.size());
    calls.add(items.back());
  }
  return ActivityTexts::sentence(items.front().call ? items.front().call->entry : items.front().line);
}

const Row rows[] = {
    {"status",
     {"tool call: get_status", "tool get_status: configured (8 ms)"},
     "Gave the status: an account is set up, under 0.1 s",
     "状態を伝えました: アカウントは設定済み、0.1 秒未満"},
    {"statusWithoutAnAccount",
     {"tool call: get_status", "tool get_status: not configured (8 ms)"},
     "Gave the status: no account is set up, under 0.1 s",
     "状態を伝えました: アカウントは未設定、0.1 秒未満"},
    {"folders",
     {"tool call: list_folders", "tool list_folders: 9 folders (92 ms)"},
     "Listed the folders: 9 folders, 0.1 s",
     "フォルダーを一覧にしました: 9 個、0.1 秒"},
    {"search",
     {"tool call: search_inbox", "tool search_inbox: 16 messages, 5 withheld (347 ms)"},
     "Searched the inbox: 16 messages, 5 withheld, 0.3 s",
     "受信トレイを検索しました: 16 通、うち 5 通は渡していません、0.3 秒"},
    {"searchOfOne",
     {"tool call: search_inbox", "tool search_inbox: 1 message (66 ms)"},
     "Searched the inbox: 1 message, 0.1 s",
     "受信トレイを検索しました: 1 通、0.1 秒"},
    {"summary",
     {"tool call: get_message_summary", "tool get_message_summary: 1 message (58 ms)"},
     "Read the summary of a message, 0.1 s",
     "メールの要約を読みました（0.1 秒）"},
    {"summaryWithheld",
     {"tool call: get_message_summary", "tool get_message_summary: 1 message, withheld (58 ms)"},
     "Read the summary of a message: withheld, 0.1 s",
     "メールの要約を読みました: 渡していません、0.1 秒"},
    {"body",
     {"tool call: get_message_body", "tool get_message_body: a text of 187 characters (62 ms)"},
     "Read a message: 187 characters, 0.1 s",
     "メールを読みました: 187 文字、0.1 秒"},
    {"bodyWithheld",
     {"tool call: get_message_body", "tool get_message_body: withheld (62 ms)"},
     "Read a message: withheld, 0.1 s",
     "メールを読みました: 渡していません、0.1 秒"},
    {"bodyWithoutText",
     {"tool call: get_message_body", "tool get_message_body: no text (62 ms)"},
     "Read a message: it has no text, 0.1 s",
     "メールを読みました: 本文なし、0.1 秒"},
    {"cleanUp",
     {"tool call: propose_inbox_cleanup", "tool propose_inbox_cleanup: 5 messages, 1 withheld (192 ms)"},
     "Proposed what could be cleaned up: 5 messages, 1 withheld, 0.2 s",
     "整理できるメールを提案しました: 5 通、うち 1 通は渡していません、0.2 秒"},
    {"move",
     {"tool call: move_message", "write move_message: execute", "tool move_message: executed (63 ms)"},
     "Moved a message, 0.1 s",
     "メールを移動しました（0.1 秒）"},
    {"movePreviewed",
     {"tool call: move_message", "write move_message: dry-run", "tool move_message: previewed (62 ms)"},
     "Previewed a move, 0.1 s",
     "移動をプレビューしました（0.1 秒）"},
    {"moveRefused",
     {"tool call: move_message", "write move_message: blocked(read-only)",
      "tool move_message: blocked (0 ms)"},
     "Move refused: read-only mode is on",
     "移動を拒否しました: 読み取り専用モードがオンです"},
    {"moveRefusedForAReasonThatIsNotKept",
     {"tool move_message: blocked (0 ms)"},
     "Move refused",
     "移動を拒否しました"},
    {"moveFailed",
     {"tool call: move_message", "write move_message: execute",
      "tool move_message failed: Folder not found: %1 Attic"},
     "Move failed: Folder not found: %1 Attic",
     "移動に失敗しました: Folder not found: %1 Attic"},
    {"moveWhoseOutcomeIsLost",
     {"tool call: move_message", "tool call: get_status"},
     "Move: no outcome in the log",
     "移動: 結果の記録がありません"},
    {"moveWithUnusableArguments",
     {"tool call: move_message", "tool move_message failed: Missing 'targetFolder'."},
     "Move failed: Missing 'targetFolder'.",
     "移動に失敗しました: Missing 'targetFolder'."},
    {"triedOnAMessageThatHasGone",
     {"tried by the user: get_message_body", "tool call: get_message_body",
      "tool get_message_body failed: No message with UID 9 in INBOX."},
     "Try it: Reading failed: No message with UID 9 in INBOX.",
     "お試し: メールの読み取りに失敗しました: No message with UID 9 in INBOX."},
    {"marked",
     {"tool call: mark_as_read", "write mark_as_read: execute", "tool mark_as_read: executed (59 ms)"},
     "Marked a message as read, 0.1 s",
     "メールを既読にしました（0.1 秒）"},
    {"markingPreviewed",
     {"tool mark_as_read: previewed (59 ms)"},
     "Previewed marking a message as read, 0.1 s",
     "既読にする操作をプレビューしました（0.1 秒）"},
    {"trashed",
     {"tool call: trash_message", "tool trash_message: executed (59 ms)"},
     "Put a message into the trash, 0.1 s",
     "メールをゴミ箱に入れました（0.1 秒）"},
    {"trashingPreviewed",
     {"tool trash_message: previewed (59 ms)"},
     "Previewed putting a message into the trash, 0.1 s",
     "ゴミ箱への移動をプレビューしました（0.1 秒）"},
    {"trashingRefused",
     {"tool call: trash_message", "write trash_message: blocked(disabled)",
      "tool trash_message: blocked (0 ms)"},
     "Move into the trash refused: not allowed in the safety settings",
     "ゴミ箱への移動を拒否しました: 安全設定で許可されていません"},
    {"begun", {"tool call: search_inbox"}, "Searching the inbox…", "受信トレイを検索しています…"},
    {"cancelled",
     {"tool call: search_inbox", "tool search_inbox: cancelled (1247 ms)"},
     "Search cancelled, 1.2 s",
     "検索が取り消されました（1.2 秒）"},
    {"cancelledBeforeItBegan",
     {"cancelled by the client before it began: search_inbox"},
     "Search cancelled before it began",
     "検索は開始前に取り消されました"},
    {"hours",
     {"tool call: search_inbox", "tool search_inbox: 12345 messages, 1234 withheld (3600000 ms)"},
     "Searched the inbox: 12,345 messages, 1,234 withheld, 3,600.0 s",
     "受信トレイを検索しました: 12,345 通、うち 1,234 通は渡していません、3,600.0 秒"},
    {"trial",
     {"tried by the user: search_inbox", "tool call: search_inbox", "tool search_inbox: 1 message (66 ms)"},
     "Try it: Searched the inbox: 1 message, 0.1 s",
     "お試し: 受信トレイを検索しました: 1 通、0.1 秒"},
    {"trialThatRuns",
     {"tried by the user: search_inbox", "tool call: search_inbox"},
     "Try it: Searching the inbox…",
     "お試し: 受信トレイを検索しています…"},
    {"keyring",
     {"tool call: search_inbox", "tool search_inbox keychain error locked"},
     "Search failed, the keyring could not be used: locked",
     "キーリングを使えず、検索に失敗しました: locked"},
    {"fault",
     {"tool call: search_inbox", "tool search_inbox error: what"},
     "Search failed by a fault of the helper: what",
     "ヘルパーの不具合で検索に失敗しました: what"},
    {"outcomeOfALaterProgram",
     {"tool call: search_inbox", "tool search_inbox: 3 threads (12 ms)"},
     "Searched the inbox: 3 threads, under 0.1 s",
     "受信トレイを検索しました: 3 threads、0.1 秒未満"},
    {"toolOfALaterProgram",
     {"tool call: sort_inbox", "tool sort_inbox: 3 messages (12 ms)"},
     "Called sort_inbox: 3 messages, under 0.1 s",
     "sort_inbox を呼び出しました: 3 通、0.1 秒未満"},
    {"unknownTool",
     {"tool call: a%1b", "tool call: get_status"},
     "There is no tool with the name a%1b",
     "a%1b というツールはありません"},
};

class CallTextsOf : public testing::TestWithParam<Row> {
 protected:
  CallTextsOf() = default;
  ~CallTextsOf() override { language.choose(AppLanguage::english); }
  Language language;
};

TEST_P(CallTextsOf, areWordsInBothLanguages) {
  language.choose(AppLanguage::english);
  EXPECT_EQ(rowOf(GetParam().lines).toStdString(), GetParam().english);
  language.choose(AppLanguage::japanese);
  EXPECT_EQ(rowOf(GetParam().lines).toStdString(), GetParam().japanese);
}

INSTANTIATE_TEST_SUITE_P(, CallTextsOf, testing::ValuesIn(rows), rowName);

TEST(CallTexts, aCallOfUnknownEndIsNotBlamedOnTheAssistant) {
  Language language;
  const ActivityCall call{.tool = ToolName::searchInbox, .state = ActivityCall::State::unknown};
  language.choose(AppLanguage::english);
  EXPECT_EQ(CallTexts::row(call, {}), "Search: no outcome in the log");
  language.choose(AppLanguage::japanese);
  EXPECT_EQ(CallTexts::row(call, {}), "検索: 結果の記録がありません");
  language.choose(AppLanguage::english);
}

TEST(CallTexts, eachToolHasWordsOfItsOwnInEachState) {
  Language language;
  for (const AppLanguage spoken : AppLanguages::allCases) {
    language.choose(spoken);
    QSet<QString> said;
    int count = 0;
    std::vector<std::optional<ToolName>> tools{std::nullopt};
    for (const ToolName tool : allToolNames()) {
      tools.emplace_back(tool);
    }
    for (const std::optional<ToolName> tool : tools) {
      using enum ActivityCall::State;
      for (const auto state : {begun, unknown, brokenOff, ended}) {
        const ActivityCall call{.tool = tool, .state = state};
        said += CallTexts::row(call, {.phrase = LogPhrase::changeMade, .name = "x"});
        ++count;
      }
    }
    EXPECT_EQ(said.size(), count) << rawValue(spoken);
  }
  language.choose(AppLanguage::english);
}

}  // namespace
}  // namespace tarnwell::test

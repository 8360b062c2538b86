#include "MCP/Tools/CallLog.h"

#include <gtest/gtest.h>

namespace tarnwell::test {
namespace {

struct OutcomeRow {
  ToolName tool;
  const char* result;
  const char* expected;
};

const OutcomeRow outcomeRows[] = {
    {ToolName::getStatus, R"({"configured": true})", "configured"},
    {ToolName::getStatus, R"({"configured": false})", "not configured"},
    {ToolName::listFolders, R"({"count": 0, "folders": []})", "0 folders"},
    {ToolName::listFolders, R"({"count": 1, "folders": [{"name": "Private"}]})", "1 folder"},
    {ToolName::searchInbox, R"({"count": 0, "messages": []})", "0 messages"},
    {ToolName::searchInbox, R"({"count": 1, "messages": [{"subject": "Private", "snippet": "Private"}]})",
     "1 message"},
    {ToolName::searchInbox,
     R"({"count": 3, "messages": [{"snippet": "[withheld: sensitive]"}, {"snippet": ""},
                                  {"snippet": "[withheld: sensitive]"}]})",
     "3 messages, 2 withheld"},
    {ToolName::proposeInboxCleanup, R"({"count": 2, "items": [{"snippet": null},
                                                             {"snippet": "[withheld: sensitive]"}]})",
     "2 messages, 1 withheld"},
    {ToolName::getMessageSummary, R"({"bodyWithheld": false, "bodySnippet": "Private"})", "1 message"},
    {ToolName::getMessageSummary, R"({"bodyWithheld": true})", "1 message, withheld"},
    {ToolName::getMessageBody, R"({"returned": true, "blocked": false, "charCount": 42, "body": "Private"})",
     "a text of 42 characters"},
    {ToolName::getMessageBody, R"({"returned": false, "blocked": true})", "withheld"},
    {ToolName::getMessageBody, R"({"returned": false, "blocked": false})", "no text"},
    {ToolName::moveMessage, R"({"executed": true, "dryRun": false, "blocked": false})", "executed"},
    {ToolName::markAsRead, R"({"executed": false, "dryRun": true, "blocked": false})", "previewed"},
    {ToolName::trashMessage, R"({"executed": false, "dryRun": false, "blocked": true})", "blocked"},
};

TEST(CallLog, outcomesAreToldInCountsAndDecisions) {
  for (const OutcomeRow& row : outcomeRows) {
    EXPECT_EQ(outcomeText(row.tool, *JSONValue::decode(row.result)), row.expected) << row.result;
  }
}

}  // namespace
}  // namespace tarnwell::test

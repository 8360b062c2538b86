/// What a client of the current revision is told of the progress of a search.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MCP/CurrentRevisionMessages.h"
#include "MCP/SearchDialogue.h"
#include "MCP/StdioDuringACall.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

/// A search of `count` messages whose bodies arrive `pause` apart.
Dialogue slowSearch(std::uint32_t count, std::chrono::milliseconds pause) {
  Dialogue dialogue;
  for (const Step& step : search(count)) {
    if (step.kind == Step::Kind::answer && step.bytes.find("BODY[") != std::string::npos) {
      dialogue.push_back(waitHere(pause));
    }
    dialogue.push_back(step);
  }
  return dialogue;
}

std::vector<JSONValue> linesOf(const std::string& output) {
  NDJSONFramer framer;
  std::vector<JSONValue> lines;
  framer.push(output, [&lines](std::string_view line) { lines.push_back(*JSONValue::decode(line)); });
  return lines;
}

/// The lines after a search of `count` messages, whose bodies arrive `pause` apart.
class Progress : public StdioDuringACall {
 protected:
  std::vector<JSONValue> linesOfSearch(std::string_view line, std::uint32_t count,
                                       std::chrono::milliseconds pause) {
    FakeIMAPServer& searched = begin(line, Dialogue{pauseHere()} + slowSearch(count, pause));
    searched.resume();
    EXPECT_TRUE(awaitOutput("structuredContent"));
    return linesOf(end());
  }

  static std::string searchWithToken(std::string_view token) {
    return lineOfCall("search_inbox", "1", "{}", R"(,"progressToken":)" + std::string(token));
  }
};

struct TokenRow {
  const char* name;
  const char* token;
};

class ProgressToken : public Progress, public testing::WithParamInterface<TokenRow> {};

TEST_P(ProgressToken, isSentBackWithEachStepButTheLast) {
  const std::vector<JSONValue> lines = linesOfSearch(searchWithToken(GetParam().token), 4, 250ms);
  ASSERT_EQ(lines.size(), 4u);
  for (std::size_t step = 1; step <= 3; ++step) {
    EXPECT_EQ(
        lines[step - 1],
        JSONValue(JSONObject{{"jsonrpc", "2.0"},
                             {"method", "notifications/progress"},
                             {"params", JSONObject{{"progressToken", *JSONValue::decode(GetParam().token)},
                                                   {"progress", std::int64_t(step)},
                                                   {"total", 4}}}}));
  }
  EXPECT_EQ(lines[3]["id"], JSONValue(1));
}

INSTANTIATE_TEST_SUITE_P(Table, ProgressToken,
                         testing::Values(TokenRow{"Zero", "0"}, TokenRow{"Negative", "-7"},
                                         TokenRow{"Empty", R"("")"}, TokenRow{"Text", R"("p")"}),
                         rowName);

TEST_F(Progress, isToldFiveTimesASecondAtMost) {
  const Clock::time_point begin = Clock::now();
  const std::vector<JSONValue> lines = linesOfSearch(searchWithToken("1"), 20, 40ms);
  const auto fifthsOfASecond = (Clock::now() - begin) / 200ms;
  EXPECT_GT(lines.size(), 2u);
  EXPECT_LE(static_cast<long>(lines.size()) - 1, fifthsOfASecond);
  std::int64_t last = 0;
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
    const std::int64_t step = lines[i]["params"]["progress"].intValue().value_or(0);
    EXPECT_GT(step, last);
    EXPECT_LT(step, 20);
    last = step;
  }
}

TEST_F(Progress, isNotToldOfAShortCall) { EXPECT_EQ(linesOfSearch(searchWithToken("1"), 5, 1ms).size(), 1u); }

TEST_F(Progress, isNotToldUnasked) {
  EXPECT_EQ(linesOfSearch(lineOfCall("search_inbox", "1"), 2, 300ms).size(), 1u);
}

TEST_F(Progress, isNotToldInAnOlderRevision) {
  EXPECT_EQ(linesOfSearch(R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":)"
                          R"({"name":"search_inbox","_meta":{"progressToken":1}}})"
                          "\n",
                          2, 300ms)
                .size(),
            1u);
}

}  // namespace
}  // namespace tarnwell::test

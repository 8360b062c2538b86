#include "Core/SafetyPolicy.h"

#include <cstdint>
#include <limits>

namespace tarnwell {

void PrintTo(const WriteDecision& decision, std::ostream* stream) {
  const char* kinds[] = {"blockedDisabled", "blockedReadOnly", "dryRun", "execute"};
  *stream << kinds[static_cast<int>(decision.kind)] << " \"" << decision.text << '"';
}

namespace {

constexpr bool booleans[] = {false, true};
constexpr WriteOperation operations[] = {WriteOperation::move, WriteOperation::markRead,
                                         WriteOperation::trash};
constexpr std::optional<bool> requests[] = {std::nullopt, false, true};
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

const WriteDecision readOnly{WriteDecision::Kind::blockedReadOnly, ""};
const WriteDecision dryRun{WriteDecision::Kind::dryRun, ""};
const WriteDecision execute{WriteDecision::Kind::execute, ""};
WriteDecision disabled(std::string text) { return {WriteDecision::Kind::blockedDisabled, std::move(text)}; }

bool allows(const SafetySettings& settings, WriteOperation operation) {
  return operation == WriteOperation::move       ? settings.allowMove
         : operation == WriteOperation::markRead ? settings.allowMarkRead
                                                 : settings.allowTrash;
}

const char* disabledText(WriteOperation operation) {
  return operation == WriteOperation::move       ? "Folder moves are disabled in Safety settings."
         : operation == WriteOperation::markRead ? "Mark-as-read is disabled in Safety settings."
                                                 : "Trash is disabled in Safety settings.";
}

TEST(SafetyPolicyDecide, everySettingWithEveryOperationAndRequest) {
  int checked = 0;
  for (bool isReadOnly : booleans) {
    for (bool allowMove : booleans) {
      for (bool allowMarkRead : booleans) {
        for (bool allowTrash : booleans) {
          for (bool fallback : booleans) {
            SafetySettings settings;
            settings.readOnly = isReadOnly;
            settings.allowMove = allowMove;
            settings.allowMarkRead = allowMarkRead;
            settings.allowTrash = allowTrash;
            settings.allowCopyMoveFallback = fallback;
            SafetyPolicy policy(settings);
            EXPECT_EQ(policy.mode(), isReadOnly ? SafetyMode::readOnly : SafetyMode::writeEnabled);
            for (WriteOperation operation : operations) {
              for (std::optional<bool> request : requests) {
                SCOPED_TRACE(testing::Message() << "readOnly " << isReadOnly << ", " << rawValue(operation)
                                                << " allowed " << allows(settings, operation) << ", dry run "
                                                << testing::PrintToString(request));
                WriteDecision expected = isReadOnly                     ? readOnly
                                         : !allows(settings, operation) ? disabled(disabledText(operation))
                                         : request == true              ? dryRun
                                                                        : execute;
                EXPECT_EQ(policy.decide(operation, request), expected);
                ++checked;
              }
            }
          }
        }
      }
    }
  }
  EXPECT_EQ(checked, 32 * 9);
}

TEST(SafetyPolicyDecide, defaultSettingsRefuseEveryWrite) {
  SafetyPolicy policy{SafetySettings()};
  EXPECT_EQ(policy.mode(), SafetyMode::readOnly);
  for (WriteOperation operation : operations) {
    for (std::optional<bool> request : requests) {
      EXPECT_EQ(policy.decide(operation, request), readOnly);
    }
  }
}

SafetySettings writable() {
  SafetySettings settings;
  settings.readOnly = false;
  return settings;
}

// A request for a preview does not change what read-only means.
TEST(SafetyPolicyDecide, readOnlyRefusesEvenAPreview) {
  EXPECT_EQ(SafetyPolicy(SafetySettings()).decide(WriteOperation::move, true), readOnly);
}

// A preview would promise a change that is not permitted.
TEST(SafetyPolicyDecide, previewOfADisabledOperationIsRefusedAsDisabled) {
  EXPECT_EQ(SafetyPolicy(writable()).decide(WriteOperation::trash, true),
            disabled("Trash is disabled in Safety settings."));
}

TEST(SafetyPolicyDecide, absentRequestMeansToExecute) {
  SafetyPolicy policy(writable());
  EXPECT_EQ(policy.decide(WriteOperation::move, std::nullopt), execute);
  EXPECT_EQ(policy.decide(WriteOperation::move, true), dryRun);
  EXPECT_EQ(policy.decide(WriteOperation::move, false), execute);
}

TEST(WriteDecisionProperties, followFromTheKind) {
  EXPECT_TRUE(execute.executes());
  EXPECT_FALSE(execute.isBlocked());
  EXPECT_FALSE(dryRun.executes());
  EXPECT_FALSE(dryRun.isBlocked());
  EXPECT_FALSE(readOnly.executes());
  EXPECT_TRUE(readOnly.isBlocked());
  EXPECT_FALSE(disabled("x").executes());
  EXPECT_TRUE(disabled("x").isBlocked());
  EXPECT_EQ(disabled("x"), disabled("x"));
  EXPECT_NE(disabled("x"), disabled("y"));
  EXPECT_NE(readOnly, execute);
}

TEST(SafetyPolicyRawValues, goBothWays) {
  EXPECT_EQ(rawValue(SafetyMode::readOnly), "read-only");
  EXPECT_EQ(rawValue(SafetyMode::writeEnabled), "write-enabled");
  EXPECT_EQ(rawValue(WriteOperation::move), "move");
  EXPECT_EQ(rawValue(WriteOperation::markRead), "markRead");
  EXPECT_EQ(rawValue(WriteOperation::trash), "trash");
  for (WriteOperation operation : operations) {
    EXPECT_EQ(writeOperation(rawValue(operation)), operation);
  }
  for (const char* text : {"", "Move", "move ", "mark_read", "markread", "delete", "expunge"}) {
    EXPECT_EQ(writeOperation(text), std::nullopt) << text;
  }
}

struct BodyRow {
  const char* name;
  std::int64_t maxBodyChars;
  std::optional<std::int64_t> requested;
  std::int64_t expected;
};

TEST(SafetyPolicyClampBodyChars, table) {
  const BodyRow rows[] = {
      {"absent gives the setting", 4000, std::nullopt, 4000},
      {"absent is capped by the hard limit", 50000, std::nullopt, 10000},
      {"less than the cap is granted", 4000, 100, 100},
      {"the cap itself is granted", 4000, 4000, 4000},
      {"more than the cap is cut", 4000, 4001, 4000},
      {"more than the hard limit is cut", 50000, 20000, 10000},
      {"zero is raised to 1", 4000, 0, 1},
      {"a negative request is raised to 1", 4000, -5, 1},
      {"the smallest request is raised to 1", 4000, smallest, 1},
      {"the largest request is cut", 4000, largest, 4000},
      {"the largest setting is cut", largest, largest, 10000},
      {"a request against a setting of 0 is raised to 1", 0, 100, 1},
      {"a request against a negative setting is raised to 1", -7, 100, 1},
      {"a request against the smallest setting is raised to 1", smallest, 100, 1},
  };
  for (const BodyRow& row : rows) {
    SafetySettings settings;
    settings.maxBodyChars = row.maxBodyChars;
    EXPECT_EQ(SafetyPolicy(settings).clampBodyChars(row.requested), row.expected) << row.name;
  }
}

// A setting of 0 or less means no text unless the client asks for it.
TEST(SafetyPolicyClampBodyChars, withoutARequestTheSettingStandsAsItIs) {
  for (std::int64_t setting : {std::int64_t{0}, std::int64_t{-7}, smallest}) {
    SafetySettings settings;
    settings.maxBodyChars = setting;
    EXPECT_EQ(SafetyPolicy(settings).clampBodyChars(std::nullopt), setting);
  }
}

struct LimitRow {
  const char* name;
  std::int64_t maxFetch;
  std::int64_t maxMessagesPerCall;
  std::optional<std::int64_t> requested;
  std::int64_t hardMax;
  std::int64_t expected;
};

TEST(SafetyPolicyClampLimit, table) {
  const LimitRow rows[] = {
      {"absent with the default settings", 50, 20, std::nullopt, 100, 20},
      {"the default settings cap every request", 50, 20, 99, 100, 20},
      {"the hard limit is the smallest", 200, 150, 500, 100, 100},
      {"maxFetch is the smallest", 7, 20, 99, 100, 7},
      {"maxMessagesPerCall is the smallest", 50, 3, 99, 100, 3},
      {"the request is the smallest", 50, 20, 5, 100, 5},
      {"zero is raised to 1", 50, 20, 0, 100, 1},
      {"a negative request is raised to 1", 50, 20, -1, 100, 1},
      {"the smallest request is raised to 1", 50, 20, smallest, 100, 1},
      {"the largest request is cut", 50, 20, largest, 100, 20},
      {"maxFetch of 0 acts as 1", 0, 20, 5, 100, 1},
      {"a negative maxFetch acts as 1", -4, 20, std::nullopt, 100, 1},
      {"maxMessagesPerCall of 0 acts as 1", 50, 0, 5, 100, 1},
      {"a hard limit of 0 acts as 1", 50, 20, 5, 0, 1},
      {"everything at its largest", largest, largest, largest, largest, largest},
      {"everything at its smallest", smallest, smallest, smallest, smallest, 1},
  };
  for (const LimitRow& row : rows) {
    SafetySettings settings;
    settings.maxFetch = row.maxFetch;
    settings.maxMessagesPerCall = row.maxMessagesPerCall;
    EXPECT_EQ(SafetyPolicy(settings).clampLimit(row.requested, row.hardMax), row.expected) << row.name;
  }
}

// A cap below the default lowers it. A cap above the default does not raise it.
TEST(SafetyPolicyClampLimit, defaultIsAppliedBeforeTheCaps) {
  SafetySettings settings;
  settings.maxFetch = 200;
  settings.maxMessagesPerCall = 150;
  EXPECT_EQ(SafetyPolicy(settings).clampLimit(std::nullopt, 100), 20);
  settings.maxFetch = 5;
  EXPECT_EQ(SafetyPolicy(settings).clampLimit(std::nullopt, 100), 5);
}

}  // namespace
}  // namespace tarnwell

#include "Platform/SystemLog.h"

#include <os/log.h>

#include "apple/FrameworksInMemory.h"

namespace tarnwell::test {
namespace {

struct TypeRow {
  SystemLogType type;
  os_log_type_t expected;
};

const TypeRow types[] = {
    {SystemLogType::debug, OS_LOG_TYPE_DEBUG},
    {SystemLogType::info, OS_LOG_TYPE_INFO},
    {SystemLogType::standard, OS_LOG_TYPE_DEFAULT},
    {SystemLogType::error, OS_LOG_TYPE_ERROR},
};

class UnifiedLog : public testing::Test {
 protected:
  void SetUp() override { frameworks = {}; }

  FrameworksInMemory& frameworks = frameworksInMemory();
  SystemLog log{"app.tarnwell.Tarnwell"};
};

TEST_F(UnifiedLog, entryIsPublicUnderItsSubsystemCategoryAndType) {
  for (const TypeRow& row : types) {
    log.write(row.type, std::string_view("imap or more").substr(0, 4), "100% %s\nof it");
    EXPECT_EQ(frameworks.logCalls.back(),
              (LogCall{"app.tarnwell.Tarnwell", "imap", row.expected, "%{public}s", "100% %s\nof it"}));
  }
  EXPECT_EQ(frameworks.logCalls.size(), std::size(types));
}

TEST_F(UnifiedLog, systemTellsWhichTypesOfACategoryItTakes) {
  frameworks.disabledLogs = {{OS_LOG_TYPE_DEBUG, "imap"}};
  EXPECT_FALSE(log.isEnabled(SystemLogType::debug, "imap"));
  EXPECT_TRUE(log.isEnabled(SystemLogType::debug, "mcp"));
  EXPECT_TRUE(log.isEnabled(SystemLogType::error, "imap"));
}

}  // namespace
}  // namespace tarnwell::test

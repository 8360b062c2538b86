#include "App/Models/ActivityCall.h"

#include <gtest/gtest.h>

#include <set>

#include "MCP/Tools/ToolName.h"

namespace tarnwell::test {
namespace {

TEST(CalledTool, areAllThatThereAre) {
  std::set<CalledTool> known;
  for (const ToolName name : allToolNames()) {
    const std::string_view raw = rawValue(name);
    known.insert(calledTool(QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size()))));
  }
  EXPECT_EQ(known.size(), allToolNames().size());
  EXPECT_FALSE(known.contains(CalledTool::other));
  EXPECT_EQ(calledTool("search_inboxes"), CalledTool::other);
}

}  // namespace
}  // namespace tarnwell::test

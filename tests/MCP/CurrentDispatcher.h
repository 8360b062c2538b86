#pragma once

#include <gtest/gtest.h>

#include <string>

#include "MCP/CurrentRevisionMessages.h"
#include "MCP/MCPServer.h"
#include "MCP/Tools/ToolFixture.h"

namespace tarnwell::test {

class CurrentDispatcher : public ToolTest {
 protected:
  CurrentDispatcher() : server_(tools()) {}

  std::string answerTo(std::string_view message) { return server_.handleRaw(message).value_or("(nothing)"); }

  JSONValue resultOf(std::string_view message) {
    const JSONValue answer = *JSONValue::decode(answerTo(message));
    EXPECT_EQ(answer["result"]["resultType"], JSONValue("complete")) << answer.serialized();
    EXPECT_EQ(answer["result"]["_meta"].serialized(),
              R"({"io.modelcontextprotocol/serverInfo":{"name":"Tarnwell","version":"0.1.0"}})");
    return answer["result"];
  }

  MCPServer server_;
};

}  // namespace tarnwell::test

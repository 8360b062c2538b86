#include "Assistants/Blocks.h"

#include "Assistants/Assistants.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

struct BlockRow {
  const char* name;
  BlockFormat format;
  const char* helper;
  const char* block;
};

class Blocks : public testing::TestWithParam<BlockRow> {};

TEST_P(Blocks, nameTheHelperAsTheFormatWantsIt) {
  EXPECT_EQ(connectionBlock(GetParam().format, GetParam().helper), GetParam().block);
}

INSTANTIATE_TEST_SUITE_P(
    all, Blocks,
    testing::Values(
        BlockRow{"json", BlockFormat::mcpServersJSON, "/usr/bin/tarnwell",
                 R"({
  "mcpServers": {
    "tarnwell": {
      "args": [
        "serve"
      ],
      "command": "/usr/bin/tarnwell"
    }
  }
})"},
        BlockRow{"servers", BlockFormat::serversJSON, "/a b/tarnwell",
                 R"({
  "servers": {
    "tarnwell": {
      "args": [
        "serve"
      ],
      "command": "/a b/tarnwell",
      "type": "stdio"
    }
  }
})"},
        BlockRow{"opencode", BlockFormat::opencodeJSON, "/usr/bin/tarnwell",
                 R"({
  "mcp": {
    "tarnwell": {
      "command": [
        "/usr/bin/tarnwell",
        "serve"
      ],
      "enabled": true,
      "type": "local"
    }
  }
})"},
        BlockRow{"toml", BlockFormat::codexTOML, "/usr/bin/tarnwell",
                 "[mcp_servers.tarnwell]\ncommand = \"/usr/bin/tarnwell\"\nargs = [\"serve\"]\n"},
        BlockRow{"tomlQuoted", BlockFormat::codexTOML, "/a \"b\"\\'c'\x7F\u0085\n日本/tarnwell",
                 "[mcp_servers.tarnwell]\ncommand = "
                 "\"/a \\\"b\\\"\\\\'c'\\u007F\\u0085\\n日本/tarnwell\"\nargs = [\"serve\"]\n"},
        BlockRow{"goose", BlockFormat::gooseYAML, "/a: #b/tarnwell",
                 "extensions:\n  tarnwell:\n    type: stdio\n    name: tarnwell\n    enabled: true\n"
                 "    cmd: \"/a: #b/tarnwell\"\n    args: [\"serve\"]\n    timeout: 300\n"},
        BlockRow{"continueYAML", BlockFormat::continueYAML, "/%TAG/tarnwell",
                 "mcpServers:\n  - name: tarnwell\n    command: \"/%TAG/tarnwell\"\n    args: [\"serve\"]\n"},
        BlockRow{"jsonNotUTF8", BlockFormat::mcpServersJSON, "/caf\xE9/tarnwell", "{}"},
        BlockRow{"serversNotUTF8", BlockFormat::serversJSON, "/caf\xE9/tarnwell", "{}"},
        BlockRow{"tomlNotUTF8", BlockFormat::codexTOML, "/caf\xE9/tarnwell", ""},
        BlockRow{"gooseNotUTF8", BlockFormat::gooseYAML, "/caf\xE9/tarnwell", ""},
        BlockRow{"continueNotUTF8", BlockFormat::continueYAML, "/caf\xE9/tarnwell", ""}),
    rowName);

struct ShellRow {
  const char* name;
  std::vector<std::string> command;
  const char* line;
};

class ShellLine : public testing::TestWithParam<ShellRow> {};

TEST_P(ShellLine, isWhatAPersonWouldType) { EXPECT_EQ(shellLine(GetParam().command), GetParam().line); }

INSTANTIATE_TEST_SUITE_P(
    all, ShellLine,
    testing::Values(ShellRow{"plain",
                             {"/usr/bin/claude", "mcp", "add", "--", "/a-b_c/d.e", "serve"},
                             "/usr/bin/claude mcp add -- /a-b_c/d.e serve"},
                    ShellRow{"blanks", {"a", "b c"}, "a 'b c'"},
                    ShellRow{"quotes", {"it's", "\"x\""}, "'it'\\''s' '\"x\"'"},
                    ShellRow{"empty", {"a", ""}, "a ''"},
                    ShellRow{"variable", {"$HOME", "~", "*", ";", "!"}, "'$HOME' '~' '*' ';' '!'"},
                    ShellRow{"lines", {"a\nb"}, "'a\nb'"},
                    ShellRow{"japanese", {"/メール/tarnwell"}, "'/メール/tarnwell'"}),
    rowName);

}  // namespace
}  // namespace tarnwell::test

/// The files that MCP clients write, before and after the entry. Each ends as its client leaves it.

#include "EditedTexts.h"

namespace tarnwell::test {
namespace {

class ClientTexts : public testing::TestWithParam<TextRow> {};

TEST_P(ClientTexts, takesTheEntryAndLosesItAgain) { expectAddedAndRemoved(GetParam(), helperEntry); }

// clang-format off
const TextRow rows[] = {
    {"claudeDesktopFresh", servers, R"({«
  "mcpServers": {‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›}
»})"},
    {"claudeDesktopWithPreferencesOnly", servers, R"({
  "globalShortcut": "",
  "preferences": {
    "menuBarEnabled": false
  }«,
  "mcpServers": {‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›}»
})"},
    {"claudeDesktopWithAServer", servers, R"({
  "mcpServers": {
    "filesystem": {
      "command": "npx",
      "args": [
        "-y",
        "@modelcontextprotocol/server-filesystem",
        "/home/user/Desktop"
      ]
    }«‹,
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  },
  "globalShortcut": "Ctrl+Space"
}
)"},
    {"claudeDesktopFromAGuide", servers, R"({
  "mcpServers": {
    "memory": { "command": "npx", "args": ["-y", "@modelcontextprotocol/server-memory"] }«‹,
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  }
}
)"},
    {"claudeCodeWithoutServers", servers, R"({
  "numStartups": 12,
  "installMethod": "native",
  "projects": {
    "/home/user/work": {
      "allowedTools": [],
      "mcpServers": {},
      "hasTrustDialogAccepted": true
    }
  },
  "userID": "5f3a"«,
  "mcpServers": {‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›}»
})"},
    {"claudeCodeWithServersAmongOthers", servers, R"({
  "tipsHistory": {
    "new-user-warmup": 3
  },
  "mcpServers": {
    "github": {
      "type": "http",
      "url": "https://api.example.org/mcp/",
      "headers": {
        "Authorization": "Bearer x"
      }
    }«‹,
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  },
  "cachedChangelog": "# Changelog\n\n- {\"a\": [1, 2]}, // no comment\n",
  "projects": {}
})"},
    {"geminiSettings", servers, R"({
  "security": {
    "auth": {
      "selectedType": "oauth-personal"
    }
  },
  "ui": {
    "theme": "Default"
  }«,
  "mcpServers": {‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›}»
})"},
    {"geminiSettingsWithComments", servers, R"({
  // see the guide
  "ui": { "theme": "GitHub" }, /* dark: "Dracula" */
  "mcpServers": {
    "docs": { "httpUrl": "https://example.org/mcp" }«‹,›» // slow«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  }
}
)"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Texts, ClientTexts, testing::ValuesIn(rows), rowName);

}  // namespace
}  // namespace tarnwell::test

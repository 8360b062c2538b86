/// The files that MCP clients in editors write, before and after the entry. Each ends as its client leaves
/// it.

#include "EditedTexts.h"

namespace tarnwell::test {
namespace {

class EditorTexts : public testing::TestWithParam<TextRow> {};

TEST_P(EditorTexts, takesTheEntryAndLosesItAgain) { expectAddedAndRemoved(GetParam(), helperEntry); }

// clang-format off
const TextRow rows[] = {
    {"visualStudioCodeFresh", {"servers", "tarnwell"}, R"({
	"servers": {«‹
		"tarnwell": {
			"args": ["serve"],
			"command": "/opt/tarnwell"
		}
	›»},
	"inputs": []
})"},
    {"visualStudioCodeWithInputs", {"servers", "tarnwell"}, R"({
	"inputs": [
		{ "type": "promptString", "id": "key", "password": true },
	],
	"servers": {
		// one of the house
		"perplexity": {
			"type": "stdio",
			"command": "npx",
			"env": { "KEY": "${input:key}" },
		},«‹
		"tarnwell": {
			"args": ["serve"],
			"command": "/opt/tarnwell"
		},›»
	},
}
)"},
    {"cursorOnOneLine", servers, R"({"mcpServers": {«‹"tarnwell": {"args": ["serve"], "command": "/opt/tarnwell"}›»}}
)"},
    {"cursorWithTwoServers", servers, R"({
  "mcpServers": {
    "linear": { "url": "https://mcp.example.org/sse" },
    "local": {
      "command": "node",
      "args": ["server.js"]
    }«‹,
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  }
}
)"},
    {"windsurfFresh", servers, R"({
  "mcpServers": {«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›»}
}
)"},
    {"windsurfEmptyFile", servers, R"(«{
  "mcpServers": {‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›}
}
»)"},
    {"windsurfDisabledServer", servers, R"({
    "mcpServers": {
        "figma": {
            "serverUrl": "http://127.0.0.1:3845/sse",
            "disabled": true
        }«‹,
        "tarnwell": {
            "args": ["serve"],
            "command": "/opt/tarnwell"
        }›»
    }
})"},
    {"zedFirstSettings", {"context_servers", "tarnwell"}, R"(// Zed settings
//
// For information on how to configure Zed, see the documentation.
{
  "ui_font_size": 16,
  "theme": {
    "mode": "system", // or "dark"
    "light": "One Light",
    "dark": "One Dark",
  },«
  "context_servers": {‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›},»
}
)"},
    {"zedWithContextServers", {"context_servers", "tarnwell"}, R"({
  "context_servers": {
    "postgres": {
      "source": "custom",
      "command": "pg",
      "settings": {},
    },«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    },›»
    // "sqlite": {},
  },
  "vim_mode": true,
}
)"},
    {"lmStudioFresh", servers, R"({
  "mcpServers": {«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›»}
})"},
    {"clineWithItsOwnMembers", servers, R"({
  "mcpServers": {
    "weather": {
      "autoApprove": [],
      "disabled": false,
      "timeout": 60,
      "type": "stdio",
      "command": "python3"
    }«‹,
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  }
})"},
    {"rooMinified", servers, R"({"mcpServers":{«‹"tarnwell":{"args":["serve"],"command":"/opt/tarnwell"}›»}})"},
    {"kiroWithPowers", servers, R"({
  "mcpServers": {
    "fetch": {
      "command": "uvx",
      "args": ["mcp-server-fetch"],
      "env": {},
      "autoApprove": []
    }«‹,
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  },
  "powers": {
    "mcpServers": {}
  }
}
)"},
    {"flatKeyWithADot", {"amp.mcpServers", "tarnwell"}, R"({
  "amp.tools.disable": [],
  "amp.mcpServers": {«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›»}
}
)"},
    {"nestedBelowASection", {"mcp", "servers", "tarnwell"}, R"({
  "$schema": "https://example.org/config.json",
  "mcp": {
    "servers": {«‹
      "tarnwell": {
        "args": ["serve"],
        "command": "/opt/tarnwell"
      }
    ›»},
    "timeout": 5
  }
}
)"},
    {"sectionAndServersAreMissing", {"mcp", "servers", "tarnwell"}, R"({
  "$schema": "https://example.org/config.json"«,
  "mcp": {
    "servers": {‹
      "tarnwell": {
        "args": ["serve"],
        "command": "/opt/tarnwell"
      }
    ›}
  }»
}
)"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Texts, EditorTexts, testing::ValuesIn(rows), rowName);

}  // namespace
}  // namespace tarnwell::test

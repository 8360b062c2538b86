#include "Assistants/AssistantTable.h"

#include <cstddef>

namespace tarnwell {

std::span<const AssistantRow> assistantRows() {
  using enum BaseFolder;
  static const std::vector<AssistantRow> rows = {
      {.id = AssistantID::claudeDesktop,
       .name = "Claude Desktop",
       .places = {{settings, "Claude", "Claude/claude_desktop_config.json"}},
       .object = "mcpServers",
       .rewritesFile = true,
       .programs = {"claude-desktop"},
       .application = "Claude.app",
       .processes = {"Claude"},
       .folder = "claude-desktop"},
      {.id = AssistantID::claudeCode,
       .name = "Claude Code",
       .places = {{variable, ".claude.json", ".claude.json", "CLAUDE_CONFIG_DIR"},
                  {home, ".claude.json", ".claude.json"}},
       .object = "mcpServers",
       .shape = EntryShape::typedCommandWithEnvironment,
       .hasCommands = true,
       .rewritesFile = true,
       .programs = {"claude"},
       .folder = "claude-code"},
      {.id = AssistantID::codex,
       .name = "Codex",
       .places = {{variable, "", "config.toml", "CODEX_HOME"}, {home, ".codex", ".codex/config.toml"}},
       .object = "mcp_servers",
       .shape = EntryShape::tomlTable,
       .hasCommands = true,
       .programs = {"codex"},
       .application = "Codex.app"},
      // The trace is the file, because another program keeps a folder in ~/.gemini too.
      {.id = AssistantID::geminiCLI,
       .name = "Gemini CLI",
       .places = {{variable, ".gemini/settings.json", ".gemini/settings.json", "GEMINI_CLI_HOME"},
                  {home, ".gemini/settings.json", ".gemini/settings.json"}},
       .object = "mcpServers",
       .hasCommands = true,
       .programs = {"gemini"}},
      // Its command "code --add-mcp" can neither remove nor list, so disconnecting would need the file
      // anyway.
      {.id = AssistantID::visualStudioCode,
       .name = "Visual Studio Code",
       .places = {{settings, "Code/User", "Code/User/mcp.json"}},
       .object = "servers",
       .shape = EntryShape::typedCommand,
       .programs = {"code"},
       .application = "Visual Studio Code.app"},
      {.id = AssistantID::cursor,
       .name = "Cursor",
       .places = {{home, ".cursor", ".cursor/mcp.json"}},
       .object = "mcpServers",
       .programs = {"cursor"},
       .application = "Cursor.app"},
      {.id = AssistantID::windsurf,
       .name = "Windsurf",
       .places = {{home, ".codeium/windsurf", ".codeium/windsurf/mcp_config.json"}},
       .object = "mcpServers",
       .programs = {"windsurf"},
       .application = "Windsurf.app"},
      // An entry once needed "source": "custom". Today's Zed removes it, and versions between add it.
      {.id = AssistantID::zed,
       .name = "Zed",
       .places = {{dotConfig, "zed", "zed/settings.json"}},
       .object = "context_servers",
       .programs = {"zed", "zeditor"},
       .application = "Zed.app",
       .processes = {"zed-editor"}},
      {.id = AssistantID::lmStudio,
       .name = "LM Studio",
       .places = {{home, ".lmstudio", ".lmstudio/mcp.json"},
                  {home, ".cache/lm-studio", ".cache/lm-studio/mcp.json"}},
       .object = "mcpServers",
       .programs = {"lm-studio", "lms"},
       .application = "LM Studio.app"},
      {.id = AssistantID::cline,
       .name = "Cline",
       .places = {{settings, "Code/User/globalStorage/saoudrizwan.claude-dev",
                   "Code/User/globalStorage/saoudrizwan.claude-dev/settings/cline_mcp_settings.json"}},
       .object = "mcpServers"},
      {.id = AssistantID::roo,
       .name = "Roo Code",
       .places = {{settings, "Code/User/globalStorage/rooveterinaryinc.roo-cline",
                   "Code/User/globalStorage/rooveterinaryinc.roo-cline/settings/mcp_settings.json"}},
       .object = "mcpServers"},
  };
  return rows;
}

const AssistantRow& assistantRow(AssistantID id) { return assistantRows()[static_cast<std::size_t>(id)]; }

}  // namespace tarnwell

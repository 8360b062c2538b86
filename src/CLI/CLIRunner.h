#pragma once

/// The command words: `serve`, `test-connection`, `status`, `print-config`, help.
///
/// Reports go to standard output, diagnostics to standard error; nothing is thrown. Exit statuses: 0 done
/// (or help); 1 `test-connection` without account, password or connection, and `status` with an error;
/// 2 no command or an unknown one.

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwell::CLIRunner {

/// Runs the command that the first word names (exact, case-sensitive) and gives the exit status. Further
/// words are ignored.
int run(const std::vector<std::string>& arguments);

/// The stdio MCP server, until standard input ends.
int serve();

/// Logs in with the saved settings, and saves how it went.
int testConnection();

/// Prints what `get_status` tells.
int status();

/// Prints the configuration object for an MCP client. Reads neither settings nor secrets. When the path of
/// the program is not UTF-8 the object is empty, and a line on standard error says why.
int printConfig();

/// The absolute path of the running program, symbolic links resolved, when the system tells it; else what the
/// name by which it was called means in the working directory.
std::filesystem::path ownExecutablePath();

}  // namespace tarnwell::CLIRunner

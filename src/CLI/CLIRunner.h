#pragma once

/// The command words: `serve`, `test-connection`, `status`, `print-config`, help.
///
/// Reports go to standard output, diagnostics to standard error. Nothing is thrown. Exit statuses:
/// - 0: done, or help;
/// - 1: `test-connection` without account, password or connection, or `status` with an error;
/// - 2: no command or an unknown one.

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwell::CLIRunner {

/// Runs the command of the first word (exact, case-sensitive) and returns the exit status. Ignores further
/// words.
int run(const std::vector<std::string>& arguments);

/// Runs the stdio MCP server until standard input ends.
int serve();

/// Logs in with the saved settings, and saves whether that worked.
int testConnection();

/// Prints the result of `get_status`.
int status();

/// Prints the configuration object for an MCP client. Reads neither settings nor secrets. When the program's
/// path is not UTF-8, the object is empty and a line on standard error says why.
int printConfig();

/// The absolute path of the running program without symbolic links, if the system tells it. Else the name by
/// which it was called, resolved in the working directory; if that fails, the name itself.
std::filesystem::path ownExecutablePath();

}  // namespace tarnwell::CLIRunner

#pragma once

/// Which MCP clients are on this machine, how each is connected to the helper, and connecting them.
///
///     const Machine machine = Machine::thisOne();
///     for (const AssistantState& assistant : findAssistants(machine)) ...
///     ConnectionPlan planned = plan(machine, AssistantID::cursor, ConnectionPlan::Goal::connect);
///     // show planned.commands, planned.change or planned.block
///     ConnectionDone done = carryOut(machine, planned);
///     undo(machine, done);
///
/// Nothing is changed before `carryOut`. A client that has a command for it is told by that command, a JSON
/// file is edited, and for anything else the plan is a text to copy. Only the entry "tarnwell" of a client is
/// ever changed.
///
/// Threads: any, one at a time. Reads files and may run clients' commands, which takes seconds: not for a
/// thread that shows a window.

#include <chrono>
#include <exception>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Assistants/Blocks.h"
#include "Assistants/ConfigurationFile.h"
#include "MCP/JSON/JSONValue.h"
#include "Platform/RunningPrograms.h"

namespace tarnwell {

enum class AssistantID {
  claudeDesktop,
  claudeCode,
  codex,
  geminiCLI,
  visualStudioCode,
  cursor,
  windsurf,
  zed,
  lmStudio,
  cline,
  roo
};

/// In which folders programs keep their settings.
enum class FolderLayout { linuxDesktop, macOS };

/// Where and how to look.
struct Machine {
  std::filesystem::path home;
  /// The value of a variable such as PATH or CODEX_HOME. Absent when it is not set.
  std::function<std::optional<std::string>(const char*)> environment;
  std::function<std::vector<RunningProgram>()> runningPrograms;
  /// The absolute path of the helper, beside the app.
  std::filesystem::path helper;
  FolderLayout layout;
  /// The name of the machine, which some clients note in a lock.
  std::string hostName{};
  /// What comes before folders outside the home directory, such as /usr/local/bin and /Applications.
  std::filesystem::path systemRoot = "/";
  /// A client's command that takes longer is ended.
  std::chrono::milliseconds commandLimit = std::chrono::seconds(60);

  static Machine thisOne();
};

/// How a client is told about the helper.
enum class ConnectingWay {
  /// A command of the client.
  ownCommand,
  /// A change of its file.
  file,
  /// A text that the user copies into its file.
  block
};

struct AssistantState {
  enum class Connection {
    none,
    /// To the helper beside this app.
    here,
    /// There is an entry, and its command is another program.
    elsewhere,
    /// Its file cannot be read or understood.
    unknown
  };

  AssistantID id;
  /// A proper name, the same in every language: "Claude Desktop".
  std::string name{};
  /// Its program or its folder was found.
  bool isInstalled = false;
  Connection connection = Connection::none;
  /// Its entry is there, but switched off in the client.
  bool isSwitchedOff = false;
  /// For `elsewhere`: the command in its entry. Empty when the entry has none, such as one with an address.
  std::string otherCommand{};
  /// To connect it, or to disconnect it when it is connected here.
  ConnectingWay way = ConnectingWay::file;
  /// Its configuration, as the client names it.
  std::filesystem::path file{};
  /// For `unknown`: a `JSONEditError`, `ConfigurationFileError` or `AssistantError` that says why. After the
  /// last, which is `notTOML`, there is a plan all the same: a block.
  std::exception_ptr problem{};
};

/// Throws nothing but for want of memory.
AssistantState assistantState(const Machine& machine, AssistantID id);

/// Every known client in the order of `AssistantID`.
std::vector<AssistantState> findAssistants(const Machine& machine);

/// Why a client could not be told.
class AssistantError : public std::runtime_error {
 public:
  enum class Kind {
    /// It runs and would write its old file over the change. `details` is empty.
    running,
    /// The helper is not where it should be. `details` is the path.
    noHelper,
    /// The path of the helper is not UTF-8, so no configuration can name it. `details` is the path.
    helperNotUTF8,
    /// The folder of its file does not exist: it was never started. `details` is the folder.
    neverStarted,
    /// Its command cannot be started. `details` is the system's reason.
    notStarted,
    /// Its command failed. `details` is what it printed, also for the next two.
    failed,
    /// Its command took too long and was ended. `details` is what it had printed.
    tookTooLong,
    /// Its command succeeded, and yet the client is not connected, or not disconnected. `details` is what it
    /// printed.
    withoutEffect,
    /// Its configuration is not understood as TOML. `details` is where: "line 3: ...". Only for
    /// `AssistantState::problem`.
    notTOML,
    /// Its configuration was changed: since the plan was made, so the commands would do something else, or
    /// since it was carried out, so undo would destroy that, or cannot put back what was there before.
    changed,
    /// A block can only be copied by hand.
    onlyByHand
  };

  AssistantError(Kind kind, AssistantID assistant, std::string details,
                 std::optional<std::filesystem::path> backup = {});

  Kind kind() const { return kind_; }
  AssistantID assistant() const { return assistant_; }
  const std::string& details() const { return details_; }
  /// After a command that may have changed the file: the copy of what that was.
  const std::optional<std::filesystem::path>& backup() const { return backup_; }

 private:
  Kind kind_;
  AssistantID assistant_;
  std::string details_;
  std::optional<std::filesystem::path> backup_;
};

/// What will be done. Made first, shown, then carried out.
struct ConnectionPlan {
  enum class Goal { connect, disconnect };

  AssistantID id;
  Goal goal = Goal::connect;
  ConnectingWay way = ConnectingWay::file;
  /// For `ownCommand`: program and arguments of each command, in order.
  std::vector<std::vector<std::string>> commands{};
  /// The entry as it is now. Absent: there is none.
  std::optional<JSONValue> entryBefore{};
  /// For `file`.
  std::optional<FileChange> change{};
  /// For `block`: the text to copy, or the lines to remove as they stand.
  std::string block{};
  /// The configuration that changes, or that the block belongs in.
  std::filesystem::path file{};

  /// It is already as wanted.
  bool isNothing() const;
};

/// Throws `JSONEditError`, `ConfigurationFileError` or `AssistantError`. Changes nothing.
ConnectionPlan plan(const Machine& machine, AssistantID id, ConnectionPlan::Goal goal);

struct ConnectionDone {
  ConnectionPlan plan;
  /// The file before and after, and the copy of what it was. For `ownCommand` as the command left it. A
  /// client that rewrites its file has a copy only if there was an entry.
  std::optional<WrittenFile> written{};
  /// The entry as it was left. Absent: there was none.
  std::optional<JSONValue> entryAfter{};
};

/// Does what the plan says, and makes sure of it. Throws as `plan` does. After a failed command the entry
/// that was there before is put back, by the client's commands, else in its JSON file while the client does
/// not run. The error has the copy of the file when that is not byte for byte what it was.
ConnectionDone carryOut(const Machine& machine, const ConnectionPlan& planned);

/// Brings back what was there before: the bytes of the file if nobody has changed it since, and a command
/// changed nothing but the entry; else the entry, if nobody has put another one there. Throws as `carryOut`
/// does. After a failure it can be called again.
void undo(const Machine& machine, const ConnectionDone& done);

/// The command as a person would type it in a shell.
std::string shellLine(const std::vector<std::string>& command);

/// The name of the known client that this process belongs to, such as "Claude Code". Absent for any other.
std::optional<std::string> assistantName(const RunningProgram& program);

}  // namespace tarnwell

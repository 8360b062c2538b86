#pragma once

/// Which program started a helper, in a name that a person knows.
///
///     startingProgram(4711, runningPrograms())  // "Claude Desktop"
///
/// Threads: any.

#include <QString>
#include <vector>

#include "Platform/RunningPrograms.h"

namespace tarnwell {

/// The nearest assistant among the programs that started this process. Else the name of the program that
/// started it itself. Empty when that name says nothing, as that of a shell, and when the process is no
/// helper or does not run.
QString startingProgram(qint64 helper, const std::vector<RunningProgram>& running);

}  // namespace tarnwell

#pragma once

/// The memory of the process, in which the password stands for the time of a call.

namespace tarnwell {

/// Keeps other programs of the same user out of this one: none may attach to it, and no core file is made
/// when it dies. The administrator may still look, and so may a program that traces this one since before it
/// began, as a debugger that starts it. Call it before there is a secret.
void keepMemoryPrivate();

}  // namespace tarnwell

#pragma once

/// Protects the memory of the process, which holds the password during a call.

namespace tarnwell {

/// Stops other programs of the same user from attaching to this process, and prevents core files. Root can
/// still read the memory. So can a tracer that was there before the call, such as a debugger that started the
/// program. Call it before the process holds a secret.
void keepMemoryPrivate();

}  // namespace tarnwell

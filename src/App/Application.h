#pragma once

/// The companion app as a whole.

namespace tarnwell {

/// Shows the window until the user closes it. Returns the exit status.
int runApplication(int argc, char** argv);

}  // namespace tarnwell

#pragma once

/// How the app writes the path of a file: short where it can be.

#include <QString>

namespace tarnwell {

/// "~/.cursor/mcp.json" for a file in the user's home directory, any other path as it is.
QString shownPath(const QString& path);

}  // namespace tarnwell

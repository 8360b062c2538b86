#pragma once

/// What the commands write for a person or a script. A stream that is closed or full is nobody's business.

#include <string_view>

namespace tarnwell {

/// The text and one line feed on standard output.
void print(std::string_view text);

/// The text exactly as it is on standard error.
void printError(std::string_view text);

}  // namespace tarnwell

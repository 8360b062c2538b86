#pragma once

/// The output of the commands, for people and scripts. Write errors are ignored.

#include <string_view>

namespace tarnwell {

/// Writes the text and one line feed to standard output.
void print(std::string_view text);

/// Writes the text unchanged to standard error.
void printError(std::string_view text);

}  // namespace tarnwell

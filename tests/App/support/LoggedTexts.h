#pragma once

/// The texts that the sources give to `AppLogger`, with samples in place of what is only known while the
/// program runs.

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwell::test {

struct LoggedText {
  std::string file;
  std::string text;
};

/// One for each call and, where the text has several forms, for each form.
std::vector<LoggedText> textsOfTheSources(const std::filesystem::path& sources);

}  // namespace tarnwell::test

#include "support/MailSamples.h"

#include <cstddef>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace tarnwell::test {

namespace {

constexpr std::string_view headerMark = "=== ";

/// The text after the prefix.
std::optional<std::string> after(std::string_view prefix, std::string_view line) {
  if (!line.starts_with(prefix) || line.size() == prefix.size()) {
    return std::nullopt;
  }
  return std::string(line.substr(prefix.size()));
}

/// The first line of a mail: "=== secret-en-017 | one-time code | plain".
std::optional<MailSample> readHeader(std::string_view line) {
  constexpr std::string_view separator = " | ";
  line.remove_prefix(headerMark.size());
  const std::size_t first = line.find(separator);
  const std::size_t last = line.rfind(separator);
  if (first == 0 || first == last) {
    return std::nullopt;
  }
  const std::string_view format = line.substr(last + separator.size());
  const std::size_t kind = first + separator.size();
  if ((format != "plain" && format != "html") || kind >= last) {
    return std::nullopt;
  }
  MailSample sample;
  sample.id = line.substr(0, first);
  sample.kind = line.substr(kind, last - kind);
  sample.isHTML = format == "html";
  return sample;
}

/// Reads one line after the header, counted from 1. False if it does not belong there.
bool readLine(MailSample& sample, std::size_t number, const std::string& line) {
  if (number == 1 || number == 2) {
    const std::optional<std::string> value = after(number == 1 ? "Subject: " : "From: ", line);
    (number == 1 ? sample.subject : sample.from) = value.value_or("");
    return value.has_value();
  }
  if (number == 3) {
    return line.empty();
  }
  sample.body += line + '\n';
  return true;
}

}  // namespace

std::vector<MailSample> readMailSamples(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::size_t lineNumber = 0;
  const auto check = [&](bool condition, const std::string& problem) {
    if (!condition) {
      throw std::runtime_error(path.string() + ", line " + std::to_string(lineNumber) + ": " + problem);
    }
  };
  check(file.is_open(), "the file cannot be opened");

  std::vector<MailSample> samples;
  const auto endBody = [&] {
    if (!samples.empty()) {
      std::string& body = samples.back().body;
      body.erase(body.find_last_not_of('\n') + 1);
      check(!body.empty(), "the mail before has no text");
    }
  };
  std::size_t inSample = 0;
  for (std::string line; std::getline(file, line);) {
    ++lineNumber;
    if (line.starts_with(headerMark)) {
      endBody();
      const std::optional<MailSample> sample = readHeader(line);
      check(sample.has_value(), "no header of a mail");
      samples.push_back(*sample);
      inSample = 0;
    } else {
      check(!samples.empty() && readLine(samples.back(), ++inSample, line),
            "a line that does not belong here");
    }
  }
  endBody();
  return samples;
}

std::filesystem::path mailSamplesDirectory() {
  return std::filesystem::path(TARNWELL_FIXTURES) / "withholding";
}

}  // namespace tarnwell::test

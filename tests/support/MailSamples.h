#pragma once

/// Written mails of which each test knows whether it carries a secret (tests/fixtures/withholding).
///
///     for (const MailSample& sample : readMailSamples(mailSamplesDirectory() / "secret.mails")) {
///       ... sample.subject, sample.body ...
///     }
///
/// README.md beside the files describes their format. A file that cannot be opened or does not follow the
/// format throws std::runtime_error, which names the file and the line.

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwell::test {

struct MailSample {
  /// Unique, with the language in it: "secret-en-017".
  std::string id;
  /// The class of the mail: "one-time code", "newsletter".
  std::string kind;
  std::string subject;
  std::string from;
  /// As sent: plain text or the source of the HTML. Lines end in "\n", the last one in nothing.
  std::string body;
  bool isHTML = false;

  bool operator==(const MailSample&) const = default;
};

/// In the order of the file.
std::vector<MailSample> readMailSamples(const std::filesystem::path& path);

/// Where the files lie in the source tree.
std::filesystem::path mailSamplesDirectory();

}  // namespace tarnwell::test

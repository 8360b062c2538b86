#pragma once

/// Written mails for which it is known whether they carry a secret (tests/fixtures/withholding).
///
///     for (const MailSample& sample : readMailSamples(mailSamplesDirectory() / "secret.mails")) {
///       ... sample.subject, sample.body ...
///     }
///
/// README.md beside the files describes their format. For a file that cannot be opened or has another format,
/// reading throws std::runtime_error naming the file and the line.

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwell::test {

struct MailSample {
  /// Unique, and contains the language: "secret-en-017".
  std::string id;
  /// The class of the mail: "one-time code", "newsletter".
  std::string kind;
  std::string subject;
  std::string from;
  /// As sent: plain text or HTML source. Lines end in "\n", except the last one.
  std::string body;
  bool isHTML = false;

  bool operator==(const MailSample&) const = default;
};

/// In the order of the file.
std::vector<MailSample> readMailSamples(const std::filesystem::path& path);

/// The folder of the files in the source tree.
std::filesystem::path mailSamplesDirectory();

}  // namespace tarnwell::test

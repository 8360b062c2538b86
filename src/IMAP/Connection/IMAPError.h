#pragma once

/// The one error type of the IMAP layer.
///
/// `description()` is the sentence that tools and commands show. A server's text enters an error only through
/// the client's safe summary.
///
/// Threads: plain values.

#include <exception>
#include <string>
#include <string_view>

namespace tarnwell {

/// What `moveRejected` and the companion app call the setting `allowCopyMoveFallback`.
inline constexpr std::string_view copyFallbackLabel = "Move on servers without MOVE (COPY + mark deleted)";

class IMAPError : public std::exception {
 public:
  enum class Kind {
    connectionFailed,
    /// Deliberate: never thrown here, for embedding programs only. A TLS failure arrives as
    /// `connectionFailed`.
    tlsFailed,
    commandFailed,
    unexpectedResponse,
    folderNotFound,
    moveRejected,
    invalidArgument,
    notConfigured,
    timeout,
    connectionClosed,
    authenticationFailed,
    mailboxNotSelected,
  };

  static IMAPError connectionFailed(std::string text);
  static IMAPError tlsFailed(std::string text);
  static IMAPError commandFailed(std::string command, std::string detail);
  static IMAPError unexpectedResponse(std::string text);
  static IMAPError folderNotFound(std::string name);
  static IMAPError moveRejected(std::string detail);
  static IMAPError invalidArgument(std::string text);
  static IMAPError notConfigured();
  static IMAPError timeout();
  static IMAPError connectionClosed();
  static IMAPError authenticationFailed();
  static IMAPError mailboxNotSelected();

  Kind kind() const { return kind_; }
  const std::string& description() const { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

  bool operator==(const IMAPError& other) const {
    return kind_ == other.kind_ && description_ == other.description_;
  }

 private:
  IMAPError(Kind kind, std::string description) : kind_(kind), description_(std::move(description)) {}

  Kind kind_;
  std::string description_;
};

}  // namespace tarnwell

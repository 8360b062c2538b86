#pragma once

/// Watches one connection and remembers a forbidden command: one that expunges, that creates, renames or
/// deletes a mailbox, or that fills one or changes its access rights.
///
///     WireGuard guard;
///     guard.clientSent("A0001 CLOSE\r\n");
///     guard.violation();  // "A0001 CLOSE"
///
/// It reads commands as a server does (RFC 3501, sections 2.2.1 and 4.3). The bytes of a literal are not a
/// command. Neither are the rest of the line after it and texts inside a line. When the server did not ask
/// for an announced literal, the literal never comes, and the next bytes are a new command.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell::test {

class WireGuard {
 public:
  void clientSent(std::string_view bytes);
  void serverSent(std::string_view bytes);

  /// The first forbidden command. Empty when there was none.
  const std::string& violation() const { return violation_; }

 private:
  void decideAboutLiteral();
  void endLine();

  std::string line_;
  /// True when the line does not continue after a literal.
  bool isCommandStart_ = true;
  /// The bytes of the literal that are still to come.
  std::size_t literalLeft_ = 0;
  /// The size of an announced literal that waits for the server's "+".
  std::optional<std::size_t> announced_;
  bool isGranted_ = false;
  bool isServerAtLineStart_ = true;
  std::string violation_;
};

}  // namespace tarnwell::test

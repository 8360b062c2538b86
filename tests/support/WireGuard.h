#pragma once

/// Watches one connection and remembers a command that must never be sent: what expunges, and what creates,
/// renames or deletes a mailbox or fills one.
///
///     WireGuard guard;
///     guard.clientSent("A0001 CLOSE\r\n");
///     guard.violation();  // "A0001 CLOSE"
///
/// Commands are read as a server reads them (RFC 3501, sections 2.2.1 and 4.3): the bytes of a literal are no
/// command, and neither are the rest of the line behind it and texts inside a line. An announced literal
/// that the server did not ask for never comes; what follows it is a new command.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell::test {

class WireGuard {
 public:
  void clientSent(std::string_view bytes);
  void serverSent(std::string_view bytes);

  /// The first forbidden command; empty while all is well.
  const std::string& violation() const { return violation_; }

 private:
  void decideAboutLiteral();
  void endLine();

  std::string line_;
  /// The line does not go on behind a literal.
  bool isCommandStart_ = true;
  /// The bytes of the literal that are still to come.
  std::size_t literalLeft_ = 0;
  /// An announced literal that waits for the server's "+".
  std::optional<std::size_t> announced_;
  bool isGranted_ = false;
  bool isServerAtLineStart_ = true;
  std::string violation_;
};

}  // namespace tarnwell::test

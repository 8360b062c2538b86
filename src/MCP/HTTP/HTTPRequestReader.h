#pragma once

/// Builds one request from the pieces in which its bytes arrive. Refuses it as soon as it breaks a rule:
///
///     403  a Host or Origin that is not this machine's; the body is not read
///     401  not the token that is asked for, or 400 (BearerToken.h); the body is not read
///     400  contradicting lengths
///     413  a body of more than 4 MiB
///     431  more than 16 KiB without the end of the header block
///
/// The outcome does not depend on how the bytes are cut. Memory grows with the bytes that arrived, never with
/// an announced length. Bytes after the request are ignored, because a connection carries one request.
///
/// The head may hold a token, so its bytes are wiped when it has been read. A copy may stay where a head
/// arrives in several pieces, because its buffer grows then.
///
/// Threads: one at a time.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Core/Secret.h"
#include "MCP/HTTP/HTTPRequestHead.h"
#include "MCP/HTTP/HTTPResponse.h"

namespace tarnwell {

class HTTPRequestReader {
 public:
  enum class State { readingHead, readingBody, complete, refused };

  /// With more bytes than this, the header block must have ended.
  static constexpr std::size_t maximumHeadSize = 16384;
  static constexpr std::uint64_t maximumBodySize = 4'194'304;

  /// Asks for no token.
  HTTPRequestReader() = default;

  /// Asks for the token that is here when the head has arrived, if there is one. It must outlive the reader.
  explicit HTTPRequestReader(const std::optional<Secret>& token) : token_(&token) {}

  /// Reads the next bytes. Once the request is complete or refused, nothing changes.
  State push(std::string_view bytes);

  State state() const { return state_; }

  /// Valid once the state is no longer `readingHead`.
  const HTTPRequestHead& head() const { return head_; }

  /// The body of a complete request. Call it once.
  std::string takeBody() { return std::move(buffer_); }

  /// The answer to a refused request: a status without a body.
  const HTTPResponse& refusal() const { return refusal_; }

 private:
  std::string_view takeHead(std::string_view bytes);
  State stateAfterHead();
  State refuse(HTTPResponse refusal);
  void wipeHead();

  const std::optional<Secret>* token_ = nullptr;
  State state_ = State::readingHead;
  std::string buffer_;  // the head until it ends, then the body
  HTTPRequestHead head_;
  HTTPResponse refusal_{0};
};

}  // namespace tarnwell

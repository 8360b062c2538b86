#pragma once

/// Puts one request together from the pieces in which its bytes arrive, and refuses it as soon as it breaks
/// a rule:
///
///     403  a Host or Origin that is not this machine's; the body is not read
///     400  contradicting lengths
///     413  a body of more than 4 MiB
///     431  more than 16 KiB without the end of the header block
///
/// However the bytes are cut, the outcome is the same. Memory grows with what arrived, never with what was
/// announced. Bytes beyond the request are ignored: a connection carries one request.
///
/// Threads: one at a time.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "MCP/HTTP/HTTPRequestHead.h"
#include "MCP/HTTP/HTTPResponse.h"

namespace tarnwell {

class HTTPRequestReader {
 public:
  enum class State { readingHead, readingBody, complete, refused };

  /// When more bytes than these are there, the header block must have ended.
  static constexpr std::size_t maximumHeadSize = 16384;
  static constexpr std::uint64_t maximumBodySize = 4'194'304;

  /// Takes in the next bytes. Nothing changes any more once the request is complete or refused.
  State push(std::string_view bytes);

  State state() const { return state_; }

  /// Meaningful once `readingHead` is over.
  const HTTPRequestHead& head() const { return head_; }

  /// The body of a complete request, to be taken once.
  std::string takeBody() { return std::move(buffer_); }

  /// The answer to a refused request: its status, with no body.
  HTTPResponse refusal() const { return {refusalStatus_}; }

 private:
  std::string_view takeHead(std::string_view bytes);
  State stateAfterHead();
  State refuse(int status);

  State state_ = State::readingHead;
  std::string buffer_;  // the head until it has ended, then the body
  HTTPRequestHead head_;
  int refusalStatus_ = 0;
};

}  // namespace tarnwell

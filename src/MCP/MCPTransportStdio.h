#pragma once

/// Connects an `MCPServer` to a pair of descriptors, by default standard input and output: one JSON-RPC
/// message a line in, one compact response a line out.
///
/// Strictly one request at a time: the next line is handled after the answer to the one before was
/// written. Both ends are used with plain blocking calls, and no flag of a descriptor is ever changed,
/// because it may be shared with a terminal or a parent. (An asynchronous reader was tried: it makes the
/// shared terminal non-blocking and leaves it so.)
///
/// Threads: one runs it; the descriptors belong to the caller.

#include <string_view>

#include "MCP/MCPServer.h"

namespace tarnwell {

class MCPTransportStdio {
 public:
  explicit MCPTransportStdio(MCPServer& server, int input = 0, int output = 1)
      : server_(server), input_(input), output_(output) {}

  /// Returns when the input has ended (or cannot be read any more). A last line without a line feed is
  /// answered too. When the output is closed, requests are still read to the end and their answers lost.
  void run();

 private:
  void dispatch(std::string_view line);

  MCPServer& server_;
  int input_;
  int output_;
};

}  // namespace tarnwell

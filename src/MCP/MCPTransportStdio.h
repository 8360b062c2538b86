#pragma once

/// Connects an `MCPServer` to a pair of descriptors, by default standard input and output. Each line in is
/// one JSON-RPC message; each line out is one compact response.
///
/// It handles one request at a time: the next line only after the answer to the one before was written. It
/// reads and writes with plain blocking calls and changes no flag of a descriptor, because a terminal or a
/// parent may share it. An asynchronous reader would make a shared terminal non-blocking and leave it so.
///
/// Threads: one thread runs it. The descriptors belong to the caller.

#include <string_view>

#include "MCP/MCPServer.h"

namespace tarnwell {

class MCPTransportStdio {
 public:
  explicit MCPTransportStdio(MCPServer& server, int input = 0, int output = 1)
      : server_(server), input_(input), output_(output) {}

  /// Returns when the input has ended or cannot be read any more. Also answers a last line without a line
  /// feed. When the output is closed, still reads all requests; their answers are lost.
  void run();

 private:
  void dispatch(std::string_view line);

  MCPServer& server_;
  int input_;
  int output_;
};

}  // namespace tarnwell

#pragma once

/// Connects an `MCPServer` to a pair of descriptors, by default standard input and output. Each line in is
/// one JSON-RPC message; each line out is one compact response.
///
/// It handles one request at a time, in the order of the lines: the next one begins only after the answer to
/// the one before was written. A thread of its own reads meanwhile, so a client can cancel a change to the
/// mailbox that has not begun (`RequestQueue.h`, which also bounds how far it reads ahead). A call that has
/// begun is finished and answered.
///
/// It reads and writes with plain blocking calls and changes no flag of a descriptor, because a terminal or a
/// parent may share it. An asynchronous reader would make a shared terminal non-blocking and leave it so.
///
/// Threads: one thread runs it, and it handles and writes. The reader's thread lives within `run`. The
/// descriptors belong to the caller.

#include <optional>

#include "MCP/JSONRPC.h"
#include "MCP/MCPServer.h"
#include "MCP/RequestQueue.h"

namespace tarnwell {

class MCPTransportStdio {
 public:
  explicit MCPTransportStdio(MCPServer& server, int input = 0, int output = 1)
      : server_(server), input_(input), output_(output) {}

  /// Returns when the input has ended or cannot be read any more. Also answers a last line without a line
  /// feed. When the output is closed, still reads all requests; their answers are lost.
  void run();

 private:
  void read(NDJSONFramer& framer, RequestQueue& queue) const;
  void answer(std::optional<JSONRPCRequest>&& request);

  MCPServer& server_;
  int input_;
  int output_;
};

}  // namespace tarnwell

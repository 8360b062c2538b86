#pragma once

/// Connects an `MCPServer` to a pair of descriptors, by default standard input and output. Each line in is
/// one JSON-RPC message; each line out is one compact response.
///
/// It handles one request at a time, in the order of the lines: the next one begins only after the answer to
/// the one before was written. A thread of its own reads meanwhile, so a client can cancel what has not begun
/// and, in the current revision of MCP, what has (`RequestQueue.h`, which also bounds how far it reads
/// ahead). That thread itself answers requests of the current revision that run no tool, so they do not wait
/// for a call. In the older revisions a call that has begun is finished and answered, and all answers are in
/// order.
///
/// The end of the input gives up every call of the current revision that needs the mail server.
///
/// It reads and writes with plain blocking calls and changes no flag of a descriptor, because a terminal or a
/// parent may share it. An asynchronous reader would make a shared terminal non-blocking and leave it so.
///
/// Threads: one thread runs it. The reader's thread lives within `run`. Each line leaves whole. The
/// descriptors belong to the caller.

#include <mutex>
#include <optional>
#include <string_view>

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
  void read(NDJSONFramer& framer, RequestQueue& queue);
  void answer(std::optional<JSONRPCRequest>&& request, const Cancellation& cancellation);
  void write(std::string_view frame);

  MCPServer& server_;
  int input_;
  int output_;
  std::mutex writing_;
};

}  // namespace tarnwell

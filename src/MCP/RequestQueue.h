#pragma once

/// The messages that were read and wait for their turn, in the order in which they came.
///
///     reader:  queue.awaitRoom(line.size());
///              queue.push(JSONRPCRequest::parse(line), line.size());
///              queue.end();
///     handler: while (auto message = queue.next()) ... message->request ...
///
/// A message begins when `next` returns it, and is finished when `next` is called again.
///
/// Cancelling (`notifications/cancelled` of MCP, with the id in "requestId") takes effect when it is pushed:
/// a message of the current revision that has begun is cancelled, and one that waits is taken out. So is a
/// `tools/call` of an older revision that waits, when its tool changes the mailbox. What is taken out is not
/// run and not answered. The id must be a text or a number. It must have the same type and value: 1, 1.0 and
/// "1" are three ids. Every such message with this id that waits is taken out, and none that comes later. Any
/// other message stays, and a cancellation without effect is ignored. Deliberate: calls of older revisions
/// that only read are not taken out. Clients have always received their answers, and they change nothing.
///
/// The end of the input cancels every message of the current revision that has begun or waits. It is handled
/// all the same, so what needs no mail server is still answered.
///
/// The lines of all messages that are not finished have at most `Bounds::bytes` bytes, and at most
/// `Bounds::count` messages wait. A line has no greatest length. So a longer line is admitted alone, when
/// every earlier message is finished, and never two such lines at once.
///
/// Threads: one thread reads, and one handles.

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>

#include "IMAP/Connection/Cancellation.h"
#include "MCP/JSONRPC.h"

namespace tarnwell {

class RequestQueue {
 public:
  struct Bounds {
    std::size_t count = 256;
    std::size_t bytes = std::size_t{1024} * 1024;
  };

  struct Message {
    /// Absent for a line that is no JSON-RPC message. It is answered with an error in its turn.
    std::optional<JSONRPCRequest> request;
    /// The size of its line.
    std::size_t bytes = 0;
    /// Only messages of the current revision are ever cancelled.
    Cancellation cancellation{};
  };

  RequestQueue() = default;
  explicit RequestQueue(Bounds bounds) : bounds_(bounds) {}

  /// The reader's. Waits until a line of this size may be pushed. Called before the line is parsed, or while
  /// it still grows, it also bounds the memory of the reader.
  void awaitRoom(std::size_t bytes);

  /// The reader's. Never waits. `bytes` is not 0.
  void push(std::optional<JSONRPCRequest> request, std::size_t bytes);

  /// The reader's: nothing more will be pushed.
  void end();

  /// The handler's. Finishes the message that began last. Waits for the next one. Absent after the last one.
  std::optional<Message> next();

 private:
  void cancel(const JSONRPCRequest& cancellation);

  const Bounds bounds_{};
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Message> waiting_;
  /// What is needed of the message that has begun. No id unless it is one of the current revision.
  struct Begun {
    std::optional<JSONValue> id{};
    std::size_t bytes = 0;
    Cancellation cancellation{};
  };
  Begun begun_;
  std::size_t unfinishedBytes_ = 0;  // of the begun message and of those that wait
  bool isEnded_ = false;
};

}  // namespace tarnwell

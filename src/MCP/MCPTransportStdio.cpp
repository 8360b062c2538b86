#include "MCP/MCPTransportStdio.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <span>
#include <thread>
#include <utility>

#include "Core/AppLogger.h"
#include "MCP/JSONRPC.h"

namespace tarnwell {

namespace {

/// A descriptor that a parent left non-blocking answers EAGAIN. Then wait until it is ready.
bool waitsUntilReady(int descriptor, short event) {
  pollfd ready{.fd = descriptor, .events = event, .revents = 0};
  return poll(&ready, 1, -1) >= 0 || errno == EINTR;
}

/// The number of bytes read. 0 at the end of the input, and when it cannot be read.
std::size_t readSome(int descriptor, std::span<char> into) {
  for (;;) {
    const ssize_t count = read(descriptor, into.data(), into.size());
    if (count >= 0) {
      return static_cast<std::size_t>(count);
    }
    const bool tryAgain =
        errno == EINTR || ((errno == EAGAIN || errno == EWOULDBLOCK) && waitsUntilReady(descriptor, POLLIN));
    if (!tryAgain) {
      return 0;
    }
  }
}

/// Writes the frame with one write, and writes again only what the system did not take. Write errors are
/// ignored: the reader has gone, and the input will end too.
void writeFrame(int descriptor, std::string_view frame) {
  while (!frame.empty()) {
    const ssize_t count = write(descriptor, frame.data(), frame.size());
    if (count > 0) {
      frame.remove_prefix(static_cast<std::size_t>(count));
      continue;
    }
    const bool tryAgain = count < 0 && (errno == EINTR || ((errno == EAGAIN || errno == EWOULDBLOCK) &&
                                                           waitsUntilReady(descriptor, POLLOUT)));
    if (!tryAgain) {
      return;
    }
  }
}

}  // namespace

void MCPTransportStdio::run() {
  AppLogger::info(AppLogger::Category::mcp, "stdio MCP server started");
  NDJSONFramer framer;
  RequestQueue queue;
  std::thread reader([&] { read(framer, queue); });
  while (std::optional<RequestQueue::Message> message = queue.next()) {
    answer(std::move(message->request), message->cancellation);
  }
  reader.join();
  // Deliberate: only the end of the input ends the loop. It is logged as an error, to distinguish it from a
  // client that still waits.
  AppLogger::error(AppLogger::Category::mcp, "stdio input stream ended");
  if (const std::optional<std::string> line = framer.finish()) {
    Cancellation atTheEnd;
    atTheEnd.cancel();
    answer(JSONRPCRequest::parse(*line), atTheEnd);
  }
  AppLogger::info(AppLogger::Category::mcp, "stdio MCP server stopped");
}

/// Runs on the reader's thread.
void MCPTransportStdio::read(NDJSONFramer& framer, RequestQueue& queue) {
  std::array<char, 65536> chunk;
  while (const std::size_t count = readSome(input_, chunk)) {
    framer.push({chunk.data(), count}, [&](std::string_view line) {
      queue.awaitRoom(line.size());
      std::optional<JSONRPCRequest> request = JSONRPCRequest::parse(line);
      if (request && MCPServer::isHandledAtOnce(*request)) {
        answer(std::move(request), {});
      } else {
        queue.push(std::move(request), line.size());
      }
    });
    queue.awaitRoom(framer.begunSize());
  }
  queue.end();
}

void MCPTransportStdio::answer(std::optional<JSONRPCRequest>&& request, const Cancellation& cancellation) {
  const MCPExchange exchange{.cancellation = cancellation, .notify = [&](const JSONValue& notification) {
                               // Under the lock: nothing comes after the answer to a later request.
                               const std::lock_guard lock(writing_);
                               if (!cancellation.isCancelled()) {
                                 writeFrame(output_, ndjsonFrame(notification));
                               }
                             }};
  if (std::optional<std::string> response = server_.handleParsed(std::move(request), exchange)) {
    response->push_back('\n');
    write(*response);
  }
}

void MCPTransportStdio::write(std::string_view frame) {
  const std::lock_guard lock(writing_);
  writeFrame(output_, frame);
}

}  // namespace tarnwell

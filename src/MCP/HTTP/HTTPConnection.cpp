#include "MCP/HTTP/HTTPConnection.h"

#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>
#include <utility>

#include "Core/AppLogger.h"
#include "MCP/HTTP/PostedMessage.h"

namespace tarnwell {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;
using Clock = std::chrono::steady_clock;

HTTPConnection::HTTPConnection(tcp::socket socket, HTTPDispatch& dispatch)
    : socket_(std::move(socket)),
      timer_(socket_.get_executor()),
      dispatch_(dispatch),
      reader_(dispatch.token) {}

void HTTPConnection::start() {
  bound(dispatch_.requestTimeout);
  read();
}

void HTTPConnection::close() {
  const bool wasOpen = std::exchange(isOpen_, false);
  withdrawCall();
  cancellation_.cancel();
  error_code ignored;
  socket_.close(ignored);
  timer_.cancel();
  if (wasOpen) {
    dispatch_.connectionEnded();
  }
}

/// Closes the connection after this time, unless another bound replaces this one.
void HTTPConnection::bound(Clock::duration time) {
  timer_.expires_after(time);
  timer_.async_wait([self = shared_from_this()](error_code error) {
    // If the handler was already queued when the bound moved, it also arrives without an error.
    if (!error && self->timer_.expiry() <= Clock::now()) {
      self->close();
    }
  });
}

void HTTPConnection::unbound() { timer_.expires_at(Clock::time_point::max()); }

void HTTPConnection::read() {
  socket_.async_read_some(asio::buffer(received_),
                          [self = shared_from_this()](error_code error, std::size_t count) {
                            error ? self->close() : self->take(count);
                          });
}

void HTTPConnection::take(std::size_t count) {
  const bool wasReadingHead = reader_.state() == HTTPRequestReader::State::readingHead;
  const HTTPRequestReader::State state = reader_.push({received_.data(), count});
  if (wasReadingHead && dispatch_.token) {
    wipe(received_.data(), count);  // the token is in it
  }
  switch (state) {
    case HTTPRequestReader::State::readingHead:
      return read();
    case HTTPRequestReader::State::readingBody:
      return wasReadingHead && reader_.head().expectsContinue ? inviteBody() : read();
    case HTTPRequestReader::State::refused:
      return send(reader_.refusal());
    case HTTPRequestReader::State::complete:
      return process();
  }
}

void HTTPConnection::inviteBody() {
  asio::async_write(
      socket_, asio::buffer(HTTPResponse::interimContinue),
      [self = shared_from_this()](error_code error, std::size_t) { error ? self->close() : self->read(); });
}

void HTTPConnection::process() {
  const std::string& method = reader_.head().method;
  if (method == "OPTIONS") {
    send({204});
  } else if (method == "POST" && isAnsweredAtOnce(reader_.head())) {
    answerAtOnce();
  } else if (method == "POST") {
    unbound();
    handOver();
    discard();
  } else {
    send({405, "text/plain", "This endpoint accepts JSON-RPC via POST."});
  }
}

void HTTPConnection::answerAtOnce() {
  const std::optional<HTTPResponse> response =
      answerToPost(dispatch_.server, reader_.head(), reader_.takeBody(), {});
  response ? send(*response) : close();
}

/// A call that waits does not keep its connection alive. So a client that has gone leaves nothing behind but
/// a place in the line.
void HTTPConnection::handOver() {
  if (dispatch_.unfinished++ == 0) {
    call_ = Call::begun;
    asio::post(dispatch_.worker, [self = shared_from_this()] { self->call(); });
    return;
  }
  call_ = Call::waiting;
  asio::post(dispatch_.worker, [waiting = weak_from_this(), &dispatch = dispatch_] {
    if (const auto self = waiting.lock()) {
      self->call();
    } else {
      --dispatch.unfinished;
    }
  });
}

/// Runs on the worker's thread. The queue's thread no longer uses the reader.
void HTTPConnection::call() {
  Call waiting = Call::waiting;
  if (!call_.compare_exchange_strong(waiting, Call::begun) && waiting == Call::withdrawn) {
    --dispatch_.unfinished;
    return;
  }
  std::optional<HTTPResponse> response = answerToPost(dispatch_.server, reader_.head(), reader_.takeBody(),
                                                      {.cancellation = cancellation_, .notify = {}});
  --dispatch_.unfinished;
  asio::post(socket_.get_executor(), [self = shared_from_this(), response = std::move(response)] {
    if (self->isOpen_) {
      response ? self->send(*response) : self->close();
    }
  });
}

/// True when the call was waiting. Then it never begins.
bool HTTPConnection::withdrawCall() {
  Call waiting = Call::waiting;
  const bool isWithdrawn = call_.compare_exchange_strong(waiting, Call::withdrawn);
  if (isWithdrawn) {
    AppLogger::info(AppLogger::Category::http, "a call was not run: its connection closed before it began");
  }
  return isWithdrawn;
}

void HTTPConnection::send(const HTTPResponse& response) {
  bound(dispatch_.requestTimeout);
  answer_ = response.serialized(dispatch_.token ? HTTPAccess::withToken : HTTPAccess::open);
  asio::async_write(
      socket_, asio::buffer(answer_),
      [self = shared_from_this()](error_code error, std::size_t) { error ? self->close() : self->finish(); });
}

/// Closes only the sending side, and discards further input until the client closes too, or for a short time
/// (RFC 9112, section 9.6). Closing a socket with unread bytes would reset the connection, and the reset may
/// arrive before the answer.
void HTTPConnection::finish() {
  constexpr std::chrono::seconds patience{2};
  bound(patience);
  error_code ignored;
  socket_.shutdown(tcp::socket::shutdown_send, ignored);
  isAnswered_ = true;
  if (isInputOver_) {
    close();
  } else if (call_ == Call::none) {  // a connection with a call discards since the call was made
    discard();
  }
}

void HTTPConnection::discard() {
  socket_.async_read_some(asio::buffer(received_),
                          [self = shared_from_this()](error_code error, std::size_t) {
                            error ? self->inputEnded(error) : self->discard();
                          });
}

void HTTPConnection::inputEnded(error_code error) {
  isInputOver_ = true;
  cancellation_.cancel();
  const bool mayStillReceive = error == asio::error::eof && !isAnswered_ && !withdrawCall();
  if (!mayStillReceive) {
    close();
  }
}

}  // namespace tarnwell

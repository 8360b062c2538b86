#include "MCP/HTTP/HTTPRequestReader.h"

#include <algorithm>
#include <utility>

#include "MCP/HTTP/BearerToken.h"

namespace tarnwell {

namespace {

constexpr std::string_view headEnd = "\r\n\r\n";

}  // namespace

HTTPRequestReader::State HTTPRequestReader::push(std::string_view bytes) {
  if (state_ == State::readingHead) {
    bytes = takeHead(bytes);
  }
  if (state_ == State::readingBody) {
    const auto missing = static_cast<std::size_t>(head_.contentLength) - buffer_.size();
    buffer_.append(bytes.substr(0, missing));
    if (buffer_.size() == head_.contentLength) {
      state_ = State::complete;
    }
  }
  return state_;
}

/// Returns the bytes after the head. Empty until the head has ended.
std::string_view HTTPRequestReader::takeHead(std::string_view bytes) {
  constexpr std::size_t longest = maximumHeadSize + 1;
  const std::size_t known = buffer_.size();
  buffer_.append(bytes.substr(0, longest - known));

  const std::size_t searchFrom = known - std::min(known, headEnd.size() - 1);
  const std::size_t end = buffer_.find(headEnd, searchFrom);
  if (end == std::string::npos) {
    if (buffer_.size() == longest) {
      state_ = refuse({431});
    }
    return {};
  }
  head_ = HTTPRequestHead::parse(std::string_view(buffer_).substr(0, end));
  bytes.remove_prefix(end + headEnd.size() - known);
  wipeHead();
  state_ = stateAfterHead();
  head_.authorizations.clear();  // nobody needs them any more
  return bytes;
}

/// The body takes the same memory.
void HTTPRequestReader::wipeHead() {
  wipe(buffer_.data(), buffer_.size());
  buffer_.clear();
}

/// The origin is checked first: a foreign page learns nothing about its other errors. Then the token: nor
/// does a program without it.
HTTPRequestReader::State HTTPRequestReader::stateAfterHead() {
  if (!isFromThisMachine(head_)) {
    return refuse({403});
  }
  const bool asksForToken = token_ && *token_;
  const Authorization authorization = asksForToken ? authorizationOf(head_, **token_) : Authorization::given;
  if (authorization != Authorization::given) {
    return refuse(authorizationRefusal(authorization));
  }
  if (head_.hasConflictingLengths) {
    return refuse({400});
  }
  if (head_.contentLength > maximumBodySize) {
    return refuse({413});
  }
  return State::readingBody;
}

HTTPRequestReader::State HTTPRequestReader::refuse(HTTPResponse refusal) {
  refusal_ = std::move(refusal);
  wipeHead();
  return State::refused;
}

}  // namespace tarnwell

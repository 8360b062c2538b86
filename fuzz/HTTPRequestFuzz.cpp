// A request in pieces has the same result as the whole request. The body is the bytes after the head. Where a
// token is asked for, nothing is read without it, and with it all is as if none were asked for.

#include "Fuzzing.h"
#include "MCP/HTTP/HTTPRequestReader.h"

namespace tarnwell {
namespace {

using State = HTTPRequestReader::State;

void requireOutcome(HTTPRequestReader& reader, std::string_view request) {
  if (reader.state() == State::complete) {
    fuzz::require(isFromThisMachine(reader.head()), "a request from elsewhere is refused");
    const std::size_t bodyBegin = request.find("\r\n\r\n") + 4;
    const std::string body = reader.takeBody();
    fuzz::require(body.size() == reader.head().contentLength, "the body has the announced length");
    fuzz::require(request.substr(bodyBegin).starts_with(body), "the body follows the head");
  }
  if (reader.state() == State::refused) {
    const int status = reader.refusal().status;
    fuzz::require(status == 400 || status == 403 || status == 413 || status == 431,
                  "a refusal has its reason");
  }
}

bool hasToken(std::string_view request, std::string_view token) {
  return request.substr(0, request.find("\r\n\r\n")).find(token) != std::string_view::npos;
}

void requireToken(HTTPRequestReader& open, std::string_view request) {
  static const std::optional<Secret> token("sesame");
  HTTPRequestReader guarded(token);
  guarded.push(request);
  const bool isPreflight = open.head().method == "OPTIONS" && open.head().contentLength == 0;
  const bool asksForToken = guarded.state() == State::refused && guarded.refusal().challenge;
  fuzz::require(guarded.head().authorizations.empty(), "the token is not kept");
  fuzz::require(asksForToken || (guarded.state() == open.state() && guarded.head() == open.head()),
                "what is let in is as if no token were asked for");
  fuzz::require(!(asksForToken && isPreflight), "a preflight needs no token");
  const bool isLetIn = guarded.state() == State::readingBody || guarded.state() == State::complete;
  fuzz::require(!isLetIn || isPreflight || hasToken(request, "sesame"), "who is let in has the token");
  if (asksForToken) {
    const int status = guarded.refusal().status;
    fuzz::require(status == 401 || status == 400, "a challenge has its status");
    fuzz::require(open.state() != State::refused || open.refusal().status != 403, "the origin comes first");
  }
}

}  // namespace
}  // namespace tarnwell

FUZZ_TARGET(std::string_view input) {
  const Cuts cuts(input);
  HTTPRequestReader whole;
  whole.push(input);
  HTTPRequestReader inPieces;
  cuts.forEachPiece(input, [&](std::string_view piece) { inPieces.push(piece); });

  require(whole.state() == inPieces.state(), "the cuts do not change the state");
  require(whole.head() == inPieces.head(), "the cuts do not change the head");
  if (whole.state() == State::refused) {
    require(whole.refusal().status == inPieces.refusal().status, "the cuts do not change the refusal");
  }
  requireToken(whole, input);
  requireOutcome(whole, input);
  requireOutcome(inPieces, input);
  isLoopbackAuthority(input);
  isLoopbackOrigin(input);
}

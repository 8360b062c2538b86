// A request in pieces has the same result as the whole request. The body is the bytes after the head.

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
  requireOutcome(whole, input);
  requireOutcome(inPieces, input);
  isLoopbackAuthority(input);
  isLoopbackOrigin(input);
}

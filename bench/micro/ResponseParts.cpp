#include "IMAP/Connection/LineAssembler.h"
#include "IMAP/Responses/IMAPParser.h"
#include "MailInputs.h"
#include "Parts.h"

namespace tarnwell::bench {

namespace {

std::size_t sizeOf(const std::vector<std::string>& lines) {
  std::size_t size = 0;
  for (const std::string& line : lines) {
    size += line.size();
  }
  return size;
}

std::size_t readMessages(const std::vector<std::string>& lines) {
  std::size_t sum = 0;
  for (const std::string& line : lines) {
    const IMAPTokens tokens = IMAPParser::tokenize(line);
    sum += IMAPParser::parseFetchMessage(tokens.elements())->uid;
  }
  return sum;
}

/// A body section of 64 KiB, as it comes from the network.
std::string literalResponse() {
  constexpr std::size_t literalSize = 65'536;
  return "* 1 FETCH (UID 7 BODY[1] {" + std::to_string(literalSize) + "}\r\n" +
         base64Lines(randomBytes(literalSize)).substr(0, literalSize) + ")\r\n";
}

/// In pieces of 16 KiB, the most that one TLS record holds.
std::size_t assemble(std::string_view stream) {
  constexpr std::size_t pieceSize = 16'384;
  LineAssembler assembler;
  std::size_t assembled = 0;
  for (std::size_t start = 0; start < stream.size(); start += pieceSize) {
    assembler.append(stream.substr(start, pieceSize));
    while (const std::optional<std::string> line = assembler.next()) {
      assembled += line->size();
    }
  }
  return assembled;
}

}  // namespace

void addResponseParts(std::vector<Part>& parts) {
  const std::vector<std::string> messages = fetchResponses(1000);
  parts.push_back({.name = "tokenizer and FETCH reader, 1,000 messages",
                   .bytes = sizeOf(messages),
                   .goal = {.megabytesPerSecond = 300},
                   .work = [messages] { return readMessages(messages); }});
  const std::string response = literalResponse();
  const std::string stream = repeated(response, 16 * response.size());
  parts.push_back({.name = "line assembler, literals of 64 KiB",
                   .bytes = stream.size(),
                   .goal = {.megabytesPerSecond = 2000},
                   .work = [stream] { return assemble(stream); }});
}

}  // namespace tarnwell::bench

#include <cstring>

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

std::size_t tokenizeAll(const std::vector<std::string>& lines) {
  std::size_t sum = 0;
  for (const std::string& line : lines) {
    const IMAPTokens tokens = IMAPParser::tokenize(line);
    sum += tokens.elements().empty() ? 0U : 1U;
  }
  return sum;
}

/// A body section of 64 KiB, as it comes from the network.
std::string literalResponse() {
  constexpr std::size_t literalSize = 65'536;
  return "* 1 FETCH (UID 7 BODY[1] {" + std::to_string(literalSize) + "}\r\n" +
         base64Lines(randomBytes(literalSize)).substr(0, literalSize) + ")\r\n";
}

/// Assembles pieces of 16 KiB, the most that one TLS record holds.
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

/// A fresh copy of each response: the least cost of returning a line.
std::size_t copy(std::string_view response, std::size_t count) {
  std::size_t copied = 0;
  for (std::size_t number = 0; number < count; ++number) {
    const auto line = std::make_unique_for_overwrite<char[]>(response.size());
    std::memcpy(line.get(), response.data(), response.size());
    copied += static_cast<unsigned char>(line[response.size() - 1]);
  }
  return copied;
}

}  // namespace

void addResponseParts(std::vector<Part>& parts) {
  const std::vector<std::string> messages = fetchResponses(1000);
  parts.push_back({.name = "tokenizer and FETCH reader, 1,000 messages",
                   .bytes = sizeOf(messages),
                   .goal = {.megabytesPerSecond = 300},
                   .work = [messages] { return readMessages(messages); }});
  parts.push_back({.name = "tokenizer alone, 1,000 messages", .bytes = sizeOf(messages), .work = [messages] {
                     return tokenizeAll(messages);
                   }});

  constexpr std::size_t count = 16;
  const std::string response = literalResponse();
  const std::string stream = repeated(response, count * response.size());
  parts.push_back({.name = "line assembler, literals of 64 KiB",
                   .bytes = stream.size(),
                   .goal = {.megabytesPerSecond = 2000},
                   .work = [stream] { return assemble(stream); }});
  parts.push_back({.name = "memcpy into fresh memory, the same bytes",
                   .bytes = stream.size(),
                   .work = [response] { return copy(response, count); }});
}

}  // namespace tarnwell::bench

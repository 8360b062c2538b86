#include "MCP/HTTP/HTTPRequestReader.h"
#include "MCP/JSONRPC.h"
#include "MailInputs.h"
#include "Shapes.h"

namespace tarnwell::bench {

namespace {

using Read = std::function<std::size_t(std::string_view)>;

struct Frame {
  std::string_view before, fragment, after;
};

/// Adds shapes whose inputs are fragments up to the size, inside a frame.
void addFramed(std::vector<Shape>& shapes, const std::string& reader, const std::vector<Frame>& frames,
               const Read& read) {
  for (const Frame& frame : frames) {
    std::string name(frame.before);
    name.append(frame.fragment).append("…").append(frame.after);
    shapes.push_back({.reader = reader,
                      .name = std::move(name),
                      .input =
                          [frame](std::size_t size) {
                            std::string text(frame.before);
                            return text.append(repeated(frame.fragment, size)).append(frame.after);
                          },
                      .read = read});
  }
}

std::string manyMembers(std::size_t size) {
  std::string object = "{\"first\":0";
  for (std::size_t number = 0; object.size() < size; ++number) {
    object.append(",\"").append(std::to_string(number * 7919 % 100'000'007)).append("\":0");
  }
  return object + "}";
}

void addJSONShapes(std::vector<Shape>& shapes) {
  const Read decode = [](std::string_view text) {
    const auto value = JSONValue::decode(text);
    return value && value->arrayValue() != nullptr ? value->arrayValue()->size() : std::size_t{1};
  };
  addFramed(shapes, "JSON",
            {{"[0", ",{\"uid\":7,\"unread\":true,\"subject\":\"tea\"}", "]"},
             {"[0", ",1.5e3", "]"},
             {"[0", ",[]", "]"},
             {"[0", ",[[[[[[[[]]]]]]]]", "]"},
             {"\"", "mail ", "\""},
             {"\"", "\\u3042", "\""},
             {"\"", "日本", "\""},
             {"{\"a\":0", ",\"a\":0", "}"},
             {"[", "[", ""},
             {"1", "0", ""},
             {"", " ", "1"}},
            decode);
  shapes.push_back(
      {.reader = "JSON", .name = "an object of many members", .input = manyMembers, .read = decode});

  const Read request = [](std::string_view line) {
    const auto message = JSONRPCRequest::parse(line);
    return message ? message->method.size() : 0;
  };
  addFramed(
      shapes, "JSON-RPC line",
      {{"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"tools/call\",\"params\":{\"name\":\"", "search", "\"}}"},
       {"{\"method\":\"a\",\"id\":[0", ",0", "]}"},
       {"{\"method\":\"", "a", "\"}"},
       {"{\"method\":\"a\",\"params\":", "[", ""}},
      request);
}

std::size_t frame(std::string_view stream, std::size_t pieceSize) {
  NDJSONFramer framer;
  std::size_t framed = 0;
  for (std::size_t start = 0; start < stream.size(); start += pieceSize) {
    framer.push(stream.substr(start, pieceSize), [&framed](std::string_view line) { framed += line.size(); });
  }
  return framed + framer.finish().value_or("").size();
}

void addFramerShapes(std::vector<Shape>& shapes) {
  const std::vector<std::string_view> fragments = {"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\"}\n",
                                                   "a", "\n", "\r\n", "\r"};
  addRepeated(shapes, "NDJSON framer", fragments, [](std::string_view text) { return frame(text, 65'536); });
  addRepeated(shapes, "NDJSON framer, byte by byte", fragments,
              [](std::string_view text) { return frame(text, 1); });
}

std::size_t readRequest(std::string_view request, std::size_t pieceSize) {
  HTTPRequestReader reader;
  for (std::size_t start = 0; start < request.size(); start += pieceSize) {
    reader.push(request.substr(start, pieceSize));
  }
  return reader.state() == HTTPRequestReader::State::complete ? reader.takeBody().size() : 0;
}

std::string requestOf(std::size_t size) {
  return "POST /mcp HTTP/1.1\r\nHost: localhost\r\nContent-Length: " + std::to_string(size) + "\r\n\r\n" +
         std::string(size, 'x');
}

void addHTTPShapes(std::vector<Shape>& shapes) {
  addFramed(shapes, "HTTP request head",
            {{"POST / HTTP/1.1\r\n", "Accept: text/plain\r\n", "\r\n"},
             {"POST / HTTP/1.1\r\n", "Host: localhost\r\n", "\r\n"},
             {"POST / HTTP/1.1\r\nHost: ", "1.", "\r\n"},
             {"POST / HTTP/1.1\r\nContent-Length: ", "9", "\r\n"},
             {"POST / HTTP/1.1\r\nHost:", " ", "x\r\n"},
             {"", ":", ""},
             {"", "\r", ""},
             {"", "\r\n", ""}},
            [](std::string_view block) {
              const HTTPRequestHead head = HTTPRequestHead::parse(block);
              return head.method.size() + (isFromThisMachine(head) ? 1 : 0);
            });
  constexpr auto longestBody = static_cast<std::size_t>(HTTPRequestReader::maximumBodySize);
  for (const std::size_t pieceSize : {std::size_t{16'384}, std::size_t{1}}) {
    shapes.push_back({.reader = "HTTP request",
                      .name = pieceSize == 1 ? "a body, byte by byte" : "a body",
                      .input = requestOf,
                      .read = [pieceSize](std::string_view text) { return readRequest(text, pieceSize); },
                      .longest = longestBody});
    shapes.push_back({.reader = "HTTP request",
                      .name = pieceSize == 1 ? "a head, byte by byte" : "a head",
                      .input = [](std::size_t size) { return repeated("\r\n\r", size); },
                      .read = [pieceSize](std::string_view text) { return readRequest(text, pieceSize); },
                      .longest = HTTPRequestReader::maximumHeadSize});
  }
}

}  // namespace

void addMessageShapes(std::vector<Shape>& shapes) {
  addJSONShapes(shapes);
  addFramerShapes(shapes);
  addHTTPShapes(shapes);
}

}  // namespace tarnwell::bench

#include "IMAP/Connection/LineAssembler.h"
#include "IMAP/Responses/IMAPParser.h"
#include "MailInputs.h"
#include "Shapes.h"

namespace tarnwell::bench {

namespace {

using Read = std::function<std::size_t(std::string_view)>;

/// A shape whose input is `before`, fragments up to the size, and `after`.
Shape between(const std::string& reader, std::string_view before, std::string_view fragment,
              std::string_view after, const Read& read) {
  std::string name(before);
  name.append(fragment).append("…").append(after);
  return {.reader = reader,
          .name = std::move(name),
          .input =
              [=](std::size_t size) {
                std::string text(before);
                return text.append(repeated(fragment, size)).append(after);
              },
          .read = read};
}

std::string manyLines(std::size_t size) {
  const std::vector<std::string> responses = fetchResponses(500);
  std::string lines;
  for (std::size_t number = 0; lines.size() < size; ++number) {
    lines.append(responses[number % responses.size()]).append("\r\n");
  }
  return lines;
}

std::string oneLiteral(std::size_t size) {
  return "* 1 FETCH (BODY[1] {" + std::to_string(size) + "}\r\n" + std::string(size, 'x') + ")\r\n";
}

std::size_t assembleInPieces(std::string_view stream, std::size_t pieceSize) {
  LineAssembler assembler;
  std::size_t assembled = 0;
  for (std::size_t start = 0; start < stream.size(); start += pieceSize) {
    assembler.append(stream.substr(start, pieceSize));
    while (const auto line = assembler.next()) {
      assembled += line->size();
    }
  }
  return assembled;
}

void addAssemblerShapes(std::vector<Shape>& shapes) {
  const std::string reader = "line assembler";
  const Read inRecords = [](std::string_view stream) { return assembleInPieces(stream, 16'384); };
  const Read inBytes = [](std::string_view stream) { return assembleInPieces(stream, 1); };
  shapes.push_back({.reader = reader, .name = "responses", .input = manyLines, .read = inRecords});
  shapes.push_back(
      {.reader = reader, .name = "responses, byte by byte", .input = manyLines, .read = inBytes});
  shapes.push_back({.reader = reader, .name = "one literal", .input = oneLiteral, .read = inRecords});
  shapes.push_back(
      {.reader = reader, .name = "one literal, byte by byte", .input = oneLiteral, .read = inBytes});
  addRepeated(shapes, reader, {"x", "\r", "\n", "\r\n", "{0}\r\n", "{9}", "{1"}, inRecords);
}

void addTokenizerShapes(std::vector<Shape>& shapes) {
  const Read tokenize = [](std::string_view response) {
    const IMAPTokens tokens = IMAPParser::tokenize(response);
    return tokens.elements().empty() ? std::size_t{0} : std::size_t{1};
  };
  shapes.push_back({.reader = "tokenizer", .name = "responses", .input = manyLines, .read = tokenize});
  addRepeated(shapes, "tokenizer",
              {"(", ")", "()", "(a ", "a ", "a", "\"", "\"a\" ", "\\", "\"\\", "{", "{9", "{0}\r\n"},
              tokenize);
}

void addReaderShapes(std::vector<Shape>& shapes) {
  const Read list = [](std::string_view line) {
    const IMAPTokens tokens = IMAPParser::tokenize(line);
    const auto folder = IMAPParser::parseList(tokens.elements());
    return folder ? folder->name.size() : 0;
  };
  for (const std::string_view fragment : {"/", "a/", "a", "日本"}) {
    shapes.push_back(between("LIST", "* LIST () \"/\" \"", fragment, "\"", list));
  }
  shapes.push_back(between("LIST", "* LIST (", "\\Sent ", ") \"/\" INBOX", list));
  shapes.push_back(between("LIST", "* LIST () \"", "/", "\" INBOX", list));

  const Read search = [](std::string_view line) {
    const auto numbers = IMAPParser::parseSearch(line);
    return numbers ? numbers->size() : 0;
  };
  for (const std::string_view fragment : {" 40123", " 1", " ", "9", " x"}) {
    shapes.push_back(between("SEARCH", "* SEARCH", fragment, "", search));
  }

  const Read envelope = [](std::string_view line) {
    const IMAPTokens tokens = IMAPParser::tokenize(line);
    const IMAPEnvelope read = IMAPParser::parseEnvelope(tokens.elements());
    return read.subject.value_or("").size() + read.to.size();
  };
  for (const std::string_view fragment : {"tea ", "=?utf-8?q?a?= ", "=?", "=?a?b?", "\xFF"}) {
    shapes.push_back(between("ENVELOPE", "date \"", fragment, "\" NIL", envelope));
  }
  shapes.push_back(
      between("ENVELOPE", "date subject NIL NIL NIL (", "(NIL NIL \"user\" \"example.org\")", ")", envelope));
  shapes.push_back(between("ENVELOPE", "date subject (", "(", "", envelope));

  const Read structure = [](std::string_view line) {
    const IMAPTokens tokens = IMAPParser::tokenize(line);
    const IMAPBodyInfo info = IMAPParser::parseBodyStructure(tokens.elements());
    return info.preferredText ? info.preferredText->section.size() : 0;
  };
  const std::string_view html = "(\"text\" \"html\" (\"charset\" \"utf-8\") NIL NIL \"7bit\" 1 1)";
  shapes.push_back(between("BODYSTRUCTURE", "", html, "\"mixed\"", structure));
  shapes.push_back(between("BODYSTRUCTURE", "", "(", html, structure));
  shapes.push_back(between("BODYSTRUCTURE", "", "(()", "", structure));
  shapes.push_back(between("BODYSTRUCTURE", "text plain (", "name value ", ") NIL NIL 7bit", structure));
  shapes.push_back(between("BODYSTRUCTURE", "text plain NIL NIL NIL 7bit ", "(other NIL) ", "", structure));

  const Read fetch = [](std::string_view line) {
    const IMAPTokens tokens = IMAPParser::tokenize(line);
    const auto message = IMAPParser::parseFetchMessage(tokens.elements());
    return message ? message->flags.size() + message->uid : 0;
  };
  for (const std::string_view fragment :
       {"FLAGS (\\Seen) ", "X (", "ENVELOPE (a b) ", "BODYSTRUCTURE ((((text html))))", "() ", "UID UID "}) {
    shapes.push_back(between("FETCH", "* 1 FETCH (UID 7 ", fragment, ")", fetch));
  }
  shapes.push_back(between("FETCH", "", "FETCH ", "(UID 7)", fetch));
  shapes.push_back(between("FETCH", "* 1 FETCH (UID 7 FLAGS (", "\\Seen ", "))", fetch));

  const Read completion = [](std::string_view line) {
    const auto read = IMAPParser::parseCompletion(line, "A0001");
    return read ? read->text.size() : 0;
  };
  for (const std::string_view fragment : {"done ", " ", "\u3000", "\t\u2003", "\xFF"}) {
    shapes.push_back(between("completion", "A0001 OK ", fragment, "", completion));
    shapes.push_back(between("completion", "A0001", fragment, "OK", completion));
  }
}

}  // namespace

void addResponseShapes(std::vector<Shape>& shapes) {
  addAssemblerShapes(shapes);
  addTokenizerShapes(shapes);
  addReaderShapes(shapes);
}

}  // namespace tarnwell::bench

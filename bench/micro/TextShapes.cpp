#include <limits>

#include "IMAP/Decoding/Readings.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "MailInputs.h"
#include "Shapes.h"
#include "Text/Text.h"

namespace tarnwell::bench {

namespace {

using namespace TextDecoding;
using Read = std::function<std::size_t(std::string_view)>;

Shape of(const std::string& reader, const std::string& name, Script script, const Read& read) {
  return {.reader = reader,
          .name = name,
          .input = [script](std::size_t size) { return prose(script, size); },
          .read = read};
}

void addTransferShapes(std::vector<Shape>& shapes) {
  const Read base64 = [](std::string_view text) { return decodeBase64(text).value_or("").size(); };
  shapes.push_back({.reader = "base64",
                    .name = "lines of 76 columns",
                    .input = [](std::size_t size) { return base64Lines(randomBytes(size / 4 * 3)); },
                    .read = base64});
  addRepeated(shapes, "base64", {"A", "=", "A=", "!", "A!", "AAA=\r\n"}, base64);

  const Read quoted = [](std::string_view text) {
    return decodeQuotedPrintable(text, Underscore::isUnderscore).size();
  };
  const Read inHeaders = [](std::string_view text) {
    return decodeQuotedPrintable(text, Underscore::isSpace).size();
  };
  shapes.push_back({.reader = "quoted-printable",
                    .name = "lines of 76 columns",
                    .input = [](std::size_t size) { return quotedPrintableLines(newsletter(size)); },
                    .read = quoted});
  addRepeated(shapes, "quoted-printable", {"=E3=81=82", "=", "=\n", "=\r", "=0", "a="}, quoted);
  addRepeated(shapes, "Q encoding", {"_", "a_", "=E3", "="}, inHeaders);
}

void addCharsetShapes(std::vector<Shape>& shapes) {
  struct Row {
    std::string_view charset;
    std::vector<std::string_view> fragments;
  };
  for (const Row& row :
       {Row{"utf-8", {"plain text ", "\u3042", "\xFF", "\xE3\x81", "\xF0\x9F"}},
        Row{"us-ascii", {"plain text ", "\xE9"}}, Row{"iso-8859-1", {"caf\xE9 ", "\xFF"}},
        Row{"windows-1252", {"caf\xE9 \x93", "\x81"}}, Row{"shift_jis", {"\x82\xA0\x82\xA2", "\x82", "\x1A"}},
        Row{"euc-jp", {"\xA4\xA2", "\x8F\xA2\xAF", "\xA4"}},
        Row{"iso-2022-jp", {"\x1B$B2q5D\x1B(B mail ", "\x1B$B", "\x1B", "\x0E\x31\x0F"}},
        Row{"utf-16", {std::string_view("\0a", 2), "\xD8\x3D"}},
        Row{"gb18030", {"\xC4\xE3", "\x81\x30\x81\x30", "\x81"}},
        Row{"no-such-charset", {"text ", "\xFF"}}}) {
    addRepeated(
        shapes, "charset " + std::string(row.charset), row.fragments,
        [charset = row.charset](std::string_view bytes) { return decodeCharset(bytes, charset).size(); });
  }
}

void addHeaderShapes(std::vector<Shape>& shapes) {
  const Read decode = [](std::string_view field) { return decodeRFC2047(field)->size(); };
  shapes.push_back({.reader = "encoded words",
                    .name = "subjects",
                    .input =
                        [](std::size_t size) {
                          std::string text;
                          for (const std::string& field : headerFields(size / 60)) {
                            text.append(field).append(" ");
                          }
                          return text;
                        },
                    .read = decode});
  addRepeated(shapes, "encoded words",
              {"=?", "=?a", "=?a?", "=?a?b?", "=?a?q?b", "=?utf-8?q?a?=", "=?utf-8?b?4pyT?= ", "?=",
               "=?x?q?=?=", "=?shift_jis?q?a?=", "=?no?q?a?= \u3000"},
              decode);
}

void addHTMLShapes(std::vector<Shape>& shapes) {
  const Read toText = [](std::string_view html) { return htmlToText(html).size(); };
  shapes.push_back({.reader = "htmlToText", .name = "newsletter", .input = newsletter, .read = toText});
  shapes.push_back(of("htmlToText", "plain text", Script::latin, toText));
  addRepeated(shapes, "htmlToText",
              {"<",
               ">",
               "<>",
               "<p>a</p>",
               "<script",
               "<script>",
               "<script></scrip",
               "<script></script>",
               "<head>",
               "<style ",
               "<style></st",
               "</",
               "<    ",
               "<br   ",
               "</h1 ",
               "<\u3000",
               "<\u017F",
               "&",
               "&amp;",
               "&am",
               "&#1",
               "&#x",
               "&#",
               "&#1;",
               "&nbsp;",
               "<b",
               "< br <"},
              toText);
}

void addPreviewShapes(std::vector<Shape>& shapes) {
  const Read preview = [](std::string_view text) { return snippet(text, 200).text.size(); };
  const Read collapse = [](std::string_view text) {
    return snippet(text, std::numeric_limits<std::int64_t>::max()).text.size();
  };
  const Read count = [](std::string_view text) { return characterCount(text); };
  shapes.push_back(
      {.reader = "snippet",
       .name = "200 characters after blanks",
       .input = [](std::size_t size) { return std::string(size, ' ') + prose(Script::latin, 2000); },
       .read = preview});
  addRepeated(shapes, "snippet", {"\u0301", "\u200D", "\xFF"}, preview);
  addRepeated(shapes, "snippet, all of the text",
              {" ", "a", "a ", "\u00A0\n", "\u0301", "\U0001F468\u200D", "\xFF"}, collapse);
  for (const auto& [name, script] :
       {std::pair("Latin", Script::latin), std::pair("Japanese", Script::japanese),
        std::pair("emoji", Script::emoji), std::pair("Latin with emoji", Script::latinWithEmoji)}) {
    shapes.push_back(of("snippet, all of the text", name, script, collapse));
    shapes.push_back(of("character count", name, script, count));
  }
  addRepeated(shapes, "character count",
              {"\r", "\r\n", "\u0301", "a\u0301", "\u200D", "\U0001F1EF", "\U0001F468\u200D", "\u0600",
               "\u1100", "\uAC00", "\u0915\u094D", "\U0001F600ab", "\xFF", "\xE3\x81"},
              count);
}

void addReadingShapes(std::vector<Shape>& shapes) {
  const Read fold = [](std::string_view text) { return foldedForScanning(text).size(); };
  shapes.push_back(of("folding", "Latin", Script::latin, fold));
  shapes.push_back(of("folding", "Japanese", Script::japanese, fold));
  addRepeated(shapes, "folding",
              {" ", "A", "\u0301\u0316", "\u0301\u200D\u0316", "\u200B", "\u1100", "\uFDFA", "文\n", "\xFF"},
              fold);

  // The whole text leaves the program, in a charset that is not its own.
  const auto readings = [](bool isHTML) {
    return [isHTML](std::string_view bytes) {
      const BodySource source{
          .bytes = std::string(bytes), .named = Charset::utf8, .used = Charset::latin1, .isHTML = isHTML};
      const std::string text = decodeCharset(bytes, "iso-8859-1");
      std::size_t size = 0;
      for (const Passage& passage : bodyReadings(source, text, text.size())) {
        size += passage.text.size();
      }
      return size;
    };
  };
  addRepeated(shapes, "readings of text", {"\x93\xFA", "\xFF", "\x1B$B", "\x1B$BF|K\\\x1B(B", "a \xE6\x97"},
              readings(false));
  addRepeated(shapes, "readings of HTML",
              {"<b>\x93\xFA</b>", "<i", "&shy", "&#65", "&#", "<!-- -->\xFF", "\uFDD0"}, readings(true));
  const Read header = [](std::string_view field) { return headerReadings(field).size(); };
  addRepeated(shapes, "readings of a field", {"=?utf-8?q?=E6?= ", "=?utf-8?q?a?= b", "=?", "\x93\xFA"},
              header);
}

}  // namespace

void addTextShapes(std::vector<Shape>& shapes) {
  addTransferShapes(shapes);
  addCharsetShapes(shapes);
  addHeaderShapes(shapes);
  addHTMLShapes(shapes);
  addPreviewShapes(shapes);
  addReadingShapes(shapes);
}

}  // namespace tarnwell::bench

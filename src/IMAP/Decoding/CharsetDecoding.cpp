#include "IMAP/Decoding/TextDecoding.h"

#include <algorithm>

#include "Text/Text.h"

namespace tarnwell::TextDecoding {

namespace {

struct NamedCharset {
  std::string_view name;
  const Charset& charset;
};

const NamedCharset commonNames[] = {
    {"utf-8", Charset::utf8},
    {"utf8", Charset::utf8},
    {"us-ascii", Charset::ascii},
    {"ascii", Charset::ascii},
    {"iso-8859-1", Charset::latin1},
    {"latin1", Charset::latin1},
    {"latin-1", Charset::latin1},
    {"8859_1", Charset::latin1},
    {"iso-8859-2", Charset::latin2},
    {"latin2", Charset::latin2},
    {"windows-1252", Charset::windows1252},
    {"cp1252", Charset::windows1252},
    {"windows-1251", Charset::windows1251},
    {"cp1251", Charset::windows1251},
    {"shift_jis", Charset::shiftJIS},
    {"shift-jis", Charset::shiftJIS},
    {"sjis", Charset::shiftJIS},
    {"x-sjis", Charset::shiftJIS},
    {"euc-jp", Charset::eucJP},
    {"eucjp", Charset::eucJP},
    {"iso-2022-jp", Charset::iso2022JP},
    // Deliberate: the byte-order mark decides the byte order, never the name. Some mail says "utf-16le" and
    // begins with a big-endian mark. The mark is right.
    {"utf-16", Charset::utf16},
    {"utf-16le", Charset::utf16},
    {"utf-16be", Charset::utf16},
    // GB 18030 contains the other two.
    {"gb2312", Charset::gb18030},
    {"gbk", Charset::gb18030},
    {"gb18030", Charset::gb18030},
};

}  // namespace

Charset stringEncoding(std::optional<std::string_view> name) {
  if (!name) {
    return Charset::utf8;
  }
  const std::string lowerName = lowercased(*name);
  const auto common = std::ranges::find(commonNames, lowerName, &NamedCharset::name);
  if (common != std::end(commonNames)) {
    return common->charset;
  }
  return Charset::named(lowerName).value_or(Charset::utf8);
}

DecodedText decodeWithFallback(std::string_view bytes, const Charset& named) {
  for (const Charset& candidate : {named, Charset::utf8}) {
    if (std::optional<std::string> text = convertToUTF8(bytes, candidate)) {
      return {*std::move(text), candidate};
    }
  }
  return {convertToUTF8(bytes, Charset::latin1).value_or(""), Charset::latin1};
}

std::string decodeCharset(std::string_view bytes, std::optional<std::string_view> charset) {
  return decodeWithFallback(bytes, stringEncoding(charset)).text;
}

}  // namespace tarnwell::TextDecoding

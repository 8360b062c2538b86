#pragma once

/// From the bytes of mail to readable text: transfer encodings, charsets, encoded words, HTML, previews.
///
/// Nothing here fails or throws. What cannot be decoded falls back step by step (named charset, UTF-8,
/// ISO 8859-1) or stays as it stands; the worst result is the empty text. Every operation is linear in
/// its input. What `decodeText`, `decodeCharset` and `snippet` return is valid UTF-8 whatever they are
/// given; `decodeRFC2047` and `htmlToText` leave bytes that are no part of a match as they are.
///
///     decodeText("Y2Fm6Q==", "base64", "iso-8859-1")            // "café"
///     decodeRFC2047("Re: =?utf-8?q?caf=C3=A9_au_lait?=")        // "Re: café au lait"
///     snippet(htmlToText("<p>Hello</p><p>you &amp; me"), 200)   // {"Hello you & me", false}
///
/// Threads: all operations are pure.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "IMAP/Decoding/Readings.h"
#include "Text/Charsets.h"

namespace tarnwell::TextDecoding {

/// A body part as text: the content transfer encoding undone (RFC 2045, section 6: "base64",
/// "quoted-printable", any other name unchanged; letter case is ignored), then the charset.
/// Base64 that yields nothing at all is taken as unencoded. The body is taken over, so that its memory is
/// free again as soon as its encoding is undone.
std::string decodeText(std::string body, std::string_view encoding, std::optional<std::string_view> charset);

/// The same, with the beginning of what the text was made of; `source.isHTML` is the caller's to set.
struct DecodedPart {
  std::string text;
  BodySource source;
};
DecodedPart decodePart(std::string body, std::string_view encoding, std::optional<std::string_view> charset);

/// The bytes in the named charset; when that does not succeed as a whole UTF-8, then ISO 8859-1.
std::string decodeCharset(std::string_view bytes, std::optional<std::string_view> charset);

/// The same, told which charset it was.
struct DecodedText {
  std::string text;
  Charset charset;
};
DecodedText decodeWithFallback(std::string_view bytes, const Charset& named);

/// The charset for a name found in mail. The common names are fixed, any other is looked up in the IANA
/// registry; an absent or unknown name means UTF-8.
Charset stringEncoding(std::optional<std::string_view> name);

/// A header field with its encoded words decoded (RFC 2047). White space between two encoded words is
/// dropped (section 6.2), all other text kept. Each word is decoded on its own.
std::optional<std::string> decodeRFC2047(std::optional<std::string_view> text);

enum class Underscore { isUnderscore, isSpace };

/// Quoted-printable (RFC 2045, section 6.7), and with `isSpace` the Q encoding (RFC 2047, section 4.2).
/// Soft line breaks vanish, also before a bare LF; a "=" that starts no escape stays.
std::string decodeQuotedPrintable(std::string_view bytes, Underscore underscore);

/// Base64 (RFC 2045, section 6.8), with or without its padding, every other character ignored. Absent when
/// there is something to decode but not a single whole byte.
///
/// After padding that ends some bytes, decoding goes on only when all that follows is base64 again: letters
/// of the alphabet, "=" and white space; no blanks between two letters of one line; and every run of letters
/// up to "=" or the end makes whole bytes, the last one whole groups of four unless "=" ends it. Otherwise
/// the padding is the end, so that a footer of words which a mailing list appended is left out.
std::optional<std::string> decodeBase64(std::string_view text);

/// HTML as plain text: scripts, styles and head removed, closing block tags as line feeds, other tags as
/// spaces, entities decoded. White space is not collapsed.
/// The tags are recognised by the expressions that `HTMLToText.cpp` quotes, not by a parser of HTML: a
/// "<" that is text may hide what follows it up to the next ">".
std::string htmlToText(std::string_view html);
/// The same where the text lies, for one of many megabytes.
void reduceHTMLToText(std::string& html);

/// The result of `snippet`.
struct Snippet {
  std::string text;
  bool truncated = false;

  bool operator==(const Snippet&) const = default;
};

/// A preview: white space collapsed to single spaces, trimmed, and cut to `maxChars` user-perceived
/// characters; a negative number acts as 0. A cut text ends in "…", which is not counted. Of a long text
/// only as much is read as the preview needs.
Snippet snippet(std::string_view text, std::int64_t maxChars);

/// How many bytes from the beginning of the text the snippet of `maxChars` characters is made of.
std::size_t snippetSourceLength(std::string_view text, std::int64_t maxChars);

}  // namespace tarnwell::TextDecoding

#pragma once

/// Turns the bytes of mail into readable text: transfer encodings, charsets, encoded words, HTML, previews.
///
/// Nothing here fails or throws. Bytes that cannot be decoded fall back step by step (named charset, UTF-8,
/// ISO 8859-1) or stay unchanged. The worst result is the empty text. Every operation takes linear time.
/// `decodeText`, `decodeCharset` and `snippet` return valid UTF-8 for any input. `decodeRFC2047` and
/// `htmlToText` do not change bytes outside of a match.
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

/// A body part as text. Undoes the content transfer encoding (RFC 2045, section 6: "base64" or
/// "quoted-printable" in any letter case; others mean unencoded), then the charset. Base64 that yields no
/// bytes is taken as unencoded. Takes the body over, so its memory is freed as soon as its encoding is
/// undone.
std::string decodeText(std::string body, std::string_view encoding, std::optional<std::string_view> charset);

/// The same, with the beginning of the bytes from which the text was made. The caller sets `source.isHTML`.
struct DecodedPart {
  std::string text;
  BodySource source;
};
DecodedPart decodePart(std::string body, std::string_view encoding, std::optional<std::string_view> charset);

/// The bytes read in the named charset. If they are not valid in it, they are all read in UTF-8, and if they
/// are not valid there either, in ISO 8859-1.
std::string decodeCharset(std::string_view bytes, std::optional<std::string_view> charset);

/// The same, with the charset that was used.
struct DecodedText {
  std::string text;
  Charset charset;
};
DecodedText decodeWithFallback(std::string_view bytes, const Charset& named);

/// The charset for a name in mail. Common names come from a fixed table, others from the IANA registry. An
/// absent or unknown name means UTF-8.
Charset stringEncoding(std::optional<std::string_view> name);

/// A header field with its encoded words decoded (RFC 2047). Drops white space between two encoded words
/// (section 6.2) and keeps all other text. Decodes each word by itself.
std::optional<std::string> decodeRFC2047(std::optional<std::string_view> text);

enum class Underscore { isUnderscore, isSpace };

/// Quoted-printable (RFC 2045, section 6.7), and with `isSpace` the Q encoding (RFC 2047, section 4.2).
/// Removes soft line breaks, also before a bare LF. Keeps a "=" that starts no escape.
std::string decodeQuotedPrintable(std::string_view bytes, Underscore underscore);

/// Base64 (RFC 2045, section 6.8), with or without padding. Ignores every other character. Absent when there
/// are letters to decode but they make no whole byte.
///
/// Padding that ends some bytes usually ends the data, so a footer that a mailing list appended is left out.
/// Decoding continues only when the rest is base64 again:
/// - The rest has only letters of the alphabet, "=" and white space.
/// - There is no blank between two letters of one line.
/// - Every run of letters up to "=" makes whole bytes. A run up to the end of the text makes whole groups of
///   four.
std::optional<std::string> decodeBase64(std::string_view text);

/// HTML as plain text. Scripts, styles and head are removed, closing block tags become line feeds, other tags
/// become spaces, and entities are decoded. White space is not collapsed. The tags are found by the
/// expressions that `HTMLToText.cpp` quotes, not by an HTML parser. A "<" that is text may hide the text up
/// to the next ">".
std::string htmlToText(std::string_view html);
/// The same in place, for a text of many megabytes.
void reduceHTMLToText(std::string& html);

/// The result of `snippet`.
struct Snippet {
  std::string text;
  bool truncated = false;

  bool operator==(const Snippet&) const = default;
};

/// A preview: white space collapsed to single spaces, trimmed, cut to `maxChars` user-perceived characters. A
/// negative number counts as 0. A cut text ends in "…", which does not count. Reads only as much of a long
/// text as the preview needs.
Snippet snippet(std::string_view text, std::int64_t maxChars);

/// How many bytes at the beginning of the text the snippet of `maxChars` characters represents.
std::size_t snippetSourceLength(std::string_view text, std::int64_t maxChars);

}  // namespace tarnwell::TextDecoding

#pragma once

/// Unicode text as users perceive it: characters, letter case, white space and whole words.
///
/// All texts are UTF-8. Bytes that are no valid UTF-8 never fail: each maximal invalid sequence counts
/// as one U+FFFD (Unicode 15, section 3.9), so `repairedUTF8` turns any bytes into a valid text.
///
///     characterCount("e\u0301\u{1F468}\u200D\u{1F469}")  // 2: a combining sequence, one family emoji
///     characterPrefix("日本語", 2)                        // "日本"
///     hasWord("your otp: 4711", "otp")                    // true
///     hasWord("hotpot", "otp")                            // false
///
/// Threads: all functions are pure.

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwell {

/// The bytes as valid UTF-8, each maximal invalid sequence replaced by U+FFFD.
std::string repairedUTF8(std::string_view bytes);

/// True when the bytes are well-formed UTF-8 (RFC 3629: no surrogates, no overlong forms).
bool isValidUTF8(std::string_view bytes);

/// Full Unicode case mapping, independent of the user's language (Unicode 15, section 3.13).
std::string lowercased(std::string_view text);
std::string uppercased(std::string_view text);

/// The form in which scanners look for words and numbers: compatibility characters as the ordinary ones (NFKC
/// of Unicode Standard Annex #15: full-width and circled digits become digits), typographic dashes and
/// apostrophes as those of ASCII, without what shows nothing (Default_Ignorable_Code_Point: soft hyphens,
/// zero-width spaces), white space collapsed to single blanks and none at the ends. Letter case is kept. A
/// line end between two wide characters goes too: Japanese is wrapped in the middle of its words. Of a run of
/// combining marks the first 30 count, as in the annex's Stream-Safe Text Format: sorting them all takes time
/// that grows with the square.
std::string foldedForScanning(std::string_view text);

/// Number of user-perceived characters: extended grapheme clusters of Unicode Standard Annex #29.
/// CR LF is one character.
std::size_t characterCount(std::string_view text);

/// The first `count` user-perceived characters, or the whole text when it has no more.
std::string_view characterPrefix(std::string_view text, std::size_t count);

/// The Unicode property White_Space: blanks, tabs, line breaks, no-break and ideographic spaces.
bool isWhitespace(char32_t codePoint);

/// General category Cc: U+0000 to U+001F and U+007F to U+009F.
bool isControlCharacter(char32_t codePoint);

/// General category Cf: bidirectional controls, zero-width joiners and the like.
bool isFormatCharacter(char32_t codePoint);

/// The text without the white space (line breaks included) at both of its ends.
std::string_view trimmed(std::string_view text);

/// True when the word begins in the first `end` bytes of the text and stands there as a whole: both of its
/// ends lie on a word boundary, where the letters, marks and digits of all scripts and connector punctuation
/// count as parts of words, and marks and format characters are passed over. Letter case counts.
bool hasWord(std::string_view text, std::string_view word, std::size_t end = std::string_view::npos);

}  // namespace tarnwell

#pragma once

/// Unicode text as users perceive it: characters, letter case, white space and whole words.
///
/// All texts are UTF-8. No function fails on other bytes: each maximal invalid sequence counts as one U+FFFD
/// (Unicode 15, section 3.9).
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

/// The bytes as valid UTF-8, with each maximal invalid sequence replaced by U+FFFD.
std::string repairedUTF8(std::string_view bytes);

/// True when the bytes are well-formed UTF-8 (RFC 3629: no surrogates, no overlong forms).
bool isValidUTF8(std::string_view bytes);

/// Full Unicode case mapping, independent of the user's language (Unicode 15, section 3.13).
std::string lowercased(std::string_view text);
std::string uppercased(std::string_view text);

/// The form in which scanners look for words and numbers:
/// - Compatibility characters become ordinary ones (NFKC of Unicode Standard Annex #15). For example,
///   full-width and circled digits become digits.
/// - Typographic dashes and apostrophes become those of ASCII.
/// - Characters that show nothing go (Default_Ignorable_Code_Point: soft hyphens, zero-width spaces).
/// - White space collapses to single blanks. White space at both ends goes.
/// - A line end between two wide characters goes, because Japanese is wrapped in the middle of words.
/// - Of a run of combining marks only the first 30 stay, as in the annex's Stream-Safe Text Format. Sorting
///   all marks of a run takes quadratic time.
///
/// Letter case stays.
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

/// The text without white space (line breaks included) at its ends.
std::string_view trimmed(std::string_view text);

/// True when the word begins in the first `end` bytes of the text and both of its ends lie on a word
/// boundary. Letters, marks and digits of all scripts and connector punctuation are parts of words. Marks and
/// format characters belong to the character before them. Letter case counts.
bool hasWord(std::string_view text, std::string_view word, std::size_t end = std::string_view::npos);

}  // namespace tarnwell

#pragma once

/// Conversion of bytes in the character sets of mail into UTF-8.
///
/// A `Charset` is one of the constants below, or comes from a name of the IANA registry. `convertToUTF8`
/// converts all of the bytes or fails, so the caller can try the next candidate. `convertLeniently` never
/// fails.
///
///     convertToUTF8("\xA4\xE9", Charset::shiftJIS)       // absent: after "､" comes a lone lead byte
///     Charset::named("KOI8-R")                           // a charset
///     Charset::named("no-such-charset")                  // absent
///
/// The Japanese charsets decode as the supersets that mail programs really send: code page 932 for Shift_JIS,
/// and the same repertoire (NEC row 13, the NEC and IBM extensions, half-width katakana) in the EUC-JP and
/// ISO-2022-JP framings. The tables in use disagree about some characters. These come out as Windows and most
/// mail programs show them: the wave dash as U+FF5E, the minus sign as U+FF0D, bytes 5C and 7E as backslash
/// and tilde. Only after ESC ( J, which announces JIS X 0201, byte 5C is the yen sign. ISO-2022-JP also takes
/// JIS X 0212 and all three ways to write half-width katakana: ESC ( I, the eighth bit, and between SO and
/// SI.
///
/// UTF-16 takes its byte order from the byte-order mark. Without a mark it is big-endian (RFC 2781, section
/// 4.3).
///
/// Threads: any; all functions may run at the same time.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

/// A character encoding, as a small value.
class Charset {
 public:
  static const Charset utf8, ascii, latin1, latin2, windows1252, windows1251, shiftJIS, eucJP, iso2022JP,
      utf16, gb18030;

  /// The charset with this name in the IANA registry (RFC 2978), in any letter case. Also knows names that
  /// are in wide use but not registered, such as "cp932". Absent for an unknown name. Does not trim the name.
  static std::optional<Charset> named(std::string_view ianaName);

  /// The name of ICU's converter.
  std::string_view name() const { return name_; }

  bool operator==(const Charset&) const = default;

 private:
  explicit Charset(std::string name) : name_(std::move(name)) {}
  std::string name_;
};

/// The bytes as UTF-8. Absent when any of them is not valid in the charset.
std::optional<std::string> convertToUTF8(std::string_view bytes, const Charset& charset);

/// The bytes as UTF-8, with U+FFFD for bytes that are not valid in the charset.
std::string convertLeniently(std::string_view bytes, const Charset& charset);

/// The number of bytes from which `convertLeniently` makes its first `codePoints` code points. The number of
/// all bytes when there are no more code points. An escape sequence counts with the code point after it.
std::size_t sourceLength(std::string_view bytes, const Charset& charset, std::size_t codePoints);

}  // namespace tarnwell

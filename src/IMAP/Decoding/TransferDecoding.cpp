#include "IMAP/Decoding/TextDecoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <utility>

#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell::TextDecoding {

namespace {

/// The value of each byte, or -1.
using ByteValues = std::array<signed char, 256>;

/// The value of each byte of a text is its position there.
constexpr ByteValues placesIn(std::initializer_list<std::string_view> texts) {
  ByteValues values{};
  values.fill(-1);
  for (const std::string_view text : texts) {
    for (std::size_t place = 0; place < text.size(); ++place) {
      values[static_cast<unsigned char>(text[place])] = static_cast<signed char>(place);
    }
  }
  return values;
}

constexpr ByteValues hexDigits = placesIn({"0123456789ABCDEF", "0123456789abcdef"});
constexpr ByteValues base64Letters =
    placesIn({"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"});

int valueOf(char byte, const ByteValues& values) { return values[static_cast<unsigned char>(byte)]; }

/// Decodes the escape whose "=" `from` points to, or copies the "=".
void decodeEscape(const char*& from, const char* end, char*& to) {
  const auto left = end - from;
  const int high = left > 2 ? valueOf(from[1], hexDigits) : -1;
  const int low = left > 2 ? valueOf(from[2], hexDigits) : -1;
  if (high >= 0 && low >= 0) {
    *to++ = static_cast<char>(high * 16 + low);
    from += 3;
  } else if (left > 2 && from[1] == '\r' && from[2] == '\n') {
    from += 3;
  } else if (left > 1 && from[1] == '\n') {
    from += 2;
  } else {
    *to++ = *from++;
  }
}

/// True when the text after padding is base64 again, by the rule in the header.
bool isBase64Again(std::string_view text) {
  std::size_t letters = 0;  // since the last "="
  bool isAfterLetter = false;
  bool isAfterLetterAndBlank = false;  // on one line
  for (const char character : text) {
    if (valueOf(character, base64Letters) >= 0) {
      if (isAfterLetterAndBlank) {
        return false;
      }
      ++letters;
      isAfterLetter = true;
    } else if (character == ' ' || character == '\t') {
      isAfterLetterAndBlank = isAfterLetter;
    } else if (character == '\r' || character == '\n' || character == '=') {
      isAfterLetter = isAfterLetterAndBlank = false;
      if (character == '=' && std::exchange(letters, 0) % 4 == 1) {
        return false;  // a single letter makes no byte
      }
    } else {
      return false;
    }
  }
  return letters % 4 == 0;
}

/// Writes the bytes over the text: four letters make three bytes. False when there are letters and they make
/// no byte; then the text is unchanged.
bool decodeBase64InPlace(std::string& text) {
  char* written = text.data();
  bool sawLetter = false;
  bool goesOnAfterPadding = false;
  std::uint32_t bits = 0;
  unsigned count = 0;  // of the low bits that are not written yet
  const auto valueAt = [](const char* letter) { return valueOf(*letter, base64Letters); };
  const char* const end = text.data() + text.size();
  for (const char* next = text.data(); next < end;) {
    // Four letters at a time take half as long as single letters.
    if (count == 0 && end - next >= 4) {
      const int group =
          valueAt(next) << 18 | valueAt(next + 1) << 12 | valueAt(next + 2) << 6 | valueAt(next + 3);
      if (group >= 0) {
        *written++ = static_cast<char>(group >> 16);
        *written++ = static_cast<char>(group >> 8);
        *written++ = static_cast<char>(group);
        next += 4;
        continue;
      }
    }
    const char character = *next++;
    if (const int value = valueOf(character, base64Letters); value >= 0) {
      sawLetter = true;
      bits = bits << 6 | static_cast<std::uint32_t>(value);
      count += 6;
      if (count >= 8) {
        count -= 8;
        *written++ = static_cast<char>(bits >> count & 0xFF);
      }
    } else if (character == '=') {
      count = 0;  // drops the bits of an incomplete byte
      if (written != text.data() && !goesOnAfterPadding) {
        // Once is enough: the text after the next padding was already read here.
        goesOnAfterPadding = isBase64Again({next, end});
        if (!goesOnAfterPadding) {
          break;
        }
      }
    }
  }
  if (written == text.data() && sawLetter) {
    return false;
  }
  text.resize(static_cast<std::size_t>(written - text.data()));
  return true;
}

}  // namespace

std::optional<std::string> decodeBase64(std::string_view text) {
  std::string bytes(text);
  return decodeBase64InPlace(bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

std::string decodeQuotedPrintable(std::string_view bytes, Underscore underscore) {
  std::string decoded(bytes.size(), '\0');
  const char* from = bytes.data();
  const char* const end = from + bytes.size();
  char* to = decoded.data();
  while (from < end) {
    if (*from == '=') {
      decodeEscape(from, end, to);
      continue;
    }
    const char* const escape = std::find(from, end, '=');
    to = underscore == Underscore::isSpace ? std::replace_copy(from, escape, to, '_', ' ')
                                           : std::copy(from, escape, to);
    from = escape;
  }
  decoded.resize(static_cast<std::size_t>(to - decoded.data()));
  return decoded;
}

std::string decodeText(std::string body, std::string_view encoding, std::optional<std::string_view> charset) {
  return decodePart(std::move(body), encoding, charset).text;
}

DecodedPart decodePart(std::string body, std::string_view encoding, std::optional<std::string_view> charset) {
  const std::string name = lowercased(encoding);
  if (name == "quoted-printable") {
    body = decodeQuotedPrintable(body, Underscore::isUnderscore);
  } else if (name == "base64") {
    decodeBase64InPlace(body);  // leaves the body unchanged if it is not base64
  }
  const Charset named = stringEncoding(charset);
  DecodedPart part;
  part.source.bytes = bytePrefix(body, mostBytesForReadings);
  part.source.named = named;
  part.source.used = named;
  if ((named == Charset::utf8 || named == Charset::ascii) && isValidUTF8(body)) {
    part.source.used = Charset::utf8;
    part.text = std::move(body);  // moved, not copied: it may have tens of megabytes
    return part;
  }
  DecodedText decoded = decodeWithFallback(body, named);
  part.source.used = decoded.charset;
  part.text = std::move(decoded.text);
  return part;
}

}  // namespace tarnwell::TextDecoding

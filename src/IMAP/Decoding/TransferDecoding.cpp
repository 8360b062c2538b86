#include "IMAP/Decoding/TextDecoding.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include "IMAP/Decoding/HexDigits.h"
#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell::TextDecoding {

namespace {

constexpr std::string_view base64Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Marks a byte outside the alphabet. The sextets of one group of four never add up to it.
constexpr std::uint32_t notInAlphabet = 0x80000000U;

/// For each byte its sextet, already shifted to its place in a group of four.
using SextetTable = std::array<std::uint32_t, 256>;

constexpr SextetTable sextetsShiftedBy(unsigned shift) {
  SextetTable table{};
  table.fill(notInAlphabet);
  for (std::uint32_t value = 0; value < base64Alphabet.size(); ++value) {
    table[static_cast<unsigned char>(base64Alphabet[value])] = value << shift;
  }
  return table;
}

constexpr std::array<SextetTable, 4> sextets = {sextetsShiftedBy(18), sextetsShiftedBy(12),
                                                sextetsShiftedBy(6), sextetsShiftedBy(0)};

/// Writes the bytes of groups of sextets. Four sextets make at most three bytes, so the writer may overwrite
/// the text that is being read: it never overtakes the reader.
class Base64Writer {
 public:
  explicit Base64Writer(char* next) : next_(next) {}

  bool isBetweenGroups() const { return pending_ == 0; }
  char* end() const { return next_; }

  void writeGroup(std::uint32_t group) { writeBytes(group, 3); }

  void addSextet(std::uint32_t sextet) {
    group_ = (group_ << 6) | sextet;
    if (++pending_ == 4) {
      endGroup();
    }
  }

  /// Two sextets make one byte, three make two. A single one makes none and is dropped.
  void endGroup() {
    if (pending_ > 1) {
      writeBytes(group_ << (6 * (4 - pending_)), pending_ - 1);
    }
    group_ = 0;
    pending_ = 0;
  }

 private:
  void writeBytes(std::uint32_t group, unsigned count) {
    for (unsigned shift = 16; count > 0; shift -= 8, --count) {
      *next_++ = static_cast<char>((group >> shift) & 0xFF);
    }
  }

  char* next_;
  std::uint32_t group_ = 0;
  unsigned pending_ = 0;
};

bool holdsByte(std::uint64_t word, char byte) {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  const std::uint64_t zeroWhereEqual = word ^ (static_cast<unsigned char>(byte) * ones);
  return ((zeroWhereEqual - ones) & ~zeroWhereEqual & (0x80 * ones)) != 0;
}

/// Copies bytes while the next eight contain no "=". The output must have room for eight.
void copyCleanWords(const char*& from, const char* end, char*& to) {
  std::uint64_t word;
  while (end - from >= static_cast<std::ptrdiff_t>(sizeof word)) {
    std::memcpy(&word, from, sizeof word);
    if (holdsByte(word, '=')) {
      return;
    }
    std::memcpy(to, &word, sizeof word);
    from += sizeof word;
    to += sizeof word;
  }
}

/// Decodes the escape whose "=" `from` points to, or copies the "=".
void decodeEscape(const char*& from, const char* end, char*& to) {
  const auto left = end - from;
  const int high = left > 2 ? hexDigitValue(from[1]) : -1;
  const int low = left > 2 ? hexDigitValue(from[2]) : -1;
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
bool isBase64Again(const unsigned char* next, const unsigned char* end) {
  std::size_t letters = 0;  // since the last "="
  bool isAfterLetter = false;
  bool isAfterLetterAndBlank = false;  // on one line
  for (; next < end; ++next) {
    const unsigned char character = *next;
    if (sextets[3][character] != notInAlphabet) {
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
        return false;  // a single sextet makes no byte
      }
    } else {
      return false;
    }
  }
  return letters % 4 == 0;
}

/// Writes the bytes over the text. False when the sextets made no byte; then the text is unchanged.
bool decodeBase64InPlace(std::string& text) {
  Base64Writer writer(text.data());
  bool sawSextet = false;
  bool goesOnAfterPadding = false;
  const auto* next = reinterpret_cast<const unsigned char*>(text.data());
  const auto* const end = next + text.size();
  while (next < end) {
    while (writer.isBetweenGroups() && end - next >= 4) {
      const std::uint32_t group =
          sextets[0][next[0]] | sextets[1][next[1]] | sextets[2][next[2]] | sextets[3][next[3]];
      if ((group & notInAlphabet) != 0) {
        break;
      }
      writer.writeGroup(group);
      sawSextet = true;
      next += 4;
    }
    if (next == end) {
      break;
    }
    const unsigned char character = *next++;
    const std::uint32_t sextet = sextets[3][character];
    if (sextet != notInAlphabet) {
      writer.addSextet(sextet);
      sawSextet = true;
    } else if (character == '=') {
      writer.endGroup();
      const bool endsBytes = writer.end() != text.data();
      if (endsBytes && !goesOnAfterPadding) {
        // This check is done once: it reads to the end of the text.
        goesOnAfterPadding = isBase64Again(next, end);
        if (!goesOnAfterPadding) {
          break;
        }
      }
    }
  }
  writer.endGroup();
  const auto size = static_cast<std::size_t>(writer.end() - text.data());
  if (size == 0 && sawSextet) {
    return false;
  }
  text.resize(size);
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
    if (underscore == Underscore::isUnderscore) {
      copyCleanWords(from, end, to);
    }
    for (; from < end && *from != '='; ++from) {
      *to++ = *from == '_' && underscore == Underscore::isSpace ? ' ' : *from;
    }
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

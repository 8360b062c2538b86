#include "Text/Charsets.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <array>
#include <memory>

#include "Text/ASCIICase.h"
#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell {

const Charset Charset::utf8("UTF-8");
const Charset Charset::ascii("US-ASCII");
const Charset Charset::latin1("ISO-8859-1");
const Charset Charset::latin2("ISO-8859-2");
const Charset Charset::windows1252("windows-1252");
const Charset Charset::windows1251("windows-1251");
const Charset Charset::shiftJIS("ibm-943_P15A-2003");
const Charset Charset::eucJP("euc-jp-2007");
const Charset Charset::iso2022JP("ISO_2022,locale=ja,version=4");
const Charset Charset::utf16("UTF-16");
const Charset Charset::gb18030("gb18030");

namespace {

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

/// A converter that writes U+FFFD for bytes that it cannot convert, or null.
Converter openLeniently(const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  return Converter(ucnv_open(name, &status));
}

/// A converter that stops at the first bytes that it cannot convert, or null.
Converter openStrictly(const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  Converter converter = openLeniently(name);
  if (!converter) {
    return nullptr;
  }
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  return U_SUCCESS(status) ? std::move(converter) : nullptr;
}

std::optional<std::string> convertWith(const char* converterName, std::string_view bytes,
                                       Converter (*open)(const char*) = openStrictly) {
  const Converter source = open(converterName);
  const Converter target = openStrictly("UTF-8");
  if (!source || !target) {
    return std::nullopt;
  }

  std::string text;
  // No charset of mail makes more than three bytes from one byte. Memory that is never written costs nothing.
  // A text that grows would be in memory twice, and it may have many megabytes.
  text.reserve(bytes.size() * 3);
  std::array<char, 8192> output;
  std::array<UChar, 4096> pivot;
  UChar* pivotRead = pivot.data();
  UChar* pivotWrite = pivot.data();
  const char* next = bytes.data();
  const char* const end = next + bytes.size();
  bool first = true;
  UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
  while (status == U_BUFFER_OVERFLOW_ERROR) {
    status = U_ZERO_ERROR;
    char* written = output.data();
    ucnv_convertEx(target.get(), source.get(), &written, output.data() + output.size(), &next, end,
                   pivot.data(), &pivotRead, &pivotWrite, pivot.data() + pivot.size(),
                   static_cast<UBool>(first), static_cast<UBool>(true), &status);
    text.append(output.data(), written);
    first = false;
  }
  if (U_FAILURE(status)) {
    return std::nullopt;
  }
  return text;
}

/// IBM's tables for personal computers exchange three control characters on the way to Unicode: 1A becomes
/// 1C, 1C becomes 7F and 7F becomes 1A. In mail these bytes have their ASCII meaning. No other byte yields
/// one of the three, so this function can undo the exchange in the result.
void restoreControlCharacters(std::string& text) {
  for (char& byte : text) {
    if (byte == '\x1C') {
      byte = '\x1A';
    } else if (byte == '\x7F') {
      byte = '\x1C';
    } else if (byte == '\x1A') {
      byte = '\x7F';
    }
  }
}

bool exchangesControlCharacters(const char* converterName) {
  return convertWith(converterName, "\x1A\x1C\x7F") == "\x1C\x7F\x1A";
}

/// Names of the Japanese supersets that are in use but not in ICU's alias table.
struct JapaneseName {
  std::string_view name;
  const Charset& charset;
};
const JapaneseName japaneseNames[] = {
    {"eucjp-ms", Charset::eucJP},           {"eucjp-win", Charset::eucJP},   {"eucjpms", Charset::eucJP},
    {"cp50220", Charset::iso2022JP},        {"cp50221", Charset::iso2022JP}, {"cp50222", Charset::iso2022JP},
    {"iso-2022-jp-ms", Charset::iso2022JP},
};

/// ICU's converters that cover only a part of a superset.
struct JapaneseConverter {
  std::string_view converter;
  const Charset& superset;
};
const JapaneseConverter japaneseConverters[] = {
    {"ISO_2022,locale=ja,version=0", Charset::iso2022JP},
    {"windows-51932-2006", Charset::eucJP},
    {"ibm-943_P130-1999", Charset::shiftJIS},
};

/// ICU skips blanks, quotation marks and other signs in a name. It reads a comma as the beginning of
/// converter options, and a slash as a part of a file name. Registered names contain none of these.
bool couldBeRegistered(std::string_view name) {
  constexpr std::size_t longestName = 100;
  return !name.empty() && name.size() <= longestName && std::ranges::all_of(name, [](char character) {
    return isASCIILetterOrDigit(character) ||
           std::string_view("-_.:+()").find(character) != std::string_view::npos;
  });
}

/// ICU's converter for the name, or null. Registries may give the same name to different converters. IANA's
/// comes first.
const char* converterFor(const std::string& name) {
  for (const char* standard : {"IANA", "MIME"}) {
    UErrorCode status = U_ZERO_ERROR;
    const char* converter = ucnv_getCanonicalName(name.c_str(), standard, &status);
    if (U_SUCCESS(status) && converter != nullptr) {
      return converter;
    }
  }
  UErrorCode status = U_ZERO_ERROR;
  const char* converter = ucnv_getAlias(name.c_str(), 0, &status);
  return U_SUCCESS(status) ? converter : nullptr;
}

}  // namespace

std::optional<Charset> Charset::named(std::string_view ianaName) {
  if (!couldBeRegistered(ianaName)) {
    return std::nullopt;
  }
  const std::string name = lowercased(ianaName);
  const auto known = std::ranges::find(japaneseNames, name, &JapaneseName::name);
  if (known != std::end(japaneseNames)) {
    return known->charset;
  }
  const char* converter = converterFor(name);
  if (converter == nullptr) {
    return std::nullopt;
  }
  const auto lesser = std::ranges::find(japaneseConverters, converter, &JapaneseConverter::converter);
  return lesser != std::end(japaneseConverters) ? lesser->superset : Charset(converter);
}

std::optional<std::string> convertToUTF8(std::string_view bytes, const Charset& charset) {
  if (bytes.empty()) {
    // An empty view may have a null address, which ICU refuses.
    return std::string();
  }
  if (charset == Charset::utf8) {
    return isValidUTF8(bytes) ? std::optional(std::string(bytes)) : std::nullopt;
  }
  if (charset == Charset::ascii) {
    return isASCII(bytes) ? std::optional(std::string(bytes)) : std::nullopt;
  }
  const std::string converterName(charset.name());
  std::optional<std::string> text = convertWith(converterName.c_str(), bytes);
  // Version 3 reads half-width katakana between SO and SI (JIS X 0202) instead of with the eighth bit.
  if (!text && charset == Charset::iso2022JP) {
    text = convertWith("ISO_2022,locale=ja,version=3", bytes);
  }
  // Almost no text has one of the three characters. The test after that opens converters, which takes time.
  if (text && text->find_first_of("\x1A\x1C\x7F") != std::string::npos &&
      exchangesControlCharacters(converterName.c_str())) {
    restoreControlCharacters(*text);
  }
  return text;
}

std::string convertLeniently(std::string_view bytes, const Charset& charset) {
  if (std::optional<std::string> text = convertToUTF8(bytes, charset)) {
    return *std::move(text);
  }
  if (charset == Charset::utf8 || charset == Charset::ascii) {
    return repairedUTF8(bytes);
  }
  const std::string converted =
      convertWith(std::string(charset.name()).c_str(), bytes, openLeniently).value_or("");
  std::string text;
  for (const char byte : converted) {
    constexpr char substitute = '\x1A';  // some converters write it instead of U+FFFD
    byte == substitute ? text.append("\uFFFD") : text.append(1, byte);
  }
  return text;
}

std::size_t sourceLength(std::string_view bytes, const Charset& charset, std::size_t codePoints) {
  if (charset == Charset::latin1) {
    return std::min(bytes.size(), codePoints);
  }
  if (charset == Charset::utf8 || charset == Charset::ascii) {
    std::size_t position = 0;
    for (; codePoints > 0 && position < bytes.size(); --codePoints) {
      nextCodePoint(bytes, position);
    }
    return position;
  }
  const Converter converter = openLeniently(std::string(charset.name()).c_str());
  const char* next = bytes.data();
  const char* const end = next + bytes.size();
  for (UErrorCode status = U_ZERO_ERROR; converter && codePoints > 0 && next < end; --codePoints) {
    ucnv_getNextUChar(converter.get(), &next, end, &status);
    if (U_FAILURE(status)) {
      return bytes.size();
    }
  }
  return static_cast<std::size_t>(next - bytes.data());
}

}  // namespace tarnwell

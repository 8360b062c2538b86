#pragma once

/// Modified UTF-7 by the converter of ICU, for comparison. Encoding gives the same names. ICU's decoder also
/// accepts some names that are not in the one valid spelling.

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <memory>
#include <string>
#include <string_view>

namespace tarnwell::test {

using ICUConverter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

/// Null when ICU does not have it.
inline ICUConverter mailboxNameConverter() {
  UErrorCode status = U_ZERO_ERROR;
  ICUConverter converter(ucnv_open("IMAP-mailbox-name", &status), ucnv_close);
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_SUBSTITUTE, nullptr, nullptr, nullptr, &status);
  return converter;
}

/// The name of a text that is valid UTF-8.
inline std::string referenceName(std::string_view text, const ICUConverter& converter) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString units = icu::UnicodeString::fromUTF8(std::string(text));
  std::string name(static_cast<std::size_t>(units.length()) * 5 + 8, '\0');
  name.resize(static_cast<std::size_t>(ucnv_fromUChars(converter.get(), name.data(),
                                                       static_cast<std::int32_t>(name.size()),
                                                       units.getBuffer(), units.length(), &status)));
  return name;
}

/// The text of a valid name.
inline std::string referenceNameText(std::string_view name, const ICUConverter& converter) {
  UErrorCode status = U_ZERO_ERROR;
  std::string text;
  icu::UnicodeString(name.data(), static_cast<std::int32_t>(name.size()), converter.get(), status)
      .toUTF8String(text);
  return text;
}

}  // namespace tarnwell::test

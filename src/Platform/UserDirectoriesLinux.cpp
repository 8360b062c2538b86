#include "Platform/UserDirectories.h"

#include <cstdlib>
#include <string_view>

#include "Text/ASCIICase.h"

namespace tarnwell {
namespace {

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

/// The rules for the XDG base directories have relative paths ignored.
std::optional<std::filesystem::path> absolutePath(std::string_view text) {
  std::filesystem::path path(text);
  if (!path.is_absolute()) {
    return std::nullopt;
  }
  return path;
}

/// A locale's name (language[_TERRITORY][.codeset][@modifier]) as a language tag; empty for what is none.
std::string languageTag(std::string_view locale) {
  std::string tag(locale.substr(0, locale.find_first_of(".@")));
  for (char& character : tag) {
    if (character == '_') {
      character = '-';
    } else if (!isASCIILetterOrDigit(character) && character != '-') {
      return "";
    }
  }
  return tag;
}

/// The programs' own texts, in no particular language.
bool isUntranslated(std::string_view tag) { return tag == "C" || tag == "POSIX"; }

/// The locale for messages, as setlocale(3) chooses it.
std::string_view messageLocale() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (auto value = environment(name); !value.empty()) {
      return value;
    }
  }
  return "C";
}

}  // namespace

std::optional<std::filesystem::path> applicationSupportDirectory() {
  if (auto data = absolutePath(environment("XDG_DATA_HOME"))) {
    return data;
  }
  if (auto home = absolutePath(environment("HOME"))) {
    return *home / ".local" / "share";
  }
  return std::nullopt;
}

std::vector<std::string> preferredLanguages() {
  std::string_view locale = messageLocale();
  // gettext looks at LANGUAGE only when the locale asks for translations at all.
  if (isUntranslated(languageTag(locale))) {
    return {};
  }
  std::string_view wanted = environment("LANGUAGE");
  if (wanted.empty()) {
    wanted = locale;
  }

  std::vector<std::string> tags;
  while (!wanted.empty()) {
    std::size_t colon = wanted.find(':');
    std::string tag = languageTag(wanted.substr(0, colon));
    wanted.remove_prefix(colon == std::string_view::npos ? wanted.size() : colon + 1);
    if (isUntranslated(tag)) {
      break;
    }
    if (!tag.empty()) {
      tags.push_back(std::move(tag));
    }
  }
  return tags;
}

}  // namespace tarnwell

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

/// The XDG Base Directory Specification says to ignore relative paths.
std::optional<std::filesystem::path> absolutePath(std::string_view text) {
  std::filesystem::path path(text);
  if (!path.is_absolute()) {
    return std::nullopt;
  }
  return path;
}

/// Turns a locale's name (language[_TERRITORY][.codeset][@modifier]) into a language tag. Empty for other
/// text.
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

/// True for the locales that use the programs' own texts.
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
  // gettext uses LANGUAGE only when the locale asks for translations.
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

#include "App/support/LoggedTexts.h"

#include <fstream>
#include <map>
#include <regex>
#include <sstream>

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;

/// What a part of a logged text may be, by its expression. Any other is "x", a number is "5".
const std::map<std::string, std::vector<std::string>> formsOfParts = {
    {"label", {"tool search_inbox"}},
    {"std::string(label(plan.decision_.kind))",
     {"execute", "dry-run", "blocked(read-only)", "blocked(disabled)"}},
    {"outcome.summary",
     {"16 messages, 5 withheld", "1 message", "9 folders", "1 folder", "a text of 187 characters", "withheld",
      "1 message, withheld", "no text", "configured", "not configured", "executed", "previewed", "blocked",
      "what a later program gives"}},
};

std::string contentsOf(const fs::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

/// Splits the arguments of a call, or the terms of a sum, where no bracket and no literal is open. Ends at
/// the bracket that closes the call.
std::vector<std::string> split(const std::string& text, std::size_t begin, char separator) {
  std::vector<std::string> parts{""};
  int depth = 0;
  bool isQuoted = false;
  for (std::size_t place = begin; place < text.size(); ++place) {
    const char character = text[place];
    if (character == '"' && (place == 0 || text[place - 1] != '\\')) {
      isQuoted = !isQuoted;
    }
    depth += !isQuoted && (character == '(' || character == '[') ? 1 : 0;
    depth -= !isQuoted && (character == ')' || character == ']') ? 1 : 0;
    if (depth < 0) {
      break;
    }
    if (character == separator && depth == 0 && !isQuoted) {
      parts.emplace_back();
    } else if (isQuoted || character == '"' || !std::isspace(static_cast<unsigned char>(character))) {
      parts.back().push_back(character);
    }
  }
  return parts;
}

/// The helper in one file that takes the beginning of the text as its argument `what`.
std::vector<std::string> beginningsIn(const std::string& source) {
  static const std::regex call(R"re([^:\w]log\("([^"]*)")re");
  std::vector<std::string> texts;
  for (std::sregex_iterator match(source.begin(), source.end(), call); match != std::sregex_iterator();
       ++match) {
    texts.push_back((*match)[1]);
  }
  return texts;
}

std::vector<std::string> formsOf(const std::string& term, const std::string& source) {
  static const std::regex literal(R"re((?:std::string\()?"([^"]*)"\)?)re");
  std::smatch match;
  if (std::regex_match(term, match, literal)) {
    return {match[1]};
  }
  if (const auto forms = formsOfParts.find(term); forms != formsOfParts.end()) {
    return forms->second;
  }
  if (term == "std::string(what)") {
    return beginningsIn(source);
  }
  return {term.starts_with("std::to_string(") ? "5" : "x"};
}

}  // namespace

std::vector<LoggedText> textsOfTheSources(const fs::path& sources) {
  static const std::regex call(R"(AppLogger::(?:debug|info|notice|error)\()");
  std::vector<LoggedText> result;
  for (const auto& file : fs::recursive_directory_iterator(sources)) {
    if (file.path().extension() != ".cpp") {
      continue;
    }
    const std::string source = contentsOf(file.path());
    for (std::sregex_iterator match(source.begin(), source.end(), call); match != std::sregex_iterator();
         ++match) {
      const auto begin = static_cast<std::size_t>(match->position() + match->length());
      const std::vector<std::string> arguments = split(source, begin, ',');
      std::vector<std::string> texts{""};
      for (const std::string& term : split(arguments.at(1), 0, '+')) {
        std::vector<std::string> longer;
        for (const std::string& form : formsOf(term, source)) {
          for (const std::string& text : texts) {
            longer.push_back(text + form);
          }
        }
        texts = std::move(longer);
      }
      for (const std::string& text : texts) {
        result.push_back({file.path().filename().string(), text});
      }
    }
  }
  return result;
}

}  // namespace tarnwell::test

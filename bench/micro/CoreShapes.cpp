#include <cstdint>
#include <fstream>
#include <memory>

#include "Core/AppLogger.h"
#include "Core/ConfigStore.h"
#include "Core/SecurityMail/EmailRiskDetector.h"
#include "Core/SecurityMail/SecretMailRule.h"
#include "Core/SecurityMail/SecretMailScan.h"
#include "MailInputs.h"
#include "Shapes.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::bench {

namespace {

using Read = std::function<std::size_t(std::string_view)>;

/// Making the input also writes the file, so only reading and parsing are measured.
void addSettingsShapes(std::vector<Shape>& shapes) {
  constexpr std::size_t longestFile = std::size_t{1024} * 1024;
  const auto directory = std::make_shared<test::TemporaryDirectory>();
  const ConfigStore store(directory->path());
  struct Row {
    std::string_view before, fragment, after;
  };
  for (const Row& row :
       {Row{"{\"email\":\"user@example.org\",\"other\":[0", ",{\"a\":1}", "]}"},
        Row{"{\"email\":\"", "a", "\"}"}, Row{"{", " ", "}"}, Row{"{\"email\":\"\"", ",\"email\":\"\"", "}"},
        Row{"", "[", ""}, Row{"", "{\"a\":", ""}}) {
    std::string name(row.before);
    name.append(row.fragment).append("…").append(row.after);
    shapes.push_back({.reader = "settings file",
                      .name = std::move(name),
                      .input =
                          [row, directory, store](std::size_t size) {
                            std::string text(row.before);
                            text += repeated(row.fragment, size - row.before.size() - row.after.size());
                            text += row.after;
                            std::ofstream(store.configURL(), std::ios::binary) << text;
                            return text;
                          },
                      .read = [store](std::string_view) { return store.load().email.size(); },
                      .longest = longestFile});
  }
}

void addDetectorShapes(std::vector<Shape>& shapes) {
  const Read subject = [](std::string_view text) {
    return EmailRiskDetector::shared().assess({.subject = text}).signals.size();
  };
  const Read wholeBody = [](std::string_view text) {
    return EmailRiskDetector::shared().assess({.bodyPrefix = text, .scanLimit = SIZE_MAX}).signals.size();
  };
  const Read body = [](std::string_view text) {
    return EmailRiskDetector::shared().assess({.bodyPrefix = text}).signals.size();
  };
  for (const auto& [name, script] :
       {std::pair("Latin", Script::latin), std::pair("Japanese", Script::japanese),
        std::pair("emoji", Script::emoji)}) {
    shapes.push_back({.reader = "detector, a subject",
                      .name = name,
                      .input = [text = script](std::size_t size) { return prose(text, size); },
                      .read = subject});
    shapes.push_back({.reader = "detector, a body in full",
                      .name = name,
                      .input = [text = script](std::size_t size) { return prose(text, size); },
                      .read = wholeBody});
  }
  addRepeated(shapes, "detector, a subject",
              {"hotpot 2fast ", "otp", "\u65E5OTP\u306F", "OTP\u0301 ", "\u0301OTP", "verification cod ",
               "\u8A8D\u8A3C\u30B3\u30FC", "2", "\u03A3", "\u0130", "\xFF", "\u0301", "\u00ADotp\u00AD"},
              subject);
  addRepeated(shapes, "detector, 800 characters of a body", {"\u0301", "\u200D", "\U0001F468\u200D"}, body);
}

void addSecretMailShapes(std::vector<Shape>& shapes) {
  // The work of the rule on each byte, without the rule's limit of 64 KiB. A text of that size fits into the
  // processor's caches and does not show how the time grows.
  const Read signals = [](std::string_view text) { return wordsIn(text).size() + codeGroupsIn(text).size(); };
  const Read masked = [](std::string_view text) { return SecretMailRule::maskedCodes(text).size(); };
  for (const auto& [name, script] :
       {std::pair("Latin", Script::latin), std::pair("Japanese", Script::japanese),
        std::pair("emoji", Script::emoji)}) {
    shapes.push_back({.reader = "words and groups",
                      .name = name,
                      .input = [script = script](std::size_t size) { return prose(script, size); },
                      .read = signals});
  }
  const std::vector<std::string_view> fragments = {"4930 ",
                                                   "4",
                                                   "4 9 ",
                                                   "493 ",
                                                   "A7K-",
                                                   "a@",
                                                   "code ",
                                                   "code 4930 door ",
                                                   "sign in ",
                                                   "click link ",
                                                   "confirm ",
                                                   "パスワード",
                                                   "コード",
                                                   "\u0301",
                                                   "\u0316\u0301",
                                                   "\u00AD",
                                                   "\uFDFA",
                                                   "１",
                                                   " ",
                                                   "\xFF",
                                                   "https://",
                                                   "("};
  addRepeated(shapes, "words and groups", fragments, signals);
  addRepeated(shapes, "masked codes", fragments, masked);
}

}  // namespace

void addCoreShapes(std::vector<Shape>& shapes) {
  addSettingsShapes(shapes);
  addDetectorShapes(shapes);
  addSecretMailShapes(shapes);
}

}  // namespace tarnwell::bench

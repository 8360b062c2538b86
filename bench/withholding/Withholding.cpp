/// withholding [--missed] FILE...: reads mails, one JSON object a line, and prints for each class and
/// language how many `get_message_body` would withhold, by the keywords alone and with `strictWithholding`.
///
///     {"id": "a1", "class": "code", "lang": "en", "carries_secret": true, "is_html": false,
///      "subject": "Welcome", "from": "Acme <hello@example.org>", "body": "493021 lets you in."}
///
/// With --missed it also names the mails that were judged wrongly.

#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "IMAP/TextDecoding.h"
#include "MCP/Tools/MailScreen.h"

namespace tarnwell::bench {

namespace {

struct Counts {
  int mails = 0;
  int byKeywords = 0;
  int strictly = 0;
};

bool isWithheld(const nlohmann::json& mail, bool isStrict) {
  IMAPMessage message;
  message.envelope.subject = mail.at("subject").get<std::string>();
  message.envelope.from = {{mail.at("from").get<std::string>(), std::nullopt, std::nullopt}};
  IMAPParser::DecodedPart part = IMAPParser::decodePart(mail.at("body").get<std::string>(), "8bit", "utf-8");
  part.source.isHTML = mail.at("is_html").get<bool>();
  if (part.source.isHTML) {
    IMAPParser::reduceHTMLToText(part.text);
  }
  AppConfig config;
  config.strictWithholding = isStrict;
  const MailScreen screen(EmailRiskDetector::shared(), config);
  const Leaving leaving{Leaving::Form::asItStands, config.safety.maxBodyChars};
  const IMAPClient::BodyText body{std::move(part.text), true, std::move(part.source)};
  return screen.withholds(screen.assessHeader(message)) ||
         screen.withholds(screen.assessBody(message, body, leaving));
}

void print(const std::map<std::string, Counts>& table) {
  std::printf("| Mails | Number | by keywords | strictly |\n|---|---:|---:|---:|\n");
  for (const auto& [name, counts] : table) {
    std::printf("| %s | %d | %d (%.1f %%) | %d (%.1f %%) |\n", name.c_str(), counts.mails, counts.byKeywords,
                100.0 * counts.byKeywords / counts.mails, counts.strictly,
                100.0 * counts.strictly / counts.mails);
  }
}

int run(int argumentCount, char** arguments) {
  bool namesMissed = false;
  std::map<std::string, Counts> table;
  for (int i = 1; i < argumentCount; ++i) {
    if (arguments[i] == std::string("--missed")) {
      namesMissed = true;
      continue;
    }
    std::ifstream file(arguments[i]);
    if (!file) {
      std::fprintf(stderr, "withholding: cannot read %s\n", arguments[i]);
      return 2;
    }
    for (std::string line; std::getline(file, line);) {
      const nlohmann::json mail = nlohmann::json::parse(line);
      const bool byKeywords = isWithheld(mail, false);
      const bool strictly = isWithheld(mail, true);
      const bool isSecret = mail.at("carries_secret").get<bool>();
      const std::string kind = mail.at("class");
      const std::string language = mail.at("lang");
      for (const std::string& row : {(isSecret ? "secret, " : "harmless, ") + kind + ", " + language,
                                     (isSecret ? "secret, " : "harmless, ") + kind + ", all",
                                     isSecret ? std::string("secret, all") : std::string("harmless, all")}) {
        Counts& counts = table[row];
        counts.mails += 1;
        counts.byKeywords += byKeywords ? 1 : 0;
        counts.strictly += strictly ? 1 : 0;
      }
      if (namesMissed && strictly != isSecret) {
        std::printf("%s %s: %s\n", isSecret ? "missed" : "withheld", mail.at("id").get<std::string>().c_str(),
                    mail.at("subject").get<std::string>().c_str());
      }
    }
  }
  print(table);
  return 0;
}

}  // namespace

}  // namespace tarnwell::bench

int main(int argumentCount, char** arguments) {
  try {
    return tarnwell::bench::run(argumentCount, arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "withholding: %s\n", error.what());
    return 2;
  }
}

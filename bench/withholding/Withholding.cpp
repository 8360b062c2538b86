/// withholding [--missed] FILE...: reads mails, one JSON object a line. For each class and language it prints
/// how many `get_message_body` would withhold, by the keywords alone and with `strictWithholding`.
///
///     {"id": "a1", "class": "code", "lang": "en", "carries_secret": true, "is_html": false,
///      "subject": "Welcome", "from": "Acme <hello@example.org>", "body": "493021 lets you in."}
///
/// With --missed it also prints the mails that were judged wrongly, and the words that were found.

#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "support/WithholdingJudge.h"

namespace tarnwell::bench {

namespace {

struct Counts {
  int mails = 0;
  int byKeywords = 0;
  int strictly = 0;
};

test::MailSample mailOf(const nlohmann::json& line) {
  return {line.at("id"),   line.at("class"), line.at("subject"),
          line.at("from"), line.at("body"),  line.at("is_html")};
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
      const nlohmann::json fields = nlohmann::json::parse(line);
      const test::MailSample mail = mailOf(fields);
      const std::vector<RiskSignal> signals = test::signalsThatWithhold(mail, true);
      const bool byKeywords = !test::signalsThatWithhold(mail, false).empty();
      const bool strictly = !signals.empty();
      const bool isSecret = fields.at("carries_secret").get<bool>();
      const std::string& kind = mail.kind;
      const std::string language = fields.at("lang");
      for (const std::string& row : {(isSecret ? "secret, " : "harmless, ") + kind + ", " + language,
                                     (isSecret ? "secret, " : "harmless, ") + kind + ", all",
                                     isSecret ? std::string("secret, all") : std::string("harmless, all")}) {
        Counts& counts = table[row];
        counts.mails += 1;
        counts.byKeywords += byKeywords ? 1 : 0;
        counts.strictly += strictly ? 1 : 0;
      }
      if (namesMissed && strictly != isSecret) {
        std::printf("%s %s: %s", isSecret ? "missed" : "withheld", mail.id.c_str(), mail.subject.c_str());
        for (const RiskSignal& signal : signals) {
          std::printf(" [%s: %s]", signal.location.c_str(), signal.term.c_str());
        }
        std::printf("\n");
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

#include "support/MailSamples.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "support/RowName.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

namespace {

std::vector<MailSample> readText(std::string_view text) {
  const TemporaryDirectory directory;
  std::ofstream(directory / "mails", std::ios::binary) << text;
  return readMailSamples(directory / "mails");
}

TEST(MailSamples, readsTheMailsOfAFile) {
  const std::vector<MailSample> samples = readText(
      "=== a-en-001 | one-time code | plain\nSubject: One: two\nFrom: A "
      "<a@example.org>\n\nfirst\n\n===\n====\n\n\n"
      "=== a-ja-001 | order | html\nSubject: 三\nFrom: B <b@example.org>\n\n<p>x</p>");
  const std::vector<MailSample> expected{
      {"a-en-001", "one-time code", "One: two", "A <a@example.org>", "first\n\n===\n====", false},
      {"a-ja-001", "order", "三", "B <b@example.org>", "<p>x</p>", true}};
  EXPECT_EQ(samples, expected);
}

struct Malformed {
  std::string name;
  std::string text;
  std::string problem;
};

class MalformedMailSamples : public testing::TestWithParam<Malformed> {};

TEST_P(MalformedMailSamples, throw) {
  try {
    readText(GetParam().text);
    FAIL() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), testing::EndsWith(GetParam().problem));
  }
}

constexpr auto wrongHeader = "line 1: no header of a mail";
const std::string lines = "\nSubject: s\nFrom: f\n\nbody\n";

INSTANTIATE_TEST_SUITE_P(
    Rows, MalformedMailSamples,
    testing::Values(Malformed{"textBeforeTheFirstHeader", "x\n=== a | b | plain" + lines,
                              "line 1: a line that does not belong here"},
                    Malformed{"noClass", "=== a | plain" + lines, wrongHeader},
                    Malformed{"emptyId", "===  | b | plain" + lines, wrongHeader},
                    Malformed{"emptyClass", "=== a |  | plain" + lines, wrongHeader},
                    Malformed{"unknownFormat", "=== a | b | rtf" + lines, wrongHeader},
                    Malformed{"noSubject", "=== a | b | html\nFrom: f\n\nx\n",
                              "line 2: a line that does not belong here"},
                    Malformed{"emptySender", "=== a | b | html\nSubject: s\nFrom: \n\nx\n",
                              "line 3: a line that does not belong here"},
                    Malformed{"noEmptyLine", "=== a | b | html\nSubject: s\nFrom: f\nx\n",
                              "line 4: a line that does not belong here"},
                    Malformed{"noText", "=== a | b | html\nSubject: s\nFrom: f\n\n\n=== c | b | html" + lines,
                              "line 6: the mail before has no text"},
                    Malformed{"cutShort", "=== a | b | html\nSubject: s\n",
                              "line 2: the mail before has no text"}),
    rowName);

TEST(MailSamples, aMissingFileThrows) {
  EXPECT_THROW(readMailSamples(mailSamplesDirectory() / "none.mails"), std::runtime_error);
}

class MailSampleFile : public testing::TestWithParam<std::string> {
 protected:
  std::vector<MailSample> samples_ = readMailSamples(mailSamplesDirectory() / (GetParam() + ".mails"));
};

/// For example "en" for "secret-en-017".
std::string language(const MailSample& sample) { return sample.id.substr(sample.id.find('-') + 1, 2); }

TEST_P(MailSampleFile, hasUniqueNumberedIds) {
  std::set<std::string> ids;
  for (const MailSample& sample : samples_) {
    EXPECT_THAT(sample.id, testing::MatchesRegex(GetParam() + "-(en|ja)-[0-9][0-9][0-9]"));
    EXPECT_TRUE(ids.insert(sample.id).second) << sample.id;
  }
}

TEST_P(MailSampleFile, marksHTML) {
  for (const MailSample& sample : samples_) {
    EXPECT_EQ(sample.isHTML, sample.body.find("</") != std::string::npos) << sample.id;
  }
}

/// For English plain, English HTML, Japanese plain, Japanese HTML.
using Counts = std::array<int, 4>;

std::string tableRow(const std::string& kind, const Counts& counts) {
  std::string row = "| " + kind + " |";
  for (const int count : counts) {
    row += " " + std::to_string(count) + " |";
  }
  return row + "\n";
}

TEST_P(MailSampleFile, isCountedInTheReadme) {
  std::map<std::string, Counts> counts;
  for (const MailSample& sample : samples_) {
    const std::size_t column = (language(sample) == "ja" ? 2U : 0U) + (sample.isHTML ? 1U : 0U);
    ++counts[sample.kind].at(column);
    ++counts["all " + GetParam()].at(column);
  }
  std::ostringstream readme;
  readme << std::ifstream(mailSamplesDirectory() / "README.md").rdbuf();
  for (const auto& [kind, ofKind] : counts) {
    EXPECT_THAT(readme.str(), testing::HasSubstr(tableRow(kind, ofKind)));
  }
}

/// The hosts after "://" and "@". A blank or a single word there is not a host.
std::vector<std::string> hosts(std::string_view text) {
  std::vector<std::string> found;
  for (const std::string_view mark : {"://", "@"}) {
    for (std::size_t at = text.find(mark); at != std::string_view::npos; at = text.find(mark, at + 1)) {
      const std::string_view rest = text.substr(at + mark.size());
      const auto end = std::ranges::find_if(rest, [](unsigned char character) {
        return std::isalnum(character) == 0 && character != '.' && character != '-';
      });
      std::string host(rest.begin(), end);
      host.erase(host.find_last_not_of('.') + 1);
      if (host.find('.') != std::string::npos) {
        found.push_back(host);
      }
    }
  }
  return found;
}

/// True for a host in a domain that is reserved for examples (RFC 2606, section 3, and the registry of .jp).
bool isExample(const std::string& host) {
  return std::ranges::any_of(std::array{"com", "net", "org", "jp", "co.jp"}, [&](const std::string& top) {
    return ("." + host).ends_with(".example." + top);
  });
}

TEST_P(MailSampleFile, namesOnlyExampleDomains) {
  for (const MailSample& sample : samples_) {
    for (const std::string& host : hosts(sample.subject + "\n" + sample.from + "\n" + sample.body)) {
      EXPECT_TRUE(isExample(host)) << sample.id << " names " << host;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Files, MailSampleFile, testing::Values("secret", "harmless"),
                         [](const auto& instance) { return instance.param; });

}  // namespace

}  // namespace tarnwell::test

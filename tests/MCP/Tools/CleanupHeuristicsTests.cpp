#include "MCP/Tools/CleanupHeuristics.h"

#include <gtest/gtest.h>

#include <ostream>

#include "support/RowName.h"

namespace tarnwell::CleanupHeuristics {

void PrintTo(const Hint& hint, std::ostream* out) {
  *out << "{" << hint.category << ", " << hint.folder.value_or("no folder") << ", " << hint.confidence << ", "
       << hint.reason << "}";
}

}  // namespace tarnwell::CleanupHeuristics

namespace tarnwell::test {
namespace {

using CleanupHeuristics::Hint;
using OptionalText = std::optional<std::string_view>;

const Hint receipt{"receipt", "Receipts", 0.5, "Subject looks transactional (receipt/invoice/order)."};
const Hint newsletter{"newsletter", "Newsletters", 0.4, "Looks like a bulk newsletter."};
const Hint action{"action_needed", std::nullopt, 0.45, "Subject signals an action is requested."};
const Hint notification{"notification", "Notifications", 0.4, "Sender address looks automated/no-reply."};
const Hint unsure{"unsure", std::nullopt, 0.2, "No strong heuristic signal; let the client AI decide."};

Hint unwanted(const std::string& category) {
  return {"unsure", std::nullopt, 0.2,
          "Heuristic suggested \u2018" + category + "\u2019 but it isn't in the requested category list."};
}

Hint hintFor(OptionalText subject, OptionalText from,
             const std::vector<std::string>& categories = CleanupHeuristics::defaultCategories()) {
  return CleanupHeuristics::hint(subject, from, categories);
}

TEST(CleanupHeuristics, offersTheseCategoriesInThisOrder) {
  EXPECT_EQ(CleanupHeuristics::defaultCategories(),
            (std::vector<std::string>{"action_needed", "receipt", "newsletter", "notification", "personal",
                                      "work", "archive_candidate", "unsure"}));
}

/// Each term fires by itself, in the middle of a text, and only in its own place.
TEST(CleanupHeuristics, everySubjectTermFires) {
  const struct {
    std::vector<const char*> terms;
    Hint hint;
  } lists[] = {
      {{"receipt", "invoice", "your order", "order confirmation", "payment", "領収", "請求", "注文", "ご注文",
        "お支払い"},
       receipt},
      {{"newsletter", "unsubscribe", "weekly digest", "digest", "メルマガ", "配信", "ニュースレター"},
       newsletter},
      {{"action required", "action needed", "urgent", "respond", "重要", "至急", "ご対応", "要対応"}, action},
  };
  for (const auto& [terms, hint] : lists) {
    for (const std::string term : terms) {
      EXPECT_EQ(hintFor(term, std::nullopt), hint) << term;
      EXPECT_EQ(hintFor("x" + term + "x", "al@example.org"), hint) << term << " needs no word boundary";
      if (term != "newsletter") {
        EXPECT_EQ(hintFor("Tea", term + "@example.org"), unsure) << term << " means nothing in the sender";
      }
    }
  }
}

TEST(CleanupHeuristics, everySenderTermFires) {
  for (const std::string term : {"newsletter", "news@"}) {
    EXPECT_EQ(hintFor("Tea", "x" + term + "x"), newsletter) << term;
  }
  EXPECT_EQ(hintFor("Tea news@example.org", "al@example.org"), unsure)
      << "news@ means nothing in the subject";
  for (const std::string term : {"noreply", "no-reply", "do-not-reply", "donotreply", "notification",
                                 "notifications", "alert", "mailer-daemon"}) {
    EXPECT_EQ(hintFor("Tea", "x" + term + "x"), notification) << term;
    EXPECT_EQ(hintFor(std::nullopt, term), notification) << term;
    EXPECT_EQ(hintFor(term, "al@example.org"), unsure) << term << " means nothing in the subject";
  }
}

struct HintRow {
  const char* name;
  OptionalText subject;
  OptionalText from;
  Hint hint;
};

class Hints : public testing::TestWithParam<HintRow> {};

TEST_P(Hints, areAsExpected) { EXPECT_EQ(hintFor(GetParam().subject, GetParam().from), GetParam().hint); }

INSTANTIATE_TEST_SUITE_P(
    Table, Hints,
    testing::Values(HintRow{"nothingAtAll", std::nullopt, std::nullopt, unsure},
                    HintRow{"emptyTexts", "", "", unsure},
                    HintRow{"nothingFires", "Tea at four", "Al <al@example.org>", unsure},
                    HintRow{"invoice", "Your invoice for May", "shop@example.com", receipt},
                    HintRow{"digestOfANewsSender", "Weekly digest", "news@example.com", newsletter},
                    HintRow{"neutralSubjectOfANoReplySender", "Hello", "no-reply@example.com", notification},
                    HintRow{"japaneseAction", "重要なお知らせ", std::nullopt, action},
                    HintRow{"capitals", "YOUR INVOICE", std::nullopt, receipt},
                    HintRow{"capitalsInTheSender", "Hello", "NoReply <X@EXAMPLE.ORG>", notification},
                    HintRow{"displayNameCountsAsSender", "Hello", "The Newsletter <x@example.org>",
                            newsletter},
                    HintRow{"newsWithoutAt", "Hello", "News <x@example.org>", unsure},
                    HintRow{"termSplitByALineBreak", "your\norder", std::nullopt, unsure},
                    HintRow{"receiptBeatsNewsletter", "Digest of your receipts", "news@example.com", receipt},
                    HintRow{"receiptBeatsAction", "Urgent: payment", std::nullopt, receipt},
                    HintRow{"receiptBeatsSender", "Invoice", "noreply@example.com", receipt},
                    HintRow{"newsletterBeatsAction", "Urgent digest", std::nullopt, newsletter},
                    HintRow{"newsletterSenderBeatsAction", "Urgent", "news@example.com", newsletter},
                    HintRow{"newsletterBeatsSender", "Digest", "noreply@example.com", newsletter},
                    HintRow{"newsletterSenderBeatsAutomatedSender", "Hello", "newsletter-noreply@example.com",
                            newsletter},
                    HintRow{"actionBeatsSender", "Please respond", "noreply@example.com", action}),
    rowName);

struct AllowedRow {
  const char* name;
  OptionalText subject;
  OptionalText from;
  std::vector<std::string> categories;
  Hint hint;
};

class Allowed : public testing::TestWithParam<AllowedRow> {};

TEST_P(Allowed, categoriesDecideAboutTheFirstRuleThatFires) {
  const AllowedRow& row = GetParam();
  EXPECT_EQ(hintFor(row.subject, row.from, row.categories), row.hint);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Allowed,
    testing::Values(
        AllowedRow{"wanted", "Invoice", std::nullopt, {"receipt"}, receipt},
        AllowedRow{"receiptUnwanted", "Invoice", std::nullopt, {"newsletter"}, unwanted("receipt")},
        AllowedRow{"newsletterUnwanted", "Digest", std::nullopt, {"receipt"}, unwanted("newsletter")},
        AllowedRow{"actionUnwanted",
                   "Action required: confirm",
                   std::nullopt,
                   {"receipt", "newsletter"},
                   unwanted("action_needed")},
        AllowedRow{"notificationUnwanted", "Hello", "noreply@x", {"unsure"}, unwanted("notification")},
        AllowedRow{"noneWanted", "Invoice", std::nullopt, {}, unwanted("receipt")},
        AllowedRow{"noneWantedAndNothingFires", "Tea", std::nullopt, {}, unsure},
        AllowedRow{"unsureNeedNotBeWanted", "Tea", std::nullopt, {"receipt"}, unsure},
        AllowedRow{
            "laterWantedRuleIsNotTried", "Invoice", "noreply@x", {"notification"}, unwanted("receipt")},
        AllowedRow{"letterCaseOfACategoryCounts", "Invoice", std::nullopt, {"Receipt"}, unwanted("receipt")},
        AllowedRow{"wantedTwice", "Invoice", std::nullopt, {"receipt", "receipt"}, receipt}),
    rowName);

}  // namespace
}  // namespace tarnwell::test

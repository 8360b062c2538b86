#include "MCP/Tools/CleanupHeuristics.h"

#include <algorithm>
#include <span>

#include "Text/Text.h"

namespace tarnwell {

namespace {

constexpr std::string_view receiptTerms[] = {"receipt", "invoice", "your order", "order confirmation",
                                             "payment", "領収",    "請求",       "注文",
                                             "ご注文",  "お支払い"};
constexpr std::string_view newsletterTerms[] = {"newsletter", "unsubscribe", "weekly digest", "digest",
                                                "メルマガ",   "配信",        "ニュースレター"};
constexpr std::string_view newsletterSenders[] = {"newsletter", "news@"};
constexpr std::string_view actionTerms[] = {
    "action required", "action needed", "urgent", "respond", "重要", "至急", "ご対応", "要対応"};
constexpr std::string_view automatedSenders[] = {"noreply",    "no-reply",     "do-not-reply",
                                                 "donotreply", "notification", "notifications",
                                                 "alert",      "mailer-daemon"};

/// Fires when the lower-cased subject or sender contains one of its terms.
struct Rule {
  std::span<const std::string_view> subjectTerms;
  std::span<const std::string_view> senderTerms;
  const char* category;
  const char* folder;  // null: none
  double confidence;
  const char* reason;
};

/// In the order in which `hint` tries them.
constexpr Rule rules[] = {
    {receiptTerms, {}, "receipt", "Receipts", 0.5, "Subject looks transactional (receipt/invoice/order)."},
    {newsletterTerms, newsletterSenders, "newsletter", "Newsletters", 0.4, "Looks like a bulk newsletter."},
    {actionTerms, {}, "action_needed", nullptr, 0.45, "Subject signals an action is requested."},
    {{}, automatedSenders, "notification", "Notifications", 0.4, "Sender address looks automated/no-reply."},
};

bool containsAny(std::string_view text, std::span<const std::string_view> terms) {
  return std::ranges::any_of(
      terms, [&](std::string_view term) { return text.find(term) != std::string_view::npos; });
}

CleanupHeuristics::Hint unsure(std::string reason) {
  constexpr double confidence = 0.2;
  return {"unsure", std::nullopt, confidence, std::move(reason)};
}

}  // namespace

const std::vector<std::string>& CleanupHeuristics::defaultCategories() {
  static const std::vector<std::string> categories{"action_needed",     "receipt",  "newsletter",
                                                   "notification",      "personal", "work",
                                                   "archive_candidate", "unsure"};
  return categories;
}

CleanupHeuristics::Hint CleanupHeuristics::hint(std::optional<std::string_view> subject,
                                                std::optional<std::string_view> from,
                                                const std::vector<std::string>& allowedCategories) {
  const std::string lowerSubject = lowercased(subject.value_or(""));
  const std::string lowerFrom = lowercased(from.value_or(""));
  const auto fired = std::ranges::find_if(rules, [&](const Rule& rule) {
    return containsAny(lowerSubject, rule.subjectTerms) || containsAny(lowerFrom, rule.senderTerms);
  });
  if (fired == std::end(rules)) {
    return unsure("No strong heuristic signal; let the client AI decide.");
  }
  // Deliberate: later rules are not tried. Their hint would contradict the rule that fired.
  if (std::ranges::find(allowedCategories, fired->category) == allowedCategories.end()) {
    return unsure("Heuristic suggested ‘" + std::string(fired->category) +
                  "’ but it isn't in the requested category list.");
  }
  const std::optional<std::string> folder =
      fired->folder ? std::optional<std::string>(fired->folder) : std::nullopt;
  return {fired->category, folder, fired->confidence, fired->reason};
}

}  // namespace tarnwell

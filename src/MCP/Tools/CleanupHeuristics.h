#pragma once

/// Hints for tidying an inbox, from subject and sender alone.
///
/// Rules search for fixed words, in a fixed order. The first rule that fires decides. When its category is
/// not wanted, the hint is "unsure". A hint is not certain: the confidence is never above 0.5.
///
///     CleanupHeuristics::hint("Your invoice for May", "shop@example.com", categories)
///     // {"receipt", "Receipts", 0.5, "Subject looks transactional (receipt/invoice/order)."}
///
/// Threads: all functions are pure.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell::CleanupHeuristics {

struct Hint {
  std::string category;
  /// The suggested destination. Absent when there is none.
  std::optional<std::string> folder;
  /// 0.2 to 0.5.
  double confidence;
  /// One sentence.
  std::string reason;

  bool operator==(const Hint&) const = default;
};

/// The categories when the client names none. The rules use five of them. The others are for the client.
const std::vector<std::string>& defaultCategories();

Hint hint(std::optional<std::string_view> subject, std::optional<std::string_view> from,
          const std::vector<std::string>& allowedCategories);

}  // namespace tarnwell::CleanupHeuristics

#pragma once

/// Cheap hints for tidying an inbox, from subject and sender alone.
///
/// A hint is only a hint: rules over fixed words, tried in a fixed order, with confidences well below 1. The
/// first rule that fires decides, also when its category is not wanted.
///
///     CleanupHeuristics::hint("Your invoice for May", "shop@example.com", categories)
///     // {"receipt", "Receipts", 0.5, "Subject looks transactional (receipt/invoice/order)."}
///
/// Threads: pure.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell::CleanupHeuristics {

struct Hint {
  std::string category;
  /// The suggested destination; absent when there is none to suggest.
  std::optional<std::string> folder;
  /// 0.2 to 0.5.
  double confidence;
  /// One sentence.
  std::string reason;

  bool operator==(const Hint&) const = default;
};

/// The vocabulary offered when the client names none. The rules know five of them; the others are for the
/// client's own use.
const std::vector<std::string>& defaultCategories();

Hint hint(std::optional<std::string_view> subject, std::optional<std::string_view> from,
          const std::vector<std::string>& allowedCategories);

}  // namespace tarnwell::CleanupHeuristics

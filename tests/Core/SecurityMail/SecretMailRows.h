#pragma once

/// The rows of tables with mails and their signals.

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "Core/SecurityMail/SecretMailRule.h"
#include "support/RowName.h"
#include "support/SecretMailReference.h"

namespace tarnwell {

struct SecretMailRow {
  std::string name;
  std::string_view subject;
  std::string_view from;
  std::string_view text;
  std::vector<RiskSignal> signals;
};

inline void PrintTo(const SecretMailRow& row, std::ostream* stream) { *stream << row.name; }

/// The categories, words and locations in one line.
inline std::string describe(const std::vector<RiskSignal>& signals) {
  std::string text;
  for (const RiskSignal& signal : signals) {
    text += '(' + signal.category + ", " + signal.term + ", " + signal.location + ')';
  }
  return text;
}

inline void expectSignals(const SecretMailRow& row) {
  const SecretMailRule::Mail mail{.subject = row.subject, .from = row.from, .text = row.text};
  EXPECT_EQ(describe(SecretMailRule::signals(mail)), describe(row.signals));
  EXPECT_EQ(describe(referenceSignals(mail)), describe(row.signals));
}

}  // namespace tarnwell

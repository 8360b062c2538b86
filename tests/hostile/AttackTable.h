#pragma once

/// The table of attacks. Each row says what a hostile or broken environment may do to the program, and what
/// the program does then. Each row is one test. The same rows make the table in `docs/attacks.md`.
///
///     hostile_tests                 plays every row
///     hostile_tests Peer            plays the rows of one group
///     hostile_tests --table         prints the table
///
/// To add a group: write a function that returns its rows, declare it below, add it to `attackTable`, and add
/// its name to `tests/hostile/CMakeLists.txt`.

#include <functional>
#include <string>
#include <vector>

namespace tarnwell::test {

struct Attack {
  /// The name in ctest and in failures: letters and digits.
  std::string name;
  /// The two columns of the table: short, and without a full stop.
  std::string attack;
  std::string outcome;
  /// Plays the row, with GoogleTest's assertions.
  std::function<void()> play;
};

struct AttackGroup {
  /// Letters and digits.
  std::string name;
  /// The heading in the table.
  std::string title;
  /// Makes the rows. Some contain texts of many megabytes.
  std::vector<Attack> (*attacks)();
};

/// Every group, in the order of the table.
std::vector<AttackGroup> attackTable();

std::vector<Attack> peerAttacks();
std::vector<Attack> greetingAttacks();
std::vector<Attack> closingAttacks();
std::vector<Attack> silenceAttacks();
std::vector<Attack> dripAttacks();
std::vector<Attack> literalAttacks();
std::vector<Attack> lineAttacks();
std::vector<Attack> tagAttacks();
std::vector<Attack> responseAttacks();
std::vector<Attack> folderAttacks();
std::vector<Attack> textAttacks();
std::vector<Attack> writeAttacks();
std::vector<Attack> signalAttacks();
std::vector<Attack> clientAttacks();
std::vector<Attack> settingsAttacks();
std::vector<Attack> savingAttacks();
std::vector<Attack> secretAttacks();
std::vector<Attack> passwordAttacks();
std::vector<Attack> neighbourAttacks();
std::vector<Attack> endpointAttacks();
std::vector<Attack> memoryAttacks();
std::vector<Attack> enduranceAttacks();

}  // namespace tarnwell::test

/// Plays the table of attacks, or prints it.

#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <iostream>
#include <sstream>

#include "hostile/AttackTable.h"

namespace tarnwell::test {

namespace {

class AttackTest : public testing::Test {
 public:
  /// The row must outlive the test.
  explicit AttackTest(const Attack& attack) : attack_(attack) {}
  void TestBody() override { attack_.play(); }

 private:
  const Attack& attack_;
};

/// A line of the table. It may stand for several rows with the same text.
struct TableLine {
  std::string text;
  std::size_t rows = 1;
};

std::vector<TableLine> tableLines(const std::vector<Attack>& attacks) {
  std::vector<TableLine> lines;
  for (const Attack& attack : attacks) {
    const std::string text = "| " + attack.attack + " | " + attack.outcome + " |";
    const auto same = std::ranges::find(lines, text, &TableLine::text);
    if (same == lines.end()) {
      lines.push_back({text});
    } else {
      ++same->rows;
    }
  }
  return lines;
}

void printTable() {
  std::size_t count = 0;
  std::ostringstream tables;
  for (const AttackGroup& group : attackTable()) {
    const std::vector<Attack> attacks = group.attacks();
    count += attacks.size();
    tables << "\n## " << group.title << "\n\nShown by `hostile." << group.name
           << "`.\n\n| Attack | What the program does | Tests |\n|---|---|---|\n";
    for (const TableLine& line : tableLines(attacks)) {
      tables << line.text << ' ' << line.rows << " |\n";
    }
  }
  std::cout << count << " tests in " << attackTable().size() << " groups.\n" << tables.str();
}

/// The rows of one group or of all groups, owned by the tests. False when there are none.
bool registerTests(const std::string& wantedGroup) {
  bool hasRows = false;
  for (const AttackGroup& group : attackTable()) {
    if (!wantedGroup.empty() && group.name != wantedGroup) {
      continue;
    }
    for (Attack& attack : group.attacks()) {
      const std::string name = attack.name;
      testing::RegisterTest(
          group.name.c_str(), name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
          [attack = std::move(attack)]() -> testing::Test* { return new AttackTest(attack); });
      hasRows = true;
    }
  }
  return hasRows;
}

int run(int count, char* arguments[]) {
  testing::InitGoogleTest(&count, arguments);
  signal(SIGPIPE, SIG_IGN);
  const std::string argument = count > 1 ? arguments[1] : "";
  if (argument == "--table") {
    printTable();
    return 0;
  }
  if (!registerTests(argument)) {
    std::cerr << "there is no group " << argument << '\n';
    return 2;
  }
  return RUN_ALL_TESTS();
}

}  // namespace

}  // namespace tarnwell::test

int main(int count, char* arguments[]) { return tarnwell::test::run(count, arguments); }

/// Plays the table of attacks, or prints it.

#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <iostream>

#include "hostile/AttackTable.h"

namespace tarnwell::test {

namespace {

class AttackTest : public testing::Test {
 public:
  explicit AttackTest(const Attack& attack) : attack_(attack) {}
  void TestBody() override { attack_.play(); }

 private:
  const Attack& attack_;
};

/// A line of the table, which may stand for several rows that say the same.
struct TableLine {
  std::string text;
  std::size_t rows = 1;
};

std::vector<TableLine> tableLines(const AttackGroup& group) {
  std::vector<TableLine> lines;
  for (const Attack& attack : group.attacks) {
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

void printTable(const std::vector<AttackGroup>& table) {
  std::size_t count = 0;
  for (const AttackGroup& group : table) {
    count += group.attacks.size();
  }
  std::cout << count << " tests in " << table.size() << " groups.\n";
  for (const AttackGroup& group : table) {
    std::cout << "\n### " << group.title << "\n\nShown by `hostile." << group.name
              << "`.\n\n| Attack | What the program does | Tests |\n|---|---|---|\n";
    for (const TableLine& line : tableLines(group)) {
      std::cout << line.text << ' ' << line.rows << " |\n";
    }
  }
}

/// The number of tests that were registered.
std::size_t registerTests(const std::vector<AttackGroup>& table, const std::string& wantedGroup) {
  std::size_t count = 0;
  for (const AttackGroup& group : table) {
    if (!wantedGroup.empty() && group.name != wantedGroup) {
      continue;
    }
    for (const Attack& attack : group.attacks) {
      testing::RegisterTest(group.name.c_str(), attack.name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                            [&attack]() -> testing::Test* { return new AttackTest(attack); });
      ++count;
    }
  }
  return count;
}

int run(int count, char* arguments[]) {
  testing::InitGoogleTest(&count, arguments);
  signal(SIGPIPE, SIG_IGN);
  const std::vector<AttackGroup> table = attackTable();
  const std::string argument = count > 1 ? arguments[1] : "";
  if (argument == "--table") {
    printTable(table);
    return 0;
  }
  if (registerTests(table, argument) == 0) {
    std::cerr << "there is no group " << argument << '\n';
    return 2;
  }
  return RUN_ALL_TESTS();
}

}  // namespace

}  // namespace tarnwell::test

int main(int count, char* arguments[]) { return tarnwell::test::run(count, arguments); }

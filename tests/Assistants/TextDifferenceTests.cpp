#include "Assistants/TextDifference.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/RowName.h"

namespace tarnwell::test {
namespace {

struct DifferenceRow {
  const char* name;
  std::string before, after;
  std::string shown;  // "=" same, "-" removed, "+" added, "~" and how many are left out
};

std::string shown(const std::vector<DifferenceLine>& lines) {
  std::string text;
  for (const DifferenceLine& line : lines) {
    switch (line.kind) {
      case DifferenceLine::Kind::same:
        text += "=" + line.text;
        break;
      case DifferenceLine::Kind::removed:
        text += "-" + line.text;
        break;
      case DifferenceLine::Kind::added:
        text += "+" + line.text;
        break;
      case DifferenceLine::Kind::left:
        text += "~" + std::to_string(line.count) + line.text;
        break;
    }
    text += "\n";
  }
  return text;
}

class TextDifference : public testing::TestWithParam<DifferenceRow> {};

TEST_P(TextDifference, showsTheChangedLinesAndTheirNeighbours) {
  EXPECT_EQ(shown(lineDifference(GetParam().before, GetParam().after, 2)), GetParam().shown);
}

const DifferenceRow rows[] = {
    {"nothing", "", "", ""},
    {"nothingDiffers", "a\nb\n", "a\nb\n", ""},
    {"newFile", "", "a\nb\n", "+a\n+b\n"},
    {"emptiedFile", "a\nb", "", "-a\n-b\n"},
    {"oneLine", "a\nb\nc\n", "a\nB\nc\n", "=a\n-b\n+B\n=c\n"},
    {"firstLine", "a\nb\nc\nd\n", "A\nb\nc\nd\n", "-a\n+A\n=b\n=c\n=d\n"},
    {"lastLine", "a\nb\nc\nd", "a\nb\nc\nD", "=a\n=b\n=c\n-d\n+D\n"},
    {"insertedLines", "{\n}\n", "{\n1\n2\n}\n", "={\n+1\n+2\n=}\n"},
    {"removedLines", "{\n1\n2\n}\n", "{\n}\n", "={\n-1\n-2\n=}\n"},
    {"commaAndLine", "1\n}\n", "1,\n2\n}\n", "-1\n+1,\n+2\n=}\n"},
    {"repeatedLines", "}\n}\n", "}\n}\n}\n", "=}\n=}\n+}\n"},
    {"linesBetweenChanges", "1\n2\n3\n4\n", "x\n2\n3\ny\n", "-1\n+x\n=2\n=3\n-4\n+y\n"},
    {"fourLinesBetweenChangesStay", "a\n1\n2\n3\n4\nb\n", "A\n1\n2\n3\n4\nB\n",
     "-a\n+A\n=1\n=2\n=3\n=4\n-b\n+B\n"},
    {"fiveLinesBetweenChangesStay", "a\n1\n2\n3\n4\n5\nb\n", "A\n1\n2\n3\n4\n5\nB\n",
     "-a\n+A\n=1\n=2\n=3\n=4\n=5\n-b\n+B\n"},
    {"sixLinesBetweenChangesLeaveTwo", "a\n1\n2\n3\n4\n5\n6\nb\n", "A\n1\n2\n3\n4\n5\n6\nB\n",
     "-a\n+A\n=1\n=2\n~2\n=5\n=6\n-b\n+B\n"},
    {"linesFarFromTheChange", "1\n2\n3\n4\na\n", "1\n2\n3\n4\nb\n", "~2\n=3\n=4\n-a\n+b\n"},
    {"emptyLines", "\n\n", "\n1\n\n", "=\n+1\n=\n"},
    {"carriageReturns", "a\r\nb\rc", "a\r\nB\rc", "=a\n-b\n+B\n=c\n"},
    {"otherLineEnd", "a\nb\n", "a\r\nb\n", "-a\n+a\n=b\n"},
    {"lineEndAtTheEnd", "a", "a\n", "-a\n+a\n"},
    {"otherOrder", "a\nb\n", "b\na\n", "-a\n=b\n+a\n"},
};

INSTANTIATE_TEST_SUITE_P(Texts, TextDifference, testing::ValuesIn(rows), rowName);

TEST(TextDifference, noNeighboursWhenNoneAreWanted) {
  EXPECT_EQ(shown(lineDifference("a\na\nb\nc\nc\n", "a\na\nB\nc\nc\n", 0)), "~2\n-b\n+B\n~2\n");
}

TEST(TextDifference, manyChangedLinesCountAsChangedWhole) {
  std::string before = "first\n";
  std::string after = "first\n";
  for (int index = 0; index < 3000; ++index) {
    before += "old\nsame\n";
    after += "new\nsame\n";
  }
  const std::vector<DifferenceLine> lines = lineDifference(before + "last\n", after + "last\n");
  EXPECT_EQ(std::ranges::count(lines, DifferenceLine::Kind::removed, &DifferenceLine::kind), 5999);
  EXPECT_EQ(std::ranges::count(lines, DifferenceLine::Kind::added, &DifferenceLine::kind), 5999);
}

}  // namespace
}  // namespace tarnwell::test

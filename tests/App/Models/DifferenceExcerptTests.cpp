#include "App/Models/DifferenceExcerpt.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "support/RowName.h"

namespace tarnwell {

void PrintTo(const DifferenceLine& line, std::ostream* stream) {
  *stream << static_cast<int>(line.kind) << ' ' << line.text;
}

namespace test {
namespace {

using Kind = DifferenceLine::Kind;

std::string times(std::size_t count, const char* text) {
  std::string all;
  for (std::size_t number = 0; number < count; ++number) {
    all += text;
  }
  return all;
}

struct Excerpt {
  const char* name;
  std::vector<DifferenceLine> lines;
  std::vector<DifferenceLine> shown;
};

void PrintTo(const Excerpt& row, std::ostream* stream) { *stream << row.name; }

const Excerpt excerpts[] = {
    {"nothing", {}, {}},
    {"shortLinesStay",
     {{Kind::same, "{"}, {Kind::removed, "a"}, {Kind::added, "b"}, {Kind::left, "", 7}},
     {{Kind::same, "{"}, {Kind::removed, "a"}, {Kind::added, "b"}, {Kind::left, "", 7}}},
    {"longestStays", {{Kind::added, times(400, "a")}}, {{Kind::added, times(400, "a")}}},
    {"longerIsCut", {{Kind::same, times(401, "a")}}, {{Kind::same, times(400, "a") + "…"}}},
    {"characterStaysWhole",
     {{Kind::added, times(399, "a") + times(9, "é")}},
     {{Kind::added, times(399, "a") + "é…"}}},
    {"changeInALongLineShows",
     {{Kind::removed, times(500, "a") + "{}" + times(500, "z")},
      {Kind::added, times(500, "a") + "{tarnwell}" + times(500, "z")}},
     {{Kind::removed, "…" + times(59, "a") + "{}" + times(59, "z") + "…"},
      {Kind::added, "…" + times(59, "a") + "{tarnwell}" + times(59, "z") + "…"}}},
    {"changeAtBothEndsShows",
     {{Kind::removed, "x" + times(500, "a")}, {Kind::added, "y" + times(500, "a")}},
     {{Kind::removed, "x" + times(60, "a") + "…"}, {Kind::added, "y" + times(60, "a") + "…"}}},
    {"addedAtTheEnd",
     {{Kind::removed, times(500, "a")}, {Kind::added, times(500, "a") + "b"}},
     {{Kind::removed, "…" + times(60, "a")}, {Kind::added, "…" + times(60, "a") + "b"}}},
    {"longChangeIsCutAtItsEnd",
     {{Kind::removed, "ab"}, {Kind::added, "a" + times(500, "c") + "b"}},
     {{Kind::removed, "ab"}, {Kind::added, "a" + times(399, "c") + "…"}}},
    {"charactersAroundAChangeStayWhole",
     {{Kind::removed, times(300, "é") + "1" + times(300, "é")},
      {Kind::added, times(300, "é") + "22" + times(300, "é")}},
     {{Kind::removed, "…" + times(30, "é") + "1" + times(30, "é") + "…"},
      {Kind::added, "…" + times(30, "é") + "22" + times(30, "é") + "…"}}},
    {"changeInsideOfACharacterShowsIt",
     {{Kind::removed, "é" + times(500, "a")}, {Kind::added, "è" + times(500, "a")}},
     {{Kind::removed, "é" + times(60, "a") + "…"}, {Kind::added, "è" + times(60, "a") + "…"}}},
    {"twoRemovedAreNoPair",
     {{Kind::removed, "a"}, {Kind::removed, times(500, "a")}, {Kind::added, times(500, "a") + "b"}},
     {{Kind::removed, "a"}, {Kind::removed, times(400, "a") + "…"}, {Kind::added, times(400, "a") + "…"}}},
};

class DifferenceExcerptTest : public testing::TestWithParam<Excerpt> {};
INSTANTIATE_TEST_SUITE_P(Table, DifferenceExcerptTest, testing::ValuesIn(excerpts), rowName);

TEST_P(DifferenceExcerptTest, showsWhatDiffers) {
  EXPECT_EQ(withShortLines(GetParam().lines), GetParam().shown);
}

}  // namespace
}  // namespace test
}  // namespace tarnwell

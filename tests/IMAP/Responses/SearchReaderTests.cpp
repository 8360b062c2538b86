#include <gtest/gtest.h>

#include "IMAP/Responses/IMAPParser.h"
#include "support/Repeated.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Numbers = std::vector<std::uint32_t>;

struct Row {
  std::string name;
  std::string line;
  std::optional<Numbers> numbers;
};

class SearchReader : public testing::TestWithParam<Row> {};

TEST_P(SearchReader, readsTheNumbersOfTheRow) {
  EXPECT_EQ(IMAPParser::parseSearch(GetParam().line), GetParam().numbers);
}

INSTANTIATE_TEST_SUITE_P(Table, SearchReader,
                         testing::Values(Row{"inTheOrderOfTheServer", "* SEARCH 5 12 9", Numbers{5, 12, 9}},
                                         Row{"nothingFound", "* SEARCH", Numbers{}},
                                         Row{"anyLetterCase", "* search 3", Numbers{3}},
                                         Row{"blanksAroundTheNumbers", "*  SEARCH   1  2 ", Numbers{1, 2}},
                                         Row{"whatIsNoNumberIsSkipped",
                                             "* SEARCH 4294967295 4294967296 x -1 7 (MODSEQ 9)",
                                             Numbers{4294967295, 7}},
                                         Row{"anotherResponse", "* 7 EXISTS", std::nullopt},
                                         Row{"longerWord", "* SEARCHES 1", std::nullopt},
                                         Row{"empty", "", std::nullopt}),
                         rowName);

TEST(SearchReader, aMillionNumbersAreRead) {
  EXPECT_EQ(IMAPParser::parseSearch("* SEARCH" + repeated(" 7", 1'000'000))->size(), 1'000'000U);
  EXPECT_TRUE(IMAPParser::parseSearch("* SEARCH" + std::string(1'000'000, ' '))->empty());
}

}  // namespace
}  // namespace tarnwell::test

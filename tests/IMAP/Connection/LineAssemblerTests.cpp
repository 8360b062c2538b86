#include "IMAP/Connection/LineAssembler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace tarnwell {
namespace {

using ::testing::ElementsAre;

using Lines = std::vector<std::string>;

void takeLines(LineAssembler& assembler, Lines& lines) {
  while (std::optional<std::string> line = assembler.next()) {
    lines.push_back(*std::move(line));
  }
}

Lines linesOf(const std::vector<std::string_view>& pieces) {
  LineAssembler assembler;
  Lines lines;
  for (const std::string_view piece : pieces) {
    assembler.append(piece);
    takeLines(assembler, lines);
  }
  return lines;
}

struct StreamRow {
  const char* name;
  std::string stream;
  Lines lines;
};

void PrintTo(const StreamRow& row, std::ostream* out) { *out << row.name; }

const std::string zeroByte(1, '\0');

const std::vector<StreamRow> streamRows{
    {"nothing", "", {}},
    {"aLine", "* OK ready\r\n", {"* OK ready"}},
    {"anEmptyLine", "\r\n", {""}},
    {"linesWithoutText", "\r\n\r\n", {"", ""}},
    {"severalLines", "a\r\nb\r\nc\r\n", {"a", "b", "c"}},
    {"aLineNotYetEnded", "a\r\nb", {"a"}},
    {"onlyTheCR", "a\r", {}},
    {"aLoneLineFeedStays", "a\nb\r\n", {"a\nb"}},
    {"aLoneCRStays", "a\rb\r\n", {"a\rb"}},
    {"aCRBeforeCRLFStays", "a\r\r\n", {"a\r"}},
    {"anyByteIsKept", zeroByte + "\xFF\x80\r\n", {zeroByte + "\xFF\x80"}},
    {"aLiteral", "* 1 FETCH (BODY[TEXT] {5}\r\nhello)\r\n", {"* 1 FETCH (BODY[TEXT] {5}\r\nhello)"}},
    {"aNonSynchronisingLiteral", "a {5+}\r\nhello b\r\n", {"a {5+}\r\nhello b"}},
    {"aLiteralOfNoBytes", "a {0}\r\n b\r\n", {"a {0}\r\n b"}},
    {"aLiteralAtTheEndOfTheLine", "a {2}\r\nhi\r\nb\r\n", {"a {2}\r\nhi", "b"}},
    {"literalAfterLiteral", "a {1}\r\nb {2}\r\ncd {0}\r\n\r\n", {"a {1}\r\nb {2}\r\ncd {0}\r\n"}},
    {"aLiteralDirectlyAfterAnother", "{1}\r\nb{1}\r\nc\r\n", {"{1}\r\nb{1}\r\nc"}},
    {"lineEndsWithinALiteral", "a {6}\r\nb\r\nc\r\n d\r\n", {"a {6}\r\nb\r\nc\r\n d"}},
    {"anAnnouncementWithinALiteral", "a {5}\r\n{9}\r\n b\r\n", {"a {5}\r\n{9}\r\n b"}},
    {"theCROfALiteralEndsNoLine", "a {1}\r\n\r\n b\r\n", {"a {1}\r\n\r\n b"}},
    {"anAnnouncementCutOffByALiteral", "a {2}\r\n{51}\r\nb\r\n", {"a {2}\r\n{51}", "b"}},
    {"aLiteralNotYetComplete", "a\r\nb {5}\r\nhell", {"a"}},
    {"aLengthBeyondWhatIsThere", "b {9223372036854775807}\r\nhello\r\n", {}},
    {"aLengthBeyond63BitsIsText", "b {9223372036854775808}\r\nc\r\n", {"b {9223372036854775808}", "c"}},
    {"aBraceWithinTheLineIsText", "b {5} c\r\nd\r\n", {"b {5} c", "d"}},
    {"aNegativeLengthIsText", "b {-5}\r\nc\r\n", {"b {-5}", "c"}},
};

class LineAssemblerStream : public ::testing::TestWithParam<StreamRow> {};

TEST_P(LineAssemblerStream, inOnePiece) { EXPECT_EQ(linesOf({GetParam().stream}), GetParam().lines); }

TEST_P(LineAssemblerStream, byteByByte) {
  const std::string_view stream = GetParam().stream;
  std::vector<std::string_view> pieces;
  for (std::size_t position = 0; position < stream.size(); ++position) {
    pieces.push_back(stream.substr(position, 1));
  }
  EXPECT_EQ(linesOf(pieces), GetParam().lines);
}

TEST_P(LineAssemblerStream, cutAtEveryPosition) {
  const std::string_view stream = GetParam().stream;
  for (std::size_t cut = 0; cut <= stream.size(); ++cut) {
    EXPECT_EQ(linesOf({stream.substr(0, cut), stream.substr(cut)}), GetParam().lines) << "cut at " << cut;
  }
}

TEST_P(LineAssemblerStream, withTheLinesTakenOnlyAtTheEnd) {
  LineAssembler assembler;
  for (const char byte : GetParam().stream) {
    assembler.append({&byte, 1});
  }
  Lines lines;
  takeLines(assembler, lines);
  EXPECT_EQ(lines, GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(Rows, LineAssemblerStream, ::testing::ValuesIn(streamRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(LineAssembler, piecesCutAtRandomGiveTheSameLines) {
  std::string stream;
  Lines expected;
  for (const StreamRow& row : streamRows) {
    if (row.stream.ends_with("\r\n") && !row.lines.empty()) {  // nothing is left over
      stream += row.stream;
      expected.insert(expected.end(), row.lines.begin(), row.lines.end());
    }
  }
  ASSERT_GT(expected.size(), 20U);
  std::mt19937 random(4711);  // NOLINT(cert-msc51-cpp): the same cuts in every run
  for (int round = 0; round < 500; ++round) {
    std::uniform_int_distribution<std::size_t> length(0, 1 + static_cast<std::size_t>(round) % 40);
    std::vector<std::string_view> pieces;
    for (std::string_view rest = stream; !rest.empty();) {
      pieces.push_back(rest.substr(0, length(random)));
      rest.remove_prefix(pieces.back().size());
    }
    ASSERT_EQ(linesOf(pieces), expected) << "round " << round;
  }
}

TEST(LineAssembler, handsOutOneLineForEachCall) {
  LineAssembler assembler;
  EXPECT_EQ(assembler.next(), std::nullopt);
  assembler.append("a\r\nb\r\nc");
  EXPECT_EQ(assembler.next(), "a");
  assembler.append("d\r\n");
  EXPECT_EQ(assembler.next(), "b");
  EXPECT_EQ(assembler.next(), "cd");
  EXPECT_EQ(assembler.next(), std::nullopt);
}

// The following inputs end within the time limit of the suite only because no byte is looked at again.

TEST(LineAssembler, assemblesManyLiteralsInOneLine) {
  constexpr int count = 200'000;
  std::string line;
  for (int literal = 0; literal < count; ++literal) {
    line += "{1}\r\nx";
  }
  EXPECT_THAT(linesOf({line + "\r\n"}), ElementsAre(line));
}

TEST(LineAssembler, assemblesALongLineByteByByte) {
  const std::string line(1'000'000, 'x');
  LineAssembler assembler;
  for (const char& byte : line) {
    assembler.append({&byte, 1});
    ASSERT_EQ(assembler.next(), std::nullopt);
  }
  assembler.append("\r\n");
  EXPECT_TRUE(assembler.next() == line);
}

TEST(LineAssembler, assemblesALongLiteralByteByByte) {
  const std::string literal(1'000'000, '\n');
  LineAssembler assembler;
  assembler.append("{1000000}\r\n");
  for (const char& byte : literal) {
    assembler.append({&byte, 1});
  }
  assembler.append(")\r\n");
  EXPECT_TRUE(assembler.next() == "{1000000}\r\n" + literal + ")");
}

TEST(LineAssembler, assemblesALongLiteralInLargePieces) {
  const std::string piece(64UL * 1024, '\r');
  constexpr std::size_t count = 800;
  LineAssembler assembler;
  assembler.append("{" + std::to_string(count * piece.size()) + "}\r\n");
  const std::size_t announcement = 2 + std::to_string(count * piece.size()).size() + 2;
  for (std::size_t number = 0; number < count; ++number) {
    assembler.append(piece);
    ASSERT_EQ(assembler.next(), std::nullopt);
  }
  assembler.append(")\r\n");
  const std::optional<std::string> line = assembler.next();
  ASSERT_TRUE(line);
  EXPECT_EQ(line->size(), announcement + count * piece.size() + 1);
  EXPECT_EQ(line->find_first_not_of('\r', announcement), line->size() - 1);
}

TEST(LineAssembler, readsTheLengthAtTheEndOfAPhysicalLine) {
  struct Row {
    std::string line;
    std::optional<std::int64_t> length;
  };
  const std::vector<Row> rows{
      {"", std::nullopt},
      {"}", std::nullopt},
      {"+}", std::nullopt},
      {"{}", std::nullopt},
      {"{+}", std::nullopt},
      {"12}", std::nullopt},
      {"x}", std::nullopt},
      {"{1a}", std::nullopt},
      {"{a1}", std::nullopt},
      {"{-5}", std::nullopt},
      {"{5 }", std::nullopt},
      {"{ 5}", std::nullopt},
      {"{5++}", std::nullopt},
      {"{+5}", std::nullopt},
      {"{5-}", std::nullopt},
      {"{5", std::nullopt},
      {"5", std::nullopt},
      {"{5} ", std::nullopt},
      {"{5}x", std::nullopt},
      {"(5}", std::nullopt},
      {"z5}", std::nullopt},
      {"{\xB2}", std::nullopt},
      {"{5}", 5},
      {"{0}", 0},
      {"{12+}", 12},
      {"* 1 FETCH (BODY[] {12}", 12},
      {"x{12}", 12},
      {"{{12}", 12},
      {"{1}{2}", 2},
      {"{007}", 7},
      {"{9223372036854775807}", 9223372036854775807},
      {"{9223372036854775808}", std::nullopt},
      {"{18446744073709551617}", std::nullopt},
      {"{999999999999999999999}", std::nullopt},
      {"{" + std::string(1000, '0') + "5}", 5},
      {"{" + std::string(1000, '9') + "}", std::nullopt},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(LineAssembler::trailingLiteralLength(row.line), row.length) << row.line;
  }
}

}  // namespace
}  // namespace tarnwell

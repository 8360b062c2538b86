#include "Assistants/TOMLReader.h"

#include "support/Repeated.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

std::string read(std::string_view text) {
  const auto document = decodeTOML(text);
  const auto* line = std::get_if<std::size_t>(&document);
  return line != nullptr ? "line " + std::to_string(*line) : std::get<JSONValue>(document).serialized();
}

struct TOMLRow {
  const char* name;
  const char* text;
  /// Or the line that cannot be read.
  const char* document;
};

class TOMLReader : public testing::TestWithParam<TOMLRow> {};

TEST_P(TOMLReader, readsTheDocument) { EXPECT_EQ(read(GetParam().text), GetParam().document); }

TEST_P(TOMLReader, survivesEachCut) {
  const std::string text = GetParam().text;
  for (std::size_t size = 0; size <= text.size(); ++size) {
    const auto document = decodeTOML(std::string_view(text).substr(0, size));
    if (const auto* line = std::get_if<std::size_t>(&document)) {
      EXPECT_GE(*line, 1u);
      EXPECT_LE(*line, 1u + static_cast<std::size_t>(std::ranges::count(text, '\n')));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    all, TOMLReader,
    testing::Values(
        TOMLRow{"empty", "", "{}"},  //
        TOMLRow{"comments", "# one\n\n  # two", "{}"},
        TOMLRow{"byteOrderMark",
                "\xEF\xBB\xBF"
                "a = 1",
                R"({"a":"1"})"},
        TOMLRow{"asCodexWritesIt",
                "model = \"o4\"\n\n[mcp_servers.tarnwell]\ncommand = \"/opt/tarnwell\"\nargs = [\"serve\"]\n",
                R"({"mcp_servers":{"tarnwell":{"args":["serve"],"command":"/opt/tarnwell"}},"model":"o4"})"},
        TOMLRow{"subtable", "[m.t]\nc = 'x'\n[m.t.env]\nA = \"b\"\n[m.u]\nc = 'y'",
                R"({"m":{"t":{"c":"x","env":{"A":"b"}},"u":{"c":"y"}}})"},
        TOMLRow{"dottedKey", "m.t.command = 'x'\nm . \"t\" . args = []",
                R"({"m":{"t":{"args":[],"command":"x"}}})"},
        TOMLRow{"quotedHeader", "[ m . \"t.u\" . 'v' ] # why\r\nc = 'x'\r\n",
                R"({"m":{"t.u":{"v":{"c":"x"}}}})"},
        TOMLRow{"inlineTable", "m = { t = { command = \"x\", args = [\"a\", 'b'] }, }",
                R"({"m":{"t":{"args":["a","b"],"command":"x"}}})"},
        TOMLRow{"escapes", R"(a = "\b\t\n\f\r\"\\\u00e9\U0001F600\e")",
                "{\"a\":\"\\b\\t\\n\\f\\r\\\"\\\\é😀\\u001b\"}"},
        TOMLRow{"escapedKey", R"("\u0074" = 1)", R"({"t":"1"})"},
        TOMLRow{"literal", R"(a = '\n"')", R"({"a":"\\n\""})"},
        TOMLRow{"literalWithLines", "a = '''\nit's \\ #\n[x]\n'''", R"({"a":"it's \\ #\n[x]\n"})"},
        TOMLRow{"basicWithLines", "a = \"\"\"\r\none \\\n   two\"\"\"", R"({"a":"one two"})"},
        TOMLRow{"quotesBeforeTheEnd", "a = \"\"\"x\"\"\"\"\"\nb = ''", R"({"a":"x\"\"","b":""})"},
        TOMLRow{"multiLineArray", "a = [ # first\n  \"x\", # x\n\n  ['y'],\n]\nb = 2",
                R"({"a":["x",["y"]],"b":"2"})"},
        TOMLRow{"plainValues", "a = 1_000 # n\nb = true\nc = 1979-05-27 07:32:00Z\nd = -inf\ne = false",
                R"({"a":"1_000","b":true,"c":"1979-05-27 07:32:00Z","d":"-inf","e":false})"},
        TOMLRow{"arrayOfTables", "[[a]]\nb = 1\n[[a]]\nc = 2\n[a.d]\ne = 3",
                R"({"a":{"c":"2","d":{"e":"3"}}})"},
        TOMLRow{"lastValueCounts", "a = 1\na = 2", R"({"a":"2"})"},
        TOMLRow{"valueInTheWay", "a = 1\n[a.b]\n", "line 2"},
        TOMLRow{"noValue", "\na =\nb = 1", "line 2"},  //
        TOMLRow{"noKey", "= 1", "line 1"},             //
        TOMLRow{"openHeader", "[a\n", "line 1"},       //
        TOMLRow{"openText", "a = \"x\nb = 1", "line 1"}, TOMLRow{"openLines", "a = '''x\n\n", "line 3"},
        TOMLRow{"openArray", "a = [1,\n2", "line 2"}, TOMLRow{"openTable", "a = {b = 1", "line 1"},
        TOMLRow{"noComma", "a = ['x' 'y']", "line 1"}, TOMLRow{"twoOnOneLine", "a = 'x' b = 1", "line 1"},
        TOMLRow{"bareText", "a = hello \"you\"", "line 1"}, TOMLRow{"wrongEscape", R"(a = "\q")", "line 1"},
        TOMLRow{"surrogate", R"(a = "\uD800")", "line 1"}, TOMLRow{"shortEscape", R"(a = "\u12")", "line 1"},
        TOMLRow{"json", "{\"a\": 1}", "line 1"},  //
        TOMLRow{"notUTF8", "a = 'caf\xE9'", "line 1"}),
    rowName);

TEST(TOMLReader, endsAtDeepNesting) {
  EXPECT_EQ(read("a = " + repeated("[", 100'000)), "line 1");
  EXPECT_EQ(read("a = " + repeated("{a=", 100'000)), "line 1");
  EXPECT_EQ(read("[" + repeated("a.", 100'000) + "a]"), "line 1");
  EXPECT_EQ(read(repeated("a.", 100'000) + "a = 1"), "line 1");
}

TEST(TOMLReader, refusesMoreThan256KiB) {
  const std::string text = "a = 1\n";
  const std::size_t limit = std::size_t{256} * 1024;
  EXPECT_EQ(read(text + std::string(limit - text.size(), '#')), R"({"a":"1"})");
  EXPECT_EQ(read(text + std::string(limit - text.size() + 1, '#')), "line 1");
}

}  // namespace
}  // namespace tarnwell::test

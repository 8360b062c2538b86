/// Files of every layout: on one line, with other line ends and other indentation.

#include "EditedTexts.h"

namespace tarnwell::test {
namespace {

class LayoutTexts : public testing::TestWithParam<TextRow> {};

TEST_P(LayoutTexts, takesTheEntryAndLosesItAgain) { expectAddedAndRemoved(GetParam(), helperEntry); }

// clang-format off
const TextRow rows[] = {
    {"minifiedWithoutServers", servers, R"({"theme":"dark","vim":[1,2]«,"mcpServers":{‹"tarnwell":{"args":["serve"],"command":"/opt/tarnwell"}›}»})"},
    {"minifiedWithServers", servers, R"({"mcpServers":{"a":{"command":"x"}«‹,"tarnwell":{"args":["serve"],"command":"/opt/tarnwell"}›»},"b":1})"},
    {"onOneLineWithBlanks", servers, R"({ "mcpServers": { "a": {}, "b": {}«‹, "tarnwell": {"args": ["serve"], "command": "/opt/tarnwell"}›» } })"},
    {"onOneLineWithTrailingComma", servers, R"({ "mcpServers": { "a": {},«‹ "tarnwell": {"args": ["serve"], "command": "/opt/tarnwell"},›» }, })"},
    {"emptyWithABlank", servers, R"({
  "mcpServers": {«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›»}
})"},
    {"oneLineEmptyWithBlanks", servers, R"({ "mcpServers": {«‹ "tarnwell": {"args": ["serve"], "command": "/opt/tarnwell"}›»‹ ›} })"},
    {"carriageReturnsAndLineFeeds", servers, withCRLF(R"({
  "mcpServers": {
    "a": {}«‹,
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  }
}
)")},
    {"carriageReturnsAndCommentsInDotfiles", servers, withCRLF(R"(// managed
{
	"editor": {}, // mine
	"mcpServers": {
		"a": {}, // first«‹
		"tarnwell": {
			"args": ["serve"],
			"command": "/opt/tarnwell"
		},›»
	},
}
)")},
    {"byteOrderMark", servers, "\xEF\xBB\xBF" "{\r\n  \"mcpServers\": {«‹\r\n    \"tarnwell\": {\r\n      \"args\": [\"serve\"],\r\n      \"command\": \"/opt/tarnwell\"\r\n    }\r\n  ›»}\r\n}"},
    {"byteOrderMarkBeforeMembers", servers, "\xEF\xBB\xBF" "{\n  \"a\": 1«,\n  \"mcpServers\": {‹\n    \"tarnwell\": {\n      \"args\": [\"serve\"],\n      \"command\": \"/opt/tarnwell\"\n    }\n  ›}»\n}"},
    {"carriageReturnsAlone", servers, "{\r  \"a\": 1, // one\r  \"mcpServers\": {\r    \"b\": 2«‹,\r    \"tarnwell\": {\r      \"args\": [\"serve\"],\r      \"command\": \"/opt/tarnwell\"\r    }›»\r  }\r}"},
    {"mixedLineEnds", servers, "{\r\n  \"mcpServers\": {\n    \"a\": {}«‹,›\n‹    \"tarnwell\": {\n      \"args\": [\"serve\"],\n      \"command\": \"/opt/tarnwell\"\n    }»\r\n›  }\r\n}\r\n"},
    {"fourBlanks", servers, R"({
    "a": 1«,
    "mcpServers": {‹
        "tarnwell": {
            "args": ["serve"],
            "command": "/opt/tarnwell"
        }
    ›}»
})"},
    {"tabs", servers, R"({
	"a": 1«,
	"mcpServers": {‹
		"tarnwell": {
			"args": ["serve"],
			"command": "/opt/tarnwell"
		}
	›}»
})"},
    {"otherStepInside", servers, R"({
    "mcpServers": {
      "a": {}«‹,
      "tarnwell": {
        "args": ["serve"],
        "command": "/opt/tarnwell"
      }›»
    }
})"},
    {"withoutIndentation", servers, R"({
"mcpServers": {
"a": {}«‹,
"tarnwell": {
"args": ["serve"],
"command": "/opt/tarnwell"
}›»
}
}
)"},
    {"noBlankAfterColons", servers, R"({
  "mcpServers":{
    "a":{}«‹,
    "tarnwell":{
      "args":["serve"],
      "command":"/opt/tarnwell"
    }›»
  }
})"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Texts, LayoutTexts, testing::ValuesIn(rows), rowName);

}  // namespace
}  // namespace tarnwell::test

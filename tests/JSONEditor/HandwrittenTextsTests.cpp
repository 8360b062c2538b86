/// Files as people leave them: with comments, blank lines and little order.

#include "EditedTexts.h"

namespace tarnwell::test {
namespace {

class HandwrittenTexts : public testing::TestWithParam<TextRow> {};

TEST_P(HandwrittenTexts, takesTheEntryAndLosesItAgain) { expectAddedAndRemoved(GetParam(), helperEntry); }

// clang-format off
const TextRow rows[] = {
    {"blankLines", servers, R"({

  "mcpServers": {

    "a": {}«‹,
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»

  }

}

)"},
    {"commentAfterTheLastMember", servers, R"({
  "mcpServers": {
    "a": {}«‹,›» /* first */ // second«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  }
})"},
    {"longCommentAfterTheLastMember", servers, R"({
  "mcpServers": {
    "a": {}«‹,›» /* first
     second */«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  }
})"},
    {"membersInComments", servers, R"({
  "mcpServers": {
    "a": {}«‹,
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
    // "b": {},
    /* "tarnwell": {} */
  }
})"},
    {"commentBeforeTheComma", servers, R"({
  "mcpServers": {
    "a": {} // first
    ,«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    },›»
  }
})"},
    {"commentInAnEmptyObject", servers, R"({
  "mcpServers": { // none yet«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  }
})"},
    {"commentWithBlanksAtItsEnd", servers, "{\n  \"mcpServers\": { // none  «‹\n    \"tarnwell\": {\n      \"args\": [\"serve\"],\n      \"command\": \"/opt/tarnwell\"\n    }›»\n  }\n}"},
    {"commentAndBraceOnOneLine", servers, R"({
  "mcpServers": { /* none */«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›
  »}
})"},
    {"lineCommentInAnObjectOnALine", servers, R"({"mcpServers": { // none
«‹"tarnwell": {"args": ["serve"], "command": "/opt/tarnwell"}›»}})"},
    {"emptyObjectOnTwoLines", servers, R"({
  "mcpServers": {«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»‹
  ›}
})"},
    {"braceOnTheLineOfTheLastMember", servers, R"({ "mcpServers": {
    "a": {}«‹,›
    ‹"tarnwell": {
        "args": ["serve"],
        "command": "/opt/tarnwell"
    }» ›} })"},
    {"commaBeforeEachMember", servers, R"({
  "mcpServers": {
    "a": {}
  , "b": {}«‹, "tarnwell": {"args": ["serve"], "command": "/opt/tarnwell"}›»
  }
})"},
    {"severalMembersOnALine", servers, R"({
  "mcpServers": {
    "a": 1, "b": 2«‹, "tarnwell": {"args": ["serve"], "command": "/opt/tarnwell"}›»
  }
})"},
    {"columns", servers, R"({
  "a"         : 1,
  "mcpServers": {
    "long": {},
    "b"   : {}«‹,
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  }
})"},
    {"escapedKey", servers, R"({
  "mcp\u0053ervers": {«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›»}
})"},
    {"keysThatOnlyLookAlike", servers, R"({
  "MCPServers": {},
  "mcpServers ": {},
  "mcpServers\u0000": {},
  "mcpServers": {«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›»}
})"},
    {"otherKeysTwice", servers, R"({
  "a": 1,
  "a": 2,
  "mcpServers": {«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›»}
})"},
    {"valuesThatOnlyScriptsRead", servers, R"({
  "much": 1e999,
  "half": "\ud83d",
  "\udc4d": 1,
  "mcpServers": {«‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›»}
})"},
    {"japanese", servers, R"({
  "テーマ": "暗い", // 注
  "mcpServers": {
    "天気": {}«‹,
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  }
})"},
    {"bracesAndCommentsInTexts", servers, R"({
  "a": "} // \" /*",
  "mcpServers": {
    "b": ["{", "\\"]«‹,
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }›»
  }
})"},
    {"commentsOnly", servers, R"(// mine
/* yours */«
{
  "mcpServers": {‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›}
}
»)"},
    {"commentsOnlyWithLineEnd", servers, withCRLF(R"(// mine
«{
  "mcpServers": {‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›}
}
»)")},
    {"blanksOnly", servers, R"( 

«{
  "mcpServers": {‹
    "tarnwell": {
      "args": ["serve"],
      "command": "/opt/tarnwell"
    }
  ›}
}
»)"},
    {"byteOrderMarkOnly", servers, "\xEF\xBB\xBF" "«{\n  \"mcpServers\": {‹\n    \"tarnwell\": {\n      \"args\": [\"serve\"],\n      \"command\": \"/opt/tarnwell\"\n    }\n  ›}\n}\n»"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Texts, HandwrittenTexts, testing::ValuesIn(rows), rowName);

}  // namespace
}  // namespace tarnwell::test

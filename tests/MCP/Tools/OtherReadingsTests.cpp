/// Mails whose keyword a mail program shows, but not the text that tools return. Each shape comes once as
/// security mail, which is withheld, and once as harmless mail, which is returned.

#include <unicode/ucnv.h>

#include <string>
#include <vector>

#include "IMAP/Decoding/TextDecoding.h"
#include "MCP/Tools/FakeMail.h"
#include "MCP/Tools/ToolFixture.h"
#include "support/RowName.h"
#include "support/SessionScript.h"

namespace tarnwell::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

/// A text with a "|" in the middle of its keyword, in two kinds and two languages.
struct Words {
  const char* language;
  const char* secret;
  const char* harmless;
};

constexpr Words insideAWord = {"English", "4711 is your sec|urity code", "4711 is the num|ber of a perfume"};
constexpr Words betweenWords = {"English", "4711 is your security|code", "4711 is the number|of a perfume"};
constexpr Words japanese = {"Japanese", "4711が認証|コードです", "4711号室で会議|があります"};

std::string withGap(std::string text, const std::string& gap) { return text.replace(text.find('|'), 1, gap); }

std::string inCharset(const std::string& text, const char* charset) {
  std::string bytes(text.size() * 4 + 16, '\0');
  UErrorCode status = U_ZERO_ERROR;
  const int32_t size = ucnv_convert(charset, "UTF-8", bytes.data(), static_cast<int32_t>(bytes.size()),
                                    text.data(), static_cast<int32_t>(text.size()), &status);
  EXPECT_TRUE(U_SUCCESS(status)) << charset;
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

std::string inBase64(const std::string& bytes) {
  static constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      text += i + k > bytes.size() ? '=' : alphabet[group >> (18 - 6 * k) & 63];
    }
  }
  return text;
}

std::string inQuotedPrintable(const std::string& bytes) {
  std::string text;
  for (const char byte : bytes) {
    static constexpr char digits[] = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    text += '=';
    text += digits[value >> 4];
    text += digits[value & 15];
  }
  return text;
}

enum class Transfer { asItIs, base64, quotedPrintable };

/// How a text becomes the body of a mail.
struct BodyShape {
  const char* name;
  Words words;
  const char* gap = "";
  const char* charset = "UTF-8";
  /// The charset parameter. Null for none.
  const char* label = "utf-8";
  bool isHTML = false;
  /// Bytes before and after the text.
  const char* before = "";
  const char* after = "";
  Transfer transfer = Transfer::asItIs;
  /// Comes after the encoded text and is not encoded.
  const char* footer = "";
};

const BodyShape bodyShapes[] = {
    {"badByteAtTheEndOfUTF8", japanese, "", "UTF-8", "utf-8", false, "", "\xFF"},
    {"badByteAtTheEndOfUTF8", betweenWords, "\u00A0", "UTF-8", "utf-8", false, "", "\xFF"},
    {"badByteBeforeTheTextOfUTF8", japanese, "", "UTF-8", "utf-8", false, "\x80"},
    {"characterCutInTwoAtTheEnd", japanese, "", "UTF-8", "utf-8", false, "", "\xE3\x81"},
    {"characterCutInTwoAtTheEnd", betweenWords, "\u2003", "UTF-8", "utf-8", false, "", "\xE3\x81"},
    {"eightBitByteInISO2022JP", japanese, "", "ISO-2022-JP", "iso-2022-jp", false, "", " \xE9"},
    {"iso2022JPCalledASCII", japanese, "", "ISO-2022-JP", "us-ascii"},
    {"iso2022JPCalledUTF8", japanese, "", "ISO-2022-JP", "utf-8"},
    {"iso2022JPWithoutALabel", japanese, "", "ISO-2022-JP", nullptr},
    {"iso2022JPCalledASCIIInQuotedPrintable", japanese, "", "ISO-2022-JP", "us-ascii", false, "", "",
     Transfer::quotedPrintable},
    {"shiftJISCalledUTF8", japanese, "", "Shift_JIS", "utf-8"},
    {"shiftJISCalledASCII", japanese, "", "Shift_JIS", "us-ascii"},
    {"shiftJISCalledLatin1", japanese, "", "Shift_JIS", "iso-8859-1"},
    {"shiftJISWithoutALabel", japanese, "", "Shift_JIS", nullptr},
    {"shiftJISInBase64CalledUTF8", japanese, "", "Shift_JIS", "utf-8", false, "", "", Transfer::base64},
    {"eucJPCalledUTF8", japanese, "", "EUC-JP", "utf-8"},
    {"eucJPCalledShiftJIS", japanese, "", "EUC-JP", "shift_jis"},
    {"eucJPCalledLatin1", japanese, "", "EUC-JP", "iso-8859-1"},
    {"shiftJISCalledEUCJP", japanese, "", "Shift_JIS", "euc-jp"},
    {"utf8CalledLatin1", japanese, "", "UTF-8", "iso-8859-1"},
    {"utf8CalledLatin1", betweenWords, "\u00A0", "UTF-8", "iso-8859-1"},
    {"utf8CalledWindows1252", japanese, "", "UTF-8", "windows-1252"},
    {"utf8CalledWindows1252", betweenWords, "\u2002", "UTF-8", "windows-1252"},
    {"utf8CalledShiftJIS", japanese, "", "UTF-8", "shift_jis"},
    {"utf8CalledISO2022JP", japanese, "", "UTF-8", "iso-2022-jp"},
    {"utf8UnderANameThatIsNone", japanese, "", "UTF-8", "x-none", false, "", "\xFF"},
    {"latin1CalledUTF8", betweenWords, "\u00A0", "ISO-8859-1", "utf-8"},
    {"shiftJISWithABadByte", japanese, "", "Shift_JIS", "shift_jis", false, "\xFF", "\x81"},
    {"eucJPWithABadByte", japanese, "", "EUC-JP", "euc-jp", false, "", "\xFF"},
    {"footerAfterBase64", japanese, "", "UTF-8", "utf-8", false, "", "x", Transfer::base64,
     "\r\n-- \r\nThe list: write to the address below to leave\r\n"},
    {"footerAfterBase64WithoutPadding", betweenWords, "\u00A0", "UTF-8", "utf-8", false, "", "..",
     Transfer::base64, "\r\n-- \r\nThe list: write to the address below to leave\r\n"},
    {"zeroWidthSpaceInText", insideAWord, "\u200B"},
    {"zeroWidthSpaceInText", japanese, "\u200B"},
    {"softHyphenInText", insideAWord, "\u00AD"},
    {"wordJoinerInText", japanese, "\u2060"},
    {"fullWidthLetters",
     {"English", "4711 is your ｓecurity|code", "4711 is the ｎumber|of a perfume"},
     "　"},
    {"halfWidthKatakana", {"Japanese", "4711が認証|ｺｰﾄﾞです", "4711号室で会議|ﾃﾞｰです"}},
    {"wrappedInAWord", japanese, "\r\n"},
    {"boldInAWord", insideAWord, "</b><b>", "UTF-8", "utf-8", true, "<p><b>", "</b></p>"},
    {"boldInAWord", japanese, "</b><b>", "UTF-8", "utf-8", true, "<p><b>", "</b></p>"},
    {"spanInAWord", insideAWord, "<span style=\"color: red\">", "UTF-8", "utf-8", true, "", "</span>"},
    {"spanInAWord", japanese, "<span class=a><i>", "UTF-8", "utf-8", true, "", "</i></span>"},
    {"commentInAWord", insideAWord, "<!-- x -->", "UTF-8", "utf-8", true},
    {"lineBreakOpportunityInAWord", japanese, "<wbr/>", "UTF-8", "utf-8", true},
    {"unknownElementInAWord", insideAWord, "<o:p></o:p>", "UTF-8", "utf-8", true},
    {"softHyphenReference", insideAWord, "&shy;", "UTF-8", "utf-8", true},
    {"softHyphenReferenceWithoutSemicolon", japanese, "&shy", "UTF-8", "utf-8", true},
    {"nonJoinerReference", insideAWord, "&zwnj;", "UTF-8", "utf-8", true},
    {"nonJoinerReference", japanese, "&zwnj;", "UTF-8", "utf-8", true},
    {"zeroWidthSpaceReference", japanese, "&ZeroWidthSpace;", "UTF-8", "utf-8", true},
    {"zeroWidthSpaceByNumber", insideAWord, "&#8203;", "UTF-8", "utf-8", true},
    {"zeroWidthSpaceByNumberWithCapitalX", insideAWord, "&#X200B;", "UTF-8", "utf-8", true},
    {"enSpaceReference", betweenWords, "&ensp;", "UTF-8", "utf-8", true},
    {"thinSpaceReferenceInATag", betweenWords, "<b>&thinsp;</b>", "UTF-8", "utf-8", true},
    {"noBreakSpaceWithoutSemicolon", betweenWords, "&nbsp", "UTF-8", "utf-8", true, "", " "},
    {"htmlInShiftJISCalledUTF8", japanese, "<b></b>", "Shift_JIS", "utf-8", true},
    {"htmlInISO2022JPCalledASCII", japanese, "", "ISO-2022-JP", "us-ascii", true, "<p>", "</p>"},
    {"htmlInUTF8CalledLatin1", japanese, "</i><i>", "UTF-8", "iso-8859-1", true, "<i>", "</i>"},
};

FakeMail mailOf(const BodyShape& shape, const char* text) {
  const std::string bytes = shape.before + inCharset(withGap(text, shape.gap), shape.charset) + shape.after;
  const char* const encodings[] = {"8bit", "base64", "quoted-printable"};
  FakeMail mail;
  mail.body = (shape.transfer == Transfer::asItIs   ? bytes
               : shape.transfer == Transfer::base64 ? inBase64(bytes)
                                                    : inQuotedPrintable(bytes)) +
              shape.footer;
  mail.structure = std::string("(\"text\" \"") + (shape.isHTML ? "html" : "plain") + "\" " +
                   (shape.label ? "(\"charset\" \"" + std::string(shape.label) + "\")" : "NIL") +
                   " NIL NIL \"" + encodings[static_cast<int>(shape.transfer)] + "\" 1 1)";
  return mail;
}

/// How a text becomes the subject of a mail, or the name of its sender.
struct FieldShape {
  const char* name;
  Words words;
  const char* gap;
  std::string (*field)(const std::string& text);
};

std::string asItIs(const std::string& text) { return text; }

/// In two encoded words of a charset, cut after `size` bytes.
std::string inTwoWords(const std::string& bytes, std::size_t size, const std::string& charset) {
  return "=?" + charset + "?B?" + inBase64(bytes.substr(0, size)) + "?=\r\n =?" + charset + "?B?" +
         inBase64(bytes.substr(size)) + "?=";
}

const FieldShape fieldShapes[] = {
    {"foldedWithATab", betweenWords, "\r\n\t", asItIs},
    {"foldedWithBlanks", betweenWords, "\r\n   ", asItIs},
    {"tab", betweenWords, "\t", asItIs},
    {"zeroWidthSpace", insideAWord, "\u200B", asItIs},
    {"foldedInAWord", japanese, "\r\n ", asItIs},
    {"badByte", japanese, "", [](const std::string& text) { return text + "\xFF"; }},
    {"rawShiftJIS", japanese, "", [](const std::string& text) { return inCharset(text, "Shift_JIS"); }},
    {"rawEUCJP", japanese, "", [](const std::string& text) { return inCharset(text, "EUC-JP"); }},
    {"rawISO2022JP", japanese, "", [](const std::string& text) { return inCharset(text, "ISO-2022-JP"); }},
    {"characterInTwoWords", japanese, "",
     [](const std::string& text) { return inTwoWords(text, text.find("コ") + 1 + 1, "UTF-8"); }},
    {"characterInTwoQuotedWords", betweenWords, "\u00A0",
     [](const std::string& text) {
       const std::size_t half = text.find("\u00A0") + 1;
       return "=?utf-8?Q?" + inQuotedPrintable(text.substr(0, half)) + "?= =?UTF-8?Q?" +
              inQuotedPrintable(text.substr(half)) + "?=";
     }},
    {"keywordInTwoWords", insideAWord, "",
     [](const std::string& text) { return inTwoWords(text, text.find("urity") + 2, "UTF-8"); }},
    {"escapeSequenceInTheFirstWordOnly", japanese, "",
     [](const std::string& text) {
       const std::string bytes = inCharset(text, "ISO-2022-JP");
       return inTwoWords(bytes, bytes.find("\x1B$") + 9, "ISO-2022-JP");
     }},
    {"utf8CalledLatin1", japanese, "",
     [](const std::string& text) { return "=?iso-8859-1?B?" + inBase64(text) + "?="; }},
    {"shiftJISCalledUTF8", japanese, "",
     [](const std::string& text) { return "=?utf-8?B?" + inBase64(inCharset(text, "Shift_JIS")) + "?="; }},
    {"iso2022JPCalledASCII", japanese, "",
     [](const std::string& text) {
       return "=?us-ascii?B?" + inBase64(inCharset(text, "ISO-2022-JP")) + "?=";
     }},
    {"charsetWithALanguage", japanese, "",
     [](const std::string& text) {
       return "=?iso-2022-jp*ja?B?" + inBase64(inCharset(text, "ISO-2022-JP")) + "?=";
     }},
    {"badByteInAWord", japanese, "",
     [](const std::string& text) { return "=?utf-8?B?" + inBase64(text + "\xFF") + "?="; }},
};

enum class Kind { secret, harmless };
enum class Place { body, subject, sender };

struct Row {
  std::string name;
  FakeMail mail;
  Place place;
  Kind kind;
};

std::vector<Row> rows() {
  std::vector<Row> rows;
  for (const Kind kind : {Kind::secret, Kind::harmless}) {
    const std::string ending = kind == Kind::secret ? "Secret" : "Harmless";
    const auto textOf = [kind](const Words& words) {
      return kind == Kind::secret ? words.secret : words.harmless;
    };
    for (const BodyShape& shape : bodyShapes) {
      rows.push_back({std::string(shape.name) + shape.words.language + ending,
                      mailOf(shape, textOf(shape.words)), Place::body, kind});
    }
    for (const FieldShape& shape : fieldShapes) {
      const std::string field = shape.field(withGap(textOf(shape.words), shape.gap));
      const std::string name = shape.name + std::string(shape.words.language) + ending;
      FakeMail mail;
      mail.subject = field;
      rows.push_back({name + "InTheSubject", mail, Place::subject, kind});
      FakeMail sent;
      sent.from = "((" + FakeMail::literal(field) + " NIL \"al\" \"example.org\"))";
      rows.push_back({name + "InTheSender", sent, Place::sender, kind});
    }
  }
  return rows;
}

class OtherReadings : public ToolTest, public testing::WithParamInterface<Row> {};

TEST_P(OtherReadings, withholdSecurityMailAndNoOther) {
  const Row& row = GetParam();
  const bool isSecret = row.kind == Kind::secret;
  SessionScript script;
  script.command(row.mail.fetchSummary(), row.mail.summary());
  if (!isSecret || row.place == Place::body) {
    script.command(row.mail.fetchBody(), row.mail.bodyPart());
  }
  FakeIMAPServer& server = serve(script.withLogout());
  const JSONValue result = call("get_message_summary", JSONObject{{"uid", 9}}).structured;
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(result["bodyWithheld"], JSONValue(isSecret)) << result.prettyString();
  EXPECT_EQ(result["bodySnippet"].isNull(), isSecret);
  ASSERT_EQ(result["detectedRiskSignals"].arrayValue()->size(), isSecret ? 1u : 0u);
  FakeIMAPServer& again = serve(script.dialogue() + Dialogue{});
  const JSONValue body = call("get_message_body", JSONObject{{"uid", 9}}).structured;
  EXPECT_EQ(again.mismatch(), "");
  EXPECT_EQ(body["returned"], JSONValue(!isSecret)) << body.prettyString();
  EXPECT_EQ(body["blocked"], JSONValue(isSecret));
  EXPECT_EQ(body["detectedRiskSignals"], result["detectedRiskSignals"]);
  if (isSecret) {
    const char* const locations[] = {"body", "subject", "from"};
    EXPECT_EQ((*result["detectedRiskSignals"].arrayValue())[0]["location"],
              JSONValue(locations[static_cast<int>(row.place)]));
  }
}

TEST_P(OtherReadings, leaveTheSignalsAloneWhenBlockingIsOff) {
  const Row& row = GetParam();
  config.safety.blockAuthCodeBodies = false;
  FakeIMAPServer& server = serve(SessionScript()
                                     .command(row.mail.fetchSummary(), row.mail.summary())
                                     .command(row.mail.fetchBody(), row.mail.bodyPart())
                                     .withLogout());
  const JSONValue result = call("get_message_summary", JSONObject{{"uid", 9}}).structured;
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(result["bodyWithheld"], JSONValue(false));
  EXPECT_FALSE(result["bodySnippet"].isNull());
  EXPECT_EQ(result["detectedRiskSignals"].arrayValue()->size(), row.kind == Kind::secret ? 1u : 0u);
}

INSTANTIATE_TEST_SUITE_P(Table, OtherReadings, testing::ValuesIn(rows()), rowName);

}  // namespace
}  // namespace tarnwell::test

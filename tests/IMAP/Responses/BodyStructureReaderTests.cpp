#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "IMAP/Responses/IMAPParser.h"
#include "support/Repeated.h"

namespace tarnwell {
namespace {

using test::repeated;

/// One line for the table: section, encoding, charset or "-", and html for an HTML part; then whether
/// there are attachments.
std::string described(const std::string& elements) {
  const IMAPBodyInfo info = IMAPParser::parseBodyStructure(IMAPParser::tokenize(elements).elements());
  std::string line = "none";
  if (const std::optional<IMAPTextPart>& part = info.preferredText) {
    line = part->section + " " + part->encoding + " " + part->charset.value_or("-") +
           (part->isHTML ? " html" : "");
  }
  return line + (info.hasAttachments ? " +attachments" : "");
}

struct Row {
  std::string elements;
  std::string info;
};

void expectInfos(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(described(row.elements), row.info) << row.elements;
  }
}

const std::string plain = R"(("TEXT" "PLAIN" ("CHARSET" "UTF-8") NIL NIL "7BIT" 12 1))";
const std::string html = R"(("TEXT" "HTML" ("CHARSET" "UTF-8") NIL NIL "BASE64" 12 1))";
const std::string pdf = R"(("APPLICATION" "PDF" ("NAME" "a.pdf") NIL NIL "BASE64" 4554))";
const std::string message = R"(("MESSAGE" "RFC822" NIL NIL NIL "7BIT" 342 (NIL "s") ("TEXT" "PLAIN") 9))";

std::string inside(const std::string& list) { return list.substr(1, list.size() - 2); }

TEST(BodyStructureReader, messageWithoutAMultipartHasTheSection1) {
  expectInfos({
      {inside(plain), "1 7bit UTF-8"},
      {inside(html), "1 base64 UTF-8 html"},
      {R"("text" "plain")", "1 7bit -"},
  });
}

TEST(BodyStructureReader, plainTextGoesBeforeHTML) {
  expectInfos({
      {plain + html + R"("ALTERNATIVE")", "1 7bit UTF-8"},
      {html + plain + R"("ALTERNATIVE")", "2 7bit UTF-8"},
      {html + R"("MIXED")", "1 base64 UTF-8 html"},
      {html + html, "1 base64 UTF-8 html"},
      {plain + plain, "1 7bit UTF-8"},
      {html + "(" + html + "(" + plain + html + "))" + plain, "2.2.1 7bit UTF-8"},
      {html + pdf + plain + html, "3 7bit UTF-8 +attachments"},
  });
}

TEST(BodyStructureReader, sectionsAreCountedFromTheOutsideIn) {
  expectInfos({
      {"(" + plain + html + R"("ALTERNATIVE"))" + pdf + R"("MIXED")", "1.1 7bit UTF-8 +attachments"},
      {pdf + "(" + html + plain + R"("ALTERNATIVE") "MIXED")", "2.2 7bit UTF-8 +attachments"},
      {"(((" + plain + R"("A") "B") "C") "D")", "1.1.1.1 7bit UTF-8"},
      {message + message + "(" + message + plain + ")", "3.2 7bit UTF-8"},
      {pdf + pdf + pdf + pdf + pdf + pdf + pdf + pdf + pdf + pdf + plain, "11 7bit UTF-8 +attachments"},
      {"()()" + plain, "3 7bit UTF-8"},
  });
}

TEST(BodyStructureReader, childrenAreTheListsBeforeTheSubtype) {
  expectInfos({
      {plain + R"("MIXED" ("BOUNDARY" "x") ("ATTACHMENT" NIL) NIL)", "1 7bit UTF-8"},
      {plain + R"("MIXED" )" + pdf, "1 7bit UTF-8"},
      {plain + "NIL" + pdf, "1 7bit UTF-8"},
      {plain + pdf, "1 7bit UTF-8 +attachments"},
      {plain, "1 7bit UTF-8"},
  });
}

TEST(BodyStructureReader, structureWithoutElementsTellsNothing) {
  expectInfos({
      {"", "none"},
      {"()", "none"},
      {"(())", "none"},
      {"(()()(()))", "none"},
  });
}

TEST(BodyStructureReader, missingFieldsHaveDefaults) {
  expectInfos({
      {"TEXT", "1 7bit -"},
      {R"("TEXT" NIL)", "1 7bit -"},
      {R"("TEXT" ("HTML"))", "1 7bit -"},
      {R"("TEXT" "HTML")", "1 7bit - html"},
      {R"("TEXT" "PLAIN" NIL)", "1 7bit -"},
      {R"("TEXT" "PLAIN" NIL NIL NIL)", "1 7bit -"},
      {R"("TEXT" "PLAIN" NIL NIL NIL NIL)", "1 7bit -"},
      {R"("TEXT" "PLAIN" NIL NIL NIL ("8BIT"))", "1 7bit -"},
      {R"("TEXT" "PLAIN" NIL NIL NIL "")", "1  -"},
      {R"("TEXT" "PLAIN" NIL NIL NIL 8Bit)", "1 8bit -"},
      {R"("TEXT" "PLAIN" NIL NIL NIL "X-Unknown" "12" "1")", "1 x-unknown -"},
      {R"("TEXT" "PLAIN" NIL "<id>" "a description" "8BIT" NIL "one" extra)", "1 8bit -"},
  });
}

TEST(BodyStructureReader, everyTextThatIsNotHTMLIsPlain) {
  expectInfos({
      {html + R"(("TEXT" "CALENDAR" NIL NIL NIL "8BIT"))", "2 8bit -"},
      {html + R"(("text" "csv" NIL NIL NIL "8BIT"))", "2 8bit -"},
      {html + R"(("text" "x-html" NIL NIL NIL "8BIT"))", "2 8bit -"},
      {R"("tExT" "hTmL")", "1 7bit - html"},
  });
}

TEST(BodyStructureReader, readsTheCharsetParameterAsSent) {
  expectInfos({
      {R"("TEXT" "PLAIN" ("charset" "iso-8859-1"))", "1 7bit iso-8859-1"},
      {R"("TEXT" "PLAIN" ("NAME" "a" "Charset" "US-ASCII"))", "1 7bit US-ASCII"},
      {R"("TEXT" "PLAIN" (CHARSET UTF-8 CHARSET b))", "1 7bit UTF-8"},
      {R"("TEXT" "PLAIN" ("CHARSET" NIL "CHARSET" "b"))", "1 7bit -"},
      {R"("TEXT" "PLAIN" ("CHARSET" ("b")))", "1 7bit -"},
      {R"("TEXT" "PLAIN" ("CHARSET" ""))", "1 7bit "},
      {R"("TEXT" "PLAIN" ("NAME"))", "1 7bit -"},
      {R"("TEXT" "PLAIN" ("CHARSET"))", "1 7bit -"},
      {R"("TEXT" "PLAIN" ("NAME" "a" "CHARSET"))", "1 7bit -"},
      {R"("TEXT" "PLAIN" ("NAME" "CHARSET" "x" "y"))", "1 7bit -"},
      {R"("TEXT" "PLAIN" (NIL "a" ("x") "b" "CHARSET" "c"))", "1 7bit c"},
      {R"("TEXT" "PLAIN" "CHARSET")", "1 7bit -"},
      {R"("TEXT" "PLAIN" ())", "1 7bit -"},
  });
}

TEST(BodyStructureReader, textWithTheDispositionAttachmentIsNoText) {
  expectInfos({
      {R"("TEXT" "PLAIN" NIL NIL NIL "7BIT" 1 1 NIL ("ATTACHMENT" ("FILENAME" "a.txt")))",
       "none +attachments"},
      {R"("TEXT" "PLAIN" NIL NIL NIL "7BIT" 1 1 NIL ("INLINE" NIL))", "1 7bit -"},
      {R"(("TEXT" "PLAIN" NIL NIL NIL "7BIT" 1 1 NIL (attachment)))" + html,
       "2 base64 UTF-8 html +attachments"},
      {R"("TEXT" "PLAIN" NIL NIL NIL "7BIT" 1 1 NIL "ATTACHMENT")", "1 7bit -"},
      {R"("TEXT" "PLAIN" NIL NIL NIL "7BIT" 1 1 NIL (("ATTACHMENT")))", "1 7bit -"},
      {R"("TEXT" "PLAIN" NIL NIL NIL "7BIT" 1 1 NIL (NIL "ATTACHMENT"))", "1 7bit -"},
      {R"("TEXT" "PLAIN" NIL NIL NIL "7BIT" 1 1 NIL ("ATTACHMENTS"))", "1 7bit -"},
  });
}

// Deliberate: servers leave out the fields before the disposition, or add some.
TEST(BodyStructureReader, dispositionIsFoundInAnyPosition) {
  expectInfos({
      {R"("TEXT" "PLAIN" ("ATTACHMENT" "x"))", "none +attachments"},
      {R"("TEXT" "PLAIN" NIL NIL NIL "7BIT" ("ATTACHMENT"))", "none +attachments"},
      {R"("TEXT" "PLAIN" NIL NIL NIL "7BIT" 1 1 NIL NIL NIL NIL ("x") () ("ATTACHMENT"))",
       "none +attachments"},
  });
}

TEST(BodyStructureReader, firstDispositionDecides) {
  expectInfos({
      {R"("TEXT" "PLAIN" ("INLINE") ("ATTACHMENT"))", "1 7bit -"},
      {R"("TEXT" "PLAIN" ("x") ("ATTACHMENT") ("INLINE"))", "none +attachments"},
  });
}

// Deliberate: whatever is neither text nor a message counts, also without a disposition.
TEST(BodyStructureReader, inlineImageCountsAsAnAttachment) {
  expectInfos({
      {R"("IMAGE" "PNG" NIL NIL NIL "BASE64" 1 NIL ("INLINE" NIL))", "none +attachments"},
      {R"("APPLICATION" "OCTET-STREAM")", "none +attachments"},
      {R"(NIL "PLAIN")", "none +attachments"},
      {R"("" "PLAIN")", "none +attachments"},
      {R"("TEXTS" "PLAIN")", "none +attachments"},
  });
}

// Deliberate: a message within the message is neither an attachment nor looked into.
TEST(BodyStructureReader, attachedMessageIsNeitherAnAttachmentNorReadable) {
  expectInfos({
      {inside(message), "none"},
      {plain + message, "1 7bit UTF-8"},
      {message + plain, "2 7bit UTF-8"},
      {R"("message" "delivery-status")", "none"},
      {R"("MESSAGE" "RFC822" NIL NIL NIL "7BIT" 342 NIL NIL 9 NIL ("ATTACHMENT" NIL))", "none +attachments"},
      {R"("MULTIPART" "MIXED")", "none"},
      {R"("MULTIPART" "MIXED" ("attachment" NIL))", "none +attachments"},
  });
}

TEST(BodyStructureReader, replacesWhatIsNotUTF8) {
  expectInfos({
      {"\"TEXT\" \"PLAIN\" (\"CHARSET\" \"\xFF\") NIL NIL \"A\xC3\"", "1 a\xEF\xBF\xBD \xEF\xBF\xBD"},
  });
}

// The two structures that RFC 3501 shows in section 7.4.2.
TEST(BodyStructureReader, readsTheExamplesOfTheStandard) {
  const std::string text = R"("TEXT" "PLAIN" ("CHARSET" "US-ASCII") NIL NIL "7BIT" )";
  expectInfos({
      {text + "2279 48", "1 7bit US-ASCII"},
      {"(" + text + R"(1152 23)("TEXT" "PLAIN" ("CHARSET" "US-ASCII" "NAME" "cc.diff") )" +
           R"("<960723163407.20117h@cac.washington.edu>" "Compiler diff" "BASE64" 4554 73) "MIXED")",
       "1 7bit US-ASCII"},
  });
}

// RFC 3501, section 6.4.5 shows the sections of such a message; the parts within the messages are not
// looked into.
TEST(BodyStructureReader, readsANestedMixedMessage) {
  const std::string octets = R"(("APPLICATION" "OCTET-STREAM" NIL NIL NIL "BASE64" 1))";
  const std::string nested = "(" + octets + message + R"("MIXED"))";
  expectInfos({
      {plain + octets + message + nested + R"("MIXED")", "1 7bit UTF-8 +attachments"},
      {octets + message + "(" + message + "(" + html + plain + R"("ALTERNATIVE")))",
       "3.2.2 7bit UTF-8 +attachments"},
  });
}

TEST(BodyStructureReader, structureCutAtEveryPositionIsRead) {
  const std::string structure =
      "(" + html + plain + R"("ALTERNATIVE" ("BOUNDARY" "x"))()" + pdf + message + R"("MIXED")";
  EXPECT_EQ(described(structure), "1.2 7bit UTF-8 +attachments");
  for (std::size_t length = 0; length < structure.size(); ++length) {
    const std::string info = described(structure.substr(0, length));
    EXPECT_EQ(info.find("1.2") == 0, length > structure.find("PLAIN") - 4) << length << ": " << info;
  }
}

TEST(BodyStructureReader, readsAMillionNestedMultiparts) {
  EXPECT_EQ(described(repeated("(", 1'000'000)), "none");
  const std::string info = described(repeated("(", 1'000'000) + "\"text\"");
  EXPECT_EQ(info.size(), std::string(" 7bit -").size() + 2'000'000 - 1);
  EXPECT_EQ(info.substr(0, 6), "1.1.1.");
}

TEST(BodyStructureReader, readsATextInEachOfManyLevels) {
  constexpr std::size_t depth = 100'000;
  // Of each level the first child is HTML and the second the next level; the innermost has the plain text.
  const std::string structure = repeated("(\"text\" \"html\")(", depth) + plain;
  const std::string info = described(structure);
  EXPECT_EQ(info.substr(0, 8), "2.2.2.2.");
  EXPECT_EQ(info.size(), 2 * depth + std::string("1 7bit UTF-8").size());
}

TEST(BodyStructureReader, readsAMillionParts) {
  EXPECT_EQ(described(repeated("()", 1'000'000) + plain), "1000001 7bit UTF-8");
  EXPECT_EQ(described(repeated("(\"text\" \"html\")", 1'000'000) + plain), "1000001 7bit UTF-8");
  EXPECT_EQ(described("\"text\" \"plain\" (" + repeated("a b ", 1'000'000) + "charset c)"), "1 7bit c");
}

}  // namespace
}  // namespace tarnwell

#include "MailInputs.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <span>

namespace tarnwell::bench {

namespace {

using Words = std::span<const std::string_view>;

constexpr std::string_view latinWords[] = {
    "the",     "harbour", "timetable", "starts", "on",    "Sunday", "and",       "library", "opens",
    "at",      "eight",   "with",      "new",    "books", "for",    "children",  "market",  "hall",
    "offers",  "fresh",   "fish",      "from",   "coast", "please", "send",      "your",    "answer",
    "before",  "Friday",  "meeting",   "room",   "was",   "moved",  "to",        "second",  "floor",
    "invoice", "number",  "enclosed",  "thank",  "you",   "order",  "arrives",   "next",    "week",
    "a",       "of",      "in",        "is",     "by",    "ferry",  "breakfast", "again",   "reading"};

constexpr std::string_view japaneseWords[] = {
    "会議",   "の",   "資料", "を",     "お送り", "します",     "明日",       "は",  "午前",
    "九時",   "から", "予定", "です",   "ご確認", "ください",   "東京",       "駅",  "集合",
    "して",   "港",   "へ",   "向かい", "ます",   "新しい",     "図書館",     "が",  "開き",
    "メール", "で",   "連絡", "カフェ", "朝食",   "ありがとう", "ございます", "第2", "回",
    "１０月", "まで", "に",   "返信",   "願い",   "申し上げ"};

constexpr std::string_view emojiWords[] = {
    "\U0001F600",           "\U0001F44D\U0001F3FD", "\U0001F468\u200D\U0001F469\u200D\U0001F467",
    "\U0001F1EF\U0001F1F5", "\u2764\uFE0F",         "\U0001F389",
    "\U0001F680",           "\U0001F1E9\U0001F1EA", "\U0001F469\u200D\U0001F4BB",
    "\u2600\uFE0F",         "\U0001F64F\U0001F3FB", "\U0001F431"};

/// Gives the same sequence in every run and with every library, unlike a distribution of the standard
/// library.
class Choice {
 public:
  explicit Choice(std::uint32_t start) : random_(start) {}

  std::size_t below(std::size_t bound) { return random_() % bound; }
  std::string_view of(Words words) { return words[below(words.size())]; }
  bool oneIn(std::size_t bound) { return below(bound) == 0; }

 private:
  std::mt19937 random_;
};

std::string joined(std::initializer_list<std::string_view> pieces) {
  std::string text;
  for (const std::string_view piece : pieces) {
    text += piece;
  }
  return text;
}

std::string latinSentence(Choice& choice) {
  std::string sentence;
  for (std::size_t left = 6 + choice.below(14); left > 0; --left) {
    sentence += choice.of(latinWords);
    sentence += left == 1 ? "." : choice.oneIn(9) ? ", " : " ";
  }
  return sentence;
}

std::string japaneseSentence(Choice& choice) {
  std::string sentence;
  for (std::size_t left = 6 + choice.below(10); left > 0; --left) {
    sentence += choice.of(japaneseWords);
    sentence += left == 1 ? "。" : choice.oneIn(6) ? "、" : "";
  }
  return sentence;
}

std::string emojiRow(Choice& choice) {
  std::string row;
  for (std::size_t left = 4 + choice.below(8); left > 0; --left) {
    row += choice.of(emojiWords);
  }
  return row;
}

std::string sentence(Script script, Choice& choice) {
  switch (script) {
    case Script::latin:
      return latinSentence(choice);
    case Script::japanese:
      return japaneseSentence(choice);
    case Script::emoji:
      return emojiRow(choice);
    case Script::latinWithEmoji:
      break;
  }
  return joined({latinSentence(choice), " ", choice.of(emojiWords)});
}

std::string encodedInBase64(std::string_view bytes) {
  constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t start = 0; start < bytes.size(); start += 3) {
    const std::string_view group = bytes.substr(start, 3);
    std::uint32_t bits = 0;
    for (std::size_t place = 0; place < 3; ++place) {
      bits = bits << 8 | (place < group.size() ? static_cast<unsigned char>(group[place]) : 0U);
    }
    for (std::size_t place = 0; place < 4; ++place) {
      text += place <= group.size() ? alphabet[bits >> (18 - 6 * place) & 63] : '=';
    }
  }
  return text;
}

std::string escaped(char byte) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto value = static_cast<unsigned char>(byte);
  return {'=', digits[value >> 4], digits[value & 15]};
}

std::string encodedInQ(std::string_view text) {
  std::string encoded;
  for (const char byte : text) {
    const bool isPlain = (byte & 0x80) == 0 && byte > ' ' && std::string_view("=?_").find(byte) == text.npos;
    encoded += byte == ' ' ? "_" : isPlain ? std::string(1, byte) : escaped(byte);
  }
  return encoded;
}

std::string headerField(Choice& choice) {
  switch (choice.below(5)) {
    case 0:
      return latinSentence(choice);
    case 1:
      return joined({"=?UTF-8?B?", encodedInBase64(japaneseSentence(choice).substr(0, 30)), "?= =?UTF-8?B?",
                     encodedInBase64(choice.of(japaneseWords)), "?="});
    case 2:
      return joined({"Re: =?utf-8?Q?Caf=C3=A9_", encodedInQ(latinSentence(choice).substr(0, 40)), "?= (2)"});
    case 3:
      return joined({"=?ISO-2022-JP?B?", encodedInBase64("\x1B$B2q5D$N;qNA\x1B(B "),
                     "?= ", std::to_string(choice.below(99))});
    default:
      return joined({"=?iso-8859-1?q?Gr=FC=DFe_aus_M=FCnchen?= ", choice.of(latinWords)});
  }
}

std::string address(Choice& choice) {
  const std::string_view name = choice.of(latinWords);
  return joined({"((\"", name, " ", choice.of(latinWords), "\" NIL \"", name, "\" \"mail.example.com\"))"});
}

std::string envelope(Choice& choice, std::string_view number) {
  const std::string from = address(choice);
  const std::string subject = choice.oneIn(3) ? headerField(choice) : latinSentence(choice).substr(0, 48);
  const std::string reply = choice.oneIn(2) ? joined({"\"<thread-", number, "@mail.example.com>\""}) : "NIL";
  return joined({"(\"Tue, 05 Mar 2024 06:00:00 +0000\" \"", subject, "\" ", from, " ", from, " ", from, " ",
                 address(choice), " NIL NIL ", reply, " \"<message-", number,
                 ".20240305060000@mail.example.com>\")"});
}

std::string textPart(std::string_view subtype, std::string_view encoding, std::size_t octets) {
  return joined({"(\"text\" \"", subtype, "\" (\"charset\" \"utf-8\") NIL NIL \"", encoding, "\" ",
                 std::to_string(octets), " ", std::to_string(octets / 60), " NIL NIL NIL NIL)"});
}

std::string bodyStructure(Choice& choice, std::string_view number) {
  const std::string alternative =
      joined({"(", textPart("plain", "quoted-printable", 2311), textPart("html", "quoted-printable", 48114),
              " \"alternative\" (\"boundary\" \"=_part-", number, "-0\") NIL NIL NIL)"});
  switch (choice.below(3)) {
    case 0:
      return textPart("plain", "7bit", 1204);
    case 1:
      return alternative;
    default:
      return joined({"(", alternative,
                     "(\"application\" \"pdf\" (\"name\" \"invoice.pdf\") NIL NIL \"base64\" 148112 NIL "
                     "(\"attachment\" (\"filename\" \"invoice.pdf\" \"size\" \"108233\")) NIL NIL)"
                     " \"mixed\" (\"boundary\" \"=_part-",
                     number, "-1\") NIL NIL NIL)"});
  }
}

/// One block of a newsletter. Like real ones, it uses tables for its layout.
std::string newsletterBlock(Choice& choice) {
  const std::string link =
      joined({"https://news.example.com/c/", encodedInBase64(latinSentence(choice)), "?u=20240305"});
  return joined(
      {"<table role=\"presentation\" width=\"100%\" cellpadding=\"0\" cellspacing=\"0\" border=\"0\">\r\n"
       "  <tr>\r\n    <td align=\"left\" style=\"padding:12px 24px;font-family:Helvetica,Arial,sans-serif;"
       "font-size:16px;line-height:24px;color:#333333\">\r\n      <a href=\"",
       link, "\" style=\"color:#003355;text-decoration:none\" target=\"_blank\"><img src=\"", link,
       ".png\" width=\"560\" alt=\"\" style=\"display:block;border:0\" /></a>\r\n"
       "      <h2 style=\"margin:0 0 8px 0\">",
       latinSentence(choice), "&nbsp;&mdash; ", choice.of(latinWords), "</h2>\r\n      <p>",
       latinSentence(choice), " Library &amp; archive: caf&#233; &lt; 1 km.<br>", latinSentence(choice), " ",
       latinSentence(choice), "</p>\r\n      <p><a href=\"", link,
       "\">Read on</a></p>\r\n    </td>\r\n  </tr>\r\n</table>\r\n"});
}

}  // namespace

std::string prose(Script script, std::size_t size) {
  Choice choice(1);
  std::string text;
  for (std::size_t count = 1; text.size() < size; ++count) {
    text += sentence(script, choice);
    text += count % 4 == 0 ? "\r\n\r\n" : script == Script::japanese ? "" : " ";
  }
  return text;
}

std::string newsletter(std::size_t size) {
  Choice choice(2);
  std::string html =
      "<!DOCTYPE html>\r\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>Harbour "
      "Gazette</title>\r\n<style>\r\n";
  for (int rule = 0; rule < 40; ++rule) {
    html +=
        joined({".lead-", std::to_string(rule), " > td { color: #035; padding: 0 12px !important; }\r\n"});
  }
  html += "</style>\r\n<script>var opened = 1 < 2;</script></head>\r\n<body style=\"margin:0\">\r\n";
  while (html.size() < size) {
    html += newsletterBlock(choice);
  }
  return html + "<p><a href=\"https://news.example.com/unsubscribe\">Unsubscribe</a></p></body></html>\r\n";
}

std::vector<std::string> fetchResponses(std::size_t count) {
  Choice choice(3);
  std::vector<std::string> lines;
  for (std::size_t index = 1; index <= count; ++index) {
    const std::string number = std::to_string(index);
    lines.push_back(
        joined({"* ", number, " FETCH (UID ", std::to_string(index + 40'000),
                " FLAGS (\\Seen $Forwarded) INTERNALDATE \"05-Mar-2024 06:00:00 +0000\" ENVELOPE ",
                envelope(choice, number), " BODYSTRUCTURE ", bodyStructure(choice, number), ")"}));
  }
  return lines;
}

std::vector<std::string> headerFields(std::size_t count) {
  Choice choice(4);
  std::vector<std::string> fields;
  while (fields.size() < count) {
    fields.push_back(headerField(choice));
  }
  return fields;
}

std::string base64Lines(std::string_view bytes) {
  constexpr std::size_t bytesInLine = 57;
  std::string text;
  for (std::size_t start = 0; start < bytes.size(); start += bytesInLine) {
    text += encodedInBase64(bytes.substr(start, bytesInLine));
    text += "\r\n";
  }
  return text;
}

std::string quotedPrintableLines(std::string_view text) {
  constexpr std::size_t longestLine = 75;  // without the "=" of a soft line break
  std::string encoded;
  std::size_t lineStart = 0;
  for (const char byte : text) {
    if (byte == '\n') {
      encoded += "\n";
      lineStart = encoded.size();
      continue;
    }
    const bool isPlain = byte == '\r' || ((byte & 0x80) == 0 && byte != '=');
    const std::string written = isPlain ? std::string(1, byte) : escaped(byte);
    if (encoded.size() - lineStart + written.size() > longestLine) {
      encoded += "=\r\n";
      lineStart = encoded.size();
    }
    encoded += written;
  }
  return encoded;
}

std::string randomBytes(std::size_t size) {
  Choice choice(5);
  std::string bytes(size, '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(choice.below(256));
  }
  return bytes;
}

std::string repeated(std::string_view fragment, std::size_t size) {
  std::string text;
  text.reserve(std::max(size, fragment.size()));
  do {
    text += fragment;
  } while (text.size() + fragment.size() <= size);
  return text;
}

}  // namespace tarnwell::bench

#include "App/Models/HarmlessText.h"

#include <QChar>
#include <QList>

namespace tarnwell {

namespace {

/// The picture of a control character (Unicode block "Control Pictures"), or its number.
QString visible(char32_t character) {
  if (character < 0x20) {
    return QString(QChar(static_cast<char16_t>(0x2400 + character)));
  }
  if (character == 0x7f) {
    return QString(QChar(0x2421));
  }
  const QString number = QStringLiteral("%1").arg(static_cast<uint>(character), 4, 16, QLatin1Char('0'));
  return QStringLiteral("\u2039U+%1\u203a").arg(number.toUpper());
}

bool isDirectionMark(char32_t character) {
  return character == 0x200e || character == 0x200f || character == 0x061c;
}

/// For the eye there is nothing: joiners, marks of direction, and what allows or forbids a line to break.
bool isWithoutWidth(char32_t character) {
  return (character >= 0x200b && character <= 0x200f) || character == 0x061c || character == 0x034f ||
         character == 0x2060 || character == 0xfeff;
}

bool isIdeographicSelector(char32_t character) { return character >= 0xe0100 && character <= 0xe01ef; }

bool isSelector(char32_t character) {
  return (character >= 0xfe00 && character <= 0xfe0f) || isIdeographicSelector(character);
}

/// After other characters a selector changes nothing (Unicode, section 23.4), so it could carry a message.
/// The digits, "#" and "*" are parts of emoji.
bool mayHaveSelector(char32_t character, char32_t selector) {
  const QChar::Script script = QChar::script(character);
  if (script == QChar::Script_Han || isIdeographicSelector(selector)) {
    return script == QChar::Script_Han;
  }
  switch (QChar::category(character)) {
    case QChar::Symbol_Other:
    case QChar::Symbol_Math:
    case QChar::Punctuation_Other:
    case QChar::Punctuation_Dash:
      return true;
    default:
      return (character >= '0' && character <= '9') || character == 0x2139 ||
             script == QChar::Script_Myanmar || script == QChar::Script_PhagsPa;
  }
}

bool mustBeSeen(char32_t character) {
  return character < 0x20 || (character >= 0x7f && character <= 0x9f) || character == 0xad ||
         character == 0x115f || character == 0x1160 || character == 0x3164 || character == 0xffa0 ||
         (character >= 0x202a && character <= 0x202e) || (character >= 0x2061 && character <= 0x206f) ||
         (character >= 0xfff9 && character <= 0xfffb) || (character >= 0xe0000 && character <= 0xe0fff);
}

/// For those characters that are harmless only where they belong. 0 stands for no neighbour.
bool mustBeSeen(char32_t character, char32_t before, char32_t after) {
  if (isSelector(character)) {
    return !mayHaveSelector(before, character);
  }
  if (isWithoutWidth(character)) {
    return isWithoutWidth(before) || isWithoutWidth(after);
  }
  return mustBeSeen(character);
}

QString harmless(std::string_view text, bool isOneLine) {
  const QString given = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  QString made;
  made.reserve(given.size());
  const QList<uint> characters = given.toUcs4();
  for (qsizetype place = 0; place < characters.size(); ++place) {
    const char32_t character = characters[place];
    if (character == '\r' && characters.value(place + 1) == '\n') {
      continue;
    }
    const bool isLineEnd =
        character == '\n' || character == '\r' || character == 0x2028 || character == 0x2029;
    if (isLineEnd || character == '\t') {
      made += isOneLine ? QLatin1Char(' ') : isLineEnd ? QLatin1Char('\n') : QLatin1Char('\t');
    } else if (mustBeSeen(character, characters.value(place - 1), characters.value(place + 1)) ||
               (isDirectionMark(character) && !isOneLine)) {
      made += visible(character);
    } else if (!isDirectionMark(character)) {
      made += QString::fromUcs4(&character, 1);
    }
  }
  return made;
}

}  // namespace

QString harmlessLine(std::string_view text) { return harmless(text, true).trimmed(); }

QString harmlessText(std::string_view text) { return harmless(text, false); }

QString isolated(const QString& text) { return QChar(0x2068) + text + QChar(0x2069); }

}  // namespace tarnwell

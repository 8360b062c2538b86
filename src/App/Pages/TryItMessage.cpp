#include "App/Pages/TryItMessage.h"

#include <QHBoxLayout>
#include <QScrollBar>
#include <QVBoxLayout>

#include "App/Pages/TryItTexts.h"
#include "App/Widgets/Card.h"
#include "MCP/Tools/MessageJSON.h"

namespace tarnwell {

namespace {

/// A label breaks its lines only between words, and a stranger's word may be longer than any line. So breaks
/// are allowed within long words, and very long texts are cut: the exact JSON has all of them.
QString breakable(const QString& text) {
  constexpr qsizetype most = 240;
  constexpr int longestWord = 24;
  QString made;
  int length = 0;
  for (const QChar character : text.left(most)) {
    length = character.isSpace() ? 0 : length + 1;
    if (length > longestWord && !character.isLowSurrogate() && !character.isMark()) {
      made += QChar(0x200b);
      length = 1;
    }
    made += character;
  }
  return text.size() > most ? made + QChar(0x2026) : made;
}

QString withheldPreview() {
  return QString::fromUtf8(withheldText.data(), static_cast<qsizetype>(withheldText.size()));
}

ToneLabel* heading() {
  auto* const label = new ToneLabel(Tone::faint);
  QFont font = label->font();
  font.setBold(true);
  label->setFont(font);
  return label;
}

}  // namespace

TryItMessage::TryItMessage(TryItModel& tryIt, QWidget* parent)
    : QScrollArea(parent),
      tryIt_(tryIt),
      subject_(new ToneLabel),
      sender_(new ToneLabel),
      date_(new ToneLabel(Tone::faint)),
      marks_(new ToneLabel(Tone::faint)),
      verdictBox_(new QFrame),
      verdictMark_(new MarkLabel(Mark::tick, Tone::success, 22)),
      verdict_(new ToneLabel),
      signs_(new ToneLabel),
      previewName_(heading()),
      preview_(new ToneLabel),
      textName_(heading()),
      text_(new ReadingText(14)),
      extent_(new ToneLabel(Tone::faint)),
      changes_(new TryItChanges(tryIt)) {
  arrange();
  connect(&tryIt_, &TryItModel::chosenChanged, this, &TryItMessage::showAnother);
  connect(&tryIt_, &TryItModel::messageChanged, this, &TryItMessage::showMessage);
}

void TryItMessage::arrange() {
  QFont large = subject_->font();
  large.setBold(true);
  large.setPointSizeF(large.pointSizeF() * 1.2);
  subject_->setFont(large);
  QFont bold = verdict_->font();
  bold.setBold(true);
  verdict_->setFont(bold);
  for (ToneLabel* const label : {subject_, sender_, date_, marks_, verdict_, signs_, preview_, extent_}) {
    label->setTextFormat(Qt::PlainText);
  }

  verdictBox_->setObjectName("notice");
  QSizePolicy keepsItsPlace = verdictMark_->sizePolicy();
  keepsItsPlace.setRetainSizeWhenHidden(true);  // the words do not move when the text arrives
  verdictMark_->setSizePolicy(keepsItsPlace);
  auto* const words = new QVBoxLayout;
  words->setSpacing(4);
  words->addWidget(verdict_);
  words->addWidget(signs_);
  auto* const verdict = new QHBoxLayout(verdictBox_);
  verdict->setContentsMargins(14, 12, 14, 12);
  verdict->setSpacing(12);
  verdict->addWidget(verdictMark_, 0, Qt::AlignTop);
  verdict->addLayout(words, 1);

  auto* const card = new Card;
  QVBoxLayout* const rows = card->rows();
  rows->setSpacing(6);
  rows->addWidget(subject_);
  rows->addWidget(sender_);
  rows->addWidget(date_);
  rows->addWidget(marks_);
  rows->addSpacing(8);
  rows->addWidget(verdictBox_);
  rows->addSpacing(8);
  rows->addWidget(previewName_);
  rows->addWidget(preview_);
  rows->addSpacing(8);
  rows->addWidget(textName_);
  rows->addWidget(text_);
  rows->addWidget(extent_);
  rows->addSpacing(8);
  rows->addWidget(changes_);
  rows->addStretch(1);
  setWidget(card);
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
}

void TryItMessage::showAnother() {
  verticalScrollBar()->setValue(0);
  changes_->startAnew();
  showMessage();
}

void TryItMessage::showMessage() {
  const TriedMessage* const message = tryIt_.chosen();
  const TriedMessage none;
  const TriedMessage& shown = message != nullptr ? *message : none;
  subject_->setText(message != nullptr ? breakable(TryItTexts::subject(shown)) : QString());
  sender_->setText(message != nullptr ? breakable(TryItTexts::sender(shown)) : QString());
  date_->setText(breakable(TryItTexts::longDate(shown.date)));
  QStringList marks;
  if (shown.isUnread) {
    marks.append(tr("Unread"));
  }
  if (shown.hasAttachments) {
    marks.append(tr("Has attachments, which an assistant never gets"));
  }
  marks_->setText(marks.join(QStringLiteral(" · ")));
  marks_->setVisible(!marks.isEmpty());
  preview_->setText(shown.isWithheld ? withheldPreview() : breakable(shown.preview));
  const bool hasPreview = shown.isWithheld || !shown.preview.isEmpty();
  previewName_->setVisible(hasPreview);
  preview_->setVisible(hasPreview);
  showText(shown);
}

void TryItMessage::showText(const TriedMessage& message) {
  const TriedText* const text = tryIt_.text() ? &*tryIt_.text() : nullptr;
  const bool isWithheld = text != nullptr ? text->kind == TriedText::Kind::withheld : message.isWithheld;
  const std::vector<TriedSignal>& signs =
      text != nullptr && !text->signs.empty() ? text->signs : message.signs;
  const bool isReturned = text != nullptr && text->kind == TriedText::Kind::returned;
  verdictMark_->setMark(isWithheld ? Mark::shield : Mark::tick,
                        isWithheld || !signs.empty() ? Tone::warning : Tone::success);
  verdictMark_->setVisible(isWithheld || isReturned);
  verdict_->setText(TryItTexts::verdict(message, text));
  QStringList reasons;
  for (const TriedSignal& sign : signs) {
    reasons.append(breakable(TryItTexts::sign(sign)));
  }
  signs_->setText(reasons.join(QLatin1Char('\n')));
  signs_->setVisible(!reasons.isEmpty());

  textName_->setText(isReturned || text == nullptr ? tr("The text that an assistant gets")
                                                   : tr("What an assistant reads in place of the text"));
  text_->setAccessibleName(textName_->text());
  text_->setText(text != nullptr ? text->text : QString());
  textName_->setVisible(text != nullptr);
  text_->setVisible(text != nullptr);
  extent_->setText(text != nullptr ? TryItTexts::extent(*text) : QString());
  extent_->setVisible(!extent_->text().isEmpty());
}

void TryItMessage::setTexts() {
  setAccessibleName(tr("The chosen message"));
  previewName_->setText(tr("What a search shows of the text"));
  changes_->setTexts();
  showMessage();
}

}  // namespace tarnwell

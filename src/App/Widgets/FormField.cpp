#include "App/Widgets/FormField.h"

#include <QEvent>
#include <QStyle>
#include <QTextDocumentFragment>
#include <QVBoxLayout>

namespace tarnwell {

namespace {

/// Without the mark of the mnemonic. Japanese puts it in brackets at the end: "ポート(&P)".
QString spoken(QString label) {
  if (const auto place = label.indexOf(QLatin1String("(&")); place >= 0) {
    return label.left(place).trimmed();
  }
  return label.remove(QLatin1Char('&'));
}

}  // namespace

FormField::FormField(QWidget* input, QWidget* parent)
    : QWidget(parent),
      input_(input),
      label_(new QLabel(this)),
      hint_(new ToneLabel(Tone::faint, this)),
      error_(new ToneLabel(Tone::error, this)) {
  input_->setParent(this);  // a label names only a sibling for screen readers
  label_->setBuddy(input_);
  hint_->setOpenExternalLinks(true);
  hint_->setTextInteractionFlags(Qt::TextBrowserInteraction);
  setTabOrder(input_, hint_);          // only for what can take the focus
  hint_->setFocusPolicy(Qt::NoFocus);  // unless it has a link
  error_->setTextFormat(Qt::PlainText);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(5);
  rows->addWidget(label_);
  rows->addWidget(input_);
  rows->addWidget(error_);
  rows->addWidget(hint_);
  hint_->hide();
  error_->hide();
  setFocusProxy(input_);
}

void FormField::setLabel(const QString& label) {
  label_->setText(label);
  describe();
}

void FormField::setHint(const QString& richText) {
  if (richText == hint_->text()) {
    return;  // a link that has the focus keeps it
  }
  hint_->setText(richText);
  hint_->setVisible(!richText.isEmpty());
  const bool hasLink = richText.contains(QLatin1String("<a "));
  hint_->setFocusPolicy(hasLink ? Qt::StrongFocus : Qt::NoFocus);
  hint_->setAccessibleName(QTextDocumentFragment::fromHtml(richText).toPlainText());
  describe();
}

void FormField::setError(const QString& error) {
  error_->setText(error);
  error_->setVisible(!error.isEmpty());
  input_->setProperty("invalid", !error.isEmpty());
  input_->style()->unpolish(input_);
  input_->style()->polish(input_);
  describe();
}

void FormField::describe() {
  const bool isInvalid = !error_->text().isEmpty();
  const QString name = spoken(label_->text());
  input_->setAccessibleName(isInvalid ? tr("%1, invalid").arg(name) : name);
  const QString hint = hint_->accessibleName();
  input_->setAccessibleDescription(isInvalid ? error_->text() + QLatin1Char(' ') + hint : hint);
}

void FormField::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    describe();
  }
}

}  // namespace tarnwell

#include "App/Widgets/Notice.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>

namespace tarnwell {

namespace {

struct Look {
  Tone tone;
  QString mark;
};

/// The mark tells the kind apart from the colour.
Look lookOf(Notice::Kind kind) {
  switch (kind) {
    case Notice::Kind::information:
      return {Tone::accent, QStringLiteral("i")};
    case Notice::Kind::success:
      return {Tone::success, QStringLiteral("\u2713")};
    case Notice::Kind::warning:
      return {Tone::warning, QStringLiteral("!")};
    case Notice::Kind::error:
      return {Tone::error, QStringLiteral("\u2715")};
  }
  return {Tone::text, {}};
}

}  // namespace

Notice::Notice(QWidget* parent)
    : QFrame(parent),
      mark_(new ToneLabel(Tone::accent, this)),
      text_(new ToneLabel(Tone::text, this)),
      details_(new ToneLabel(Tone::faint, this)),
      detailsSwitch_(new QToolButton(this)),
      action_(new QPushButton(this)) {
  setObjectName("notice");
  QFont font = mark_->font();
  font.setBold(true);
  mark_->setFont(font);
  mark_->setWordWrap(false);
  for (ToneLabel* const label : {mark_, text_, details_}) {
    label->setTextFormat(Qt::PlainText);
  }
  details_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  detailsSwitch_->setCheckable(true);
  detailsSwitch_->hide();
  details_->hide();
  action_->hide();

  auto* const line = new QHBoxLayout;
  line->setSpacing(12);
  line->addWidget(mark_, 0, Qt::AlignTop);
  line->addWidget(text_, 1);
  line->addWidget(detailsSwitch_, 0, Qt::AlignTop);
  line->addWidget(action_, 0, Qt::AlignTop);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(14, 10, 14, 10);
  rows->addLayout(line);
  rows->addWidget(details_);

  connect(detailsSwitch_, &QToolButton::toggled, details_, &QWidget::setVisible);
  connect(action_, &QPushButton::clicked, this, &Notice::acted);
  setTexts();
  hide();
}

void Notice::setTexts() { detailsSwitch_->setText(tr("Details")); }

void Notice::tell(Kind kind, const QString& text, const QString& details) {
  const Look look = lookOf(kind);
  mark_->setText(look.mark);
  mark_->setTone(look.tone);
  text_->setTone(kind == Kind::error ? Tone::error : Tone::text);
  text_->setText(text);
  details_->setText(details);
  detailsSwitch_->setVisible(!details.isEmpty());
  if (details.isEmpty()) {
    detailsSwitch_->setChecked(false);
  }
  const bool isNews = !isVisible() || accessibleName() != text;
  setAccessibleName(text);
  show();
  if (isNews) {
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
  }
}

void Notice::fallSilent() {
  text_->clear();
  details_->clear();
  detailsSwitch_->setChecked(false);
  setAccessibleName({});
  setAction({});
  hide();
}

void Notice::setAction(const QString& label) {
  action_->setText(label);
  action_->setVisible(!label.isEmpty());
}

void Notice::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    setTexts();
  }
}

}  // namespace tarnwell

#include "App/Widgets/Page.h"

#include <QEvent>
#include <QScrollArea>

namespace tarnwell {

Page::Page(QWidget* parent)
    : QWidget(parent),
      title_(new QLabel(this)),
      lead_(new ToneLabel(Tone::faint, this)),
      body_(new QVBoxLayout),
      footer_(new QHBoxLayout) {
  QFont large = title_->font();
  large.setBold(true);
  large.setPointSizeF(large.pointSizeF() * 1.5);
  title_->setFont(large);
  title_->setWordWrap(true);

  auto* const contents = new QWidget;
  auto* const column = new QVBoxLayout(contents);
  column->setContentsMargins(0, 0, 12, 0);
  column->addLayout(body_);
  column->addStretch(1);
  body_->setSpacing(14);
  auto* const scrolled = new QScrollArea(this);
  scrolled->setWidgetResizable(true);
  scrolled->setFrameShape(QFrame::NoFrame);
  scrolled->setFocusPolicy(Qt::NoFocus);
  scrolled->setWidget(contents);

  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(24, 20, 12, 16);
  rows->setSpacing(10);
  rows->addWidget(title_);
  rows->addWidget(lead_);
  rows->addWidget(scrolled, 1);
  footer_->setContentsMargins(0, 0, 12, 0);
  rows->addLayout(footer_);
}

void Page::setHeading(const QString& title, const QString& lead) {
  title_->setText(title);
  lead_->setText(lead);
  setAccessibleName(title);
  setAccessibleDescription(lead);
}

void Page::fillRoom() {
  auto* const column = static_cast<QVBoxLayout*>(body_->parentWidget()->layout());
  column->setStretch(0, 1);
  column->setStretch(1, 0);
}

void Page::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    setTexts();
  }
}

}  // namespace tarnwell

#include "App/Widgets/Page.h"

#include <QEvent>
#include <QPointer>
#include <QTimer>

namespace tarnwell {

Page::Page(QWidget* parent)
    : QWidget(parent),
      title_(new QLabel(this)),
      lead_(new ToneLabel(Tone::faint, this)),
      scrolled_(new QScrollArea(this)),
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
  scrolled_->setWidgetResizable(true);
  scrolled_->setFrameShape(QFrame::NoFrame);
  scrolled_->setFocusPolicy(Qt::NoFocus);
  scrolled_->setWidget(contents);

  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(24, 20, 12, 16);
  rows->setSpacing(10);
  rows->addWidget(title_);
  rows->addWidget(lead_);
  rows->addWidget(scrolled_, 1);
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

void Page::bringIntoView(QWidget* part) {
  // The layout follows a change at the next turn of the event loop, and the area follows the layout.
  QTimer::singleShot(0, this, [this, part = QPointer(part)] {
    if (part && part->isVisible()) {
      scrolled_->ensureWidgetVisible(part, 0, body_->spacing());
    }
  });
}

void Page::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    setTexts();
  }
}

}  // namespace tarnwell

#include "App/Widgets/CopyBlock.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <algorithm>
#include <chrono>
#include <utility>

namespace tarnwell {

CopyBlock::CopyBlock(QWidget* parent)
    : QFrame(parent), code_(new CodeText(this)), copy_(new QPushButton(this)) {
  using namespace std::chrono_literals;
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(10);
  row->addWidget(code_, 1);
  row->addWidget(copy_, 0, Qt::AlignTop);
  copy_->setAutoDefault(true);  // Enter presses it too
  sinceCopied_.setSingleShot(true);
  sinceCopied_.setInterval(2s);
  connect(&sinceCopied_, &QTimer::timeout, this, &CopyBlock::setTexts);
  connect(copy_, &QPushButton::clicked, this, &CopyBlock::copy);
  setTexts();
}

void CopyBlock::setText(const QString& shown, std::function<QString()> copied) {
  setText(shown);
  copied_ = std::move(copied);
}

void CopyBlock::setSecretText(const QString& shown, std::function<QString()> copied) {
  setText(shown, std::move(copied));
  code_->setSecret(true);
}

void CopyBlock::setText(const QString& text) {
  copied_ = {};
  code_->setSecret(false);
  if (text == text_) {
    return;
  }
  text_ = text;
  code_->setPlainText(text.endsWith(QLatin1Char('\n')) ? text.chopped(1) : text);
  sinceCopied_.stop();  // this text was not copied
  setTexts();
}

void CopyBlock::setAccessibleLabel(const QString& label) {
  label_ = label;
  setTexts();
}

void CopyBlock::copy() {
  auto* const copied = new QMimeData;
  copied->setText(copied_ ? copied_() : text_);
  code_->mark(*copied);
  QGuiApplication::clipboard()->setMimeData(copied);
  sinceCopied_.start();
  setTexts();
}

/// The button is as wide as the longer of its two texts, so that nothing moves when it is pressed.
void CopyBlock::setTexts() {
  const QString before = tr("Copy");
  const QString after = tr("Copied");
  int width = 0;
  for (const QString& text : {before, after}) {
    copy_->setText(text);
    width = std::max(width, copy_->sizeHint().width());
  }
  copy_->setMinimumWidth(width);
  const bool isCopied = sinceCopied_.isActive();
  copy_->setText(isCopied ? after : before);
  code_->setAccessibleName(label_);
  copy_->setAccessibleName(isCopied ? tr("Copied: %1").arg(label_) : tr("Copy: %1").arg(label_));
}

void CopyBlock::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::LanguageChange || event->type() == QEvent::FontChange ||
      event->type() == QEvent::StyleChange) {
    setTexts();
  }
}

}  // namespace tarnwell

#include "App/Widgets/SettingRow.h"

#include <QHBoxLayout>

namespace tarnwell {

SettingRow::SettingRow(QWidget* control, QWidget* parent)
    : QWidget(parent),
      control_(control),
      name_(new QLabel(this)),
      sentence_(new ToneLabel(Tone::faint, this)),
      quoted_(new ToneLabel(Tone::faint, this)) {
  control_->setParent(this);
  QFont font = name_->font();
  font.setBold(true);
  name_->setFont(font);
  name_->setWordWrap(true);
  font.setBold(false);
  font.setItalic(true);
  quoted_->setFont(font);
  quoted_->setContentsMargins(12, 0, 0, 0);
  for (QLabel* const label : {name_, static_cast<QLabel*>(sentence_), static_cast<QLabel*>(quoted_)}) {
    label->setTextFormat(Qt::PlainText);
  }
  auto* const texts = new QVBoxLayout;
  texts->setSpacing(4);
  texts->addWidget(name_);
  texts->addWidget(sentence_);
  texts->addWidget(quoted_);
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(16);
  row->addLayout(texts, 1);
  row->addWidget(control_, 0, Qt::AlignTop);
  setFocusProxy(control_);
}

void SettingRow::setTexts(const QString& name, const QString& sentence, const QString& quoted) {
  name_->setText(name);
  sentence_->setText(sentence);
  quoted_->setText(quoted);
  quoted_->setVisible(!quoted.isEmpty());
  control_->setAccessibleName(name);
  control_->setAccessibleDescription(quoted.isEmpty() ? sentence : sentence + QLatin1Char(' ') + quoted);
}

}  // namespace tarnwell

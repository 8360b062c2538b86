#include "App/Pages/PasswordField.h"

#include <QByteArray>
#include <QEvent>
#include <QVBoxLayout>

namespace tarnwell {

PasswordField::PasswordField(QWidget* parent)
    : QWidget(parent), input_(new QLineEdit), row_(new FormField(input_, this)), shows_(new QCheckBox(this)) {
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(row_);
  rows->addWidget(shows_);
  input_->setEchoMode(QLineEdit::Password);
  connect(input_, &QLineEdit::textChanged, this,
          [this](const QString& text) { Q_EMIT edited(text.isEmpty()); });
  connect(shows_, &QCheckBox::toggled, this, [this](bool isShown) {
    input_->setEchoMode(isShown ? QLineEdit::Normal : QLineEdit::Password);
    // Also while it is shown, so that no input method learns it.
    input_->setInputMethodHints(Qt::ImhSensitiveData | Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase |
                                (isShown ? Qt::ImhNone : Qt::ImhHiddenText));
  });
  setTexts();
}

Secret PasswordField::typed() const {
  QByteArray bytes = input_->text().toUtf8();
  Secret secret(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
  wipe(bytes.data(), static_cast<std::size_t>(bytes.size()));
  return secret;
}

/// Sets an empty text instead of clearing the field, which could be undone. The old text then has no other
/// owner, so it can be overwritten. Copies that the field made of it while it was typed are out of reach.
void PasswordField::forget() {
  QString held = input_->text();
  input_->setText({});
  wipe(held.data(), static_cast<std::size_t>(held.size()) * sizeof(QChar));
  shows_->setChecked(false);
}

void PasswordField::setTexts() { shows_->setText(tr("S&how the password")); }

void PasswordField::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    setTexts();
  }
}

}  // namespace tarnwell

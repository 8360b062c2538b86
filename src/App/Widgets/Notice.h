#pragma once

/// A box that tells something, with what to do about it.
///
///     notice->tell(Notice::Kind::error, tr("The keyring is locked."));
///     notice->setAction(tr("&Unlock"));
///     connect(notice, &Notice::acted, ...);
///
/// Hidden until it tells something. Screen readers announce it.

#include <QFrame>
#include <QPushButton>
#include <QToolButton>

#include "App/Widgets/Theme.h"

namespace tarnwell {

class Notice : public QFrame {
  Q_OBJECT

 public:
  enum class Kind { information, success, warning, error };

  explicit Notice(QWidget* parent = nullptr);

  /// Shows plain text. `details` is for the curious, such as the system's own words; it opens on demand.
  void tell(Kind kind, const QString& text, const QString& details = {});
  /// Hides it and forgets its texts and its action.
  void fallSilent();

  QString text() const { return text_->text(); }
  QString details() const { return details_->text(); }

  /// A button beside the text. Empty: none.
  void setAction(const QString& label);
  QPushButton* action() const { return action_; }

 Q_SIGNALS:
  void acted();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void setTexts();

  ToneLabel* mark_;
  ToneLabel* text_;
  ToneLabel* details_;
  QToolButton* detailsSwitch_;
  QPushButton* action_;
};

}  // namespace tarnwell

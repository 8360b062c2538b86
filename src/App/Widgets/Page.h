#pragma once

/// The base of every page: a title and a sentence at the top, a body that scrolls, buttons at the bottom.
///
/// A page sets all of its texts in `setTexts`, and calls it at the end of its constructor. It is called again
/// when the language changes.

#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>
#include <QWidget>

#include "App/Widgets/Theme.h"

namespace tarnwell {

class Page : public QWidget {
  Q_OBJECT

 public:
  explicit Page(QWidget* parent = nullptr);

  QString title() const { return title_->text(); }

 protected:
  virtual void setTexts() = 0;

  void setHeading(const QString& title, const QString& lead);
  QVBoxLayout* body() { return body_; }
  /// Gives the body all the room that there is: for a page whose table or text scrolls by itself.
  void fillRoom();
  /// Scrolls the body so far that this part of it is seen, once it has its place.
  void bringIntoView(QWidget* part);
  /// No room is taken while it is empty.
  QHBoxLayout* footer() { return footer_; }

  void changeEvent(QEvent* event) override;

 private:
  QLabel* title_;
  ToneLabel* lead_;
  QScrollArea* scrolled_;
  QVBoxLayout* body_;
  QHBoxLayout* footer_;
};

}  // namespace tarnwell

#pragma once

/// The page "Try it": shows what an assistant would see of the inbox, and what would become of a change.
///
/// Nothing is read before a search is asked for. When the page is left, everything is forgotten, here and in
/// the model.
///
/// On a wide page the chosen message stands beside the list, on a narrow one in its place.
///
/// Threads: that of the window. The model must outlive the page.

#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

#include "App/Models/TryItModel.h"
#include "App/Pages/TryItCalls.h"
#include "App/Pages/TryItList.h"
#include "App/Pages/TryItMessage.h"
#include "App/Pages/TryItSearch.h"
#include "App/Widgets/Marks.h"
#include "App/Widgets/Notice.h"
#include "App/Widgets/Page.h"

namespace tarnwell {

class TryItPage : public Page {
  Q_OBJECT

 public:
  explicit TryItPage(TryItModel& tryIt, QWidget* parent = nullptr);

  /// In the language of the window.
  static QString name();

 Q_SIGNALS:
  /// The person wants the page "Account", where the trouble is mended.
  void accountWanted();

 protected:
  void setTexts() final;
  void hideEvent(QHideEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void arrange();
  QWidget* makeWelcome();
  QWidget* makeWaiting();
  QWidget* makeResults();
  void connectParts();

  void takeMessages();
  /// Shows what the model says.
  void showSearch();
  void showAge();
  void showProgress();
  void showFailure();
  void showPanes();

  /// A message of the list was asked for, and not only passed on the way.
  void open(int row);
  /// Back to the list, where the panes take turns.
  void goBack();
  bool isWide() const;

  TryItModel& tryIt_;
  TryItSearch* search_;
  Notice* trouble_;
  Notice* before_;
  QStackedWidget* states_;
  QLabel* welcomeTitle_;
  ToneLabel* welcomeText_;
  ToneLabel* progress_;
  QPushButton* cancel_;
  ToneLabel* summary_;
  QPushButton* json_;
  QPushButton* back_;
  TryItList* list_;
  QStackedWidget* panes_;
  ToneLabel* hint_;
  TryItMessage* message_;
  TryItCalls* calls_;
};

}  // namespace tarnwell

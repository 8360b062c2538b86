#pragma once

/// The page "Account": where the mail is, the password, and whether they work. The first page that anybody
/// sees.

#include <QLineEdit>
#include <QPushButton>
#include <array>

#include "App/Models/AccountModel.h"
#include "App/Pages/PasswordField.h"
#include "App/Widgets/Card.h"
#include "App/Widgets/FormField.h"
#include "App/Widgets/Notice.h"
#include "App/Widgets/Page.h"
#include "App/Widgets/Questions.h"
#include "App/Widgets/StageRow.h"

namespace tarnwell {

class AccountPage : public Page {
  Q_OBJECT

 public:
  /// Both must outlive the page.
  AccountPage(AccountModel& account, Questions& questions, QWidget* parent = nullptr);

  /// In the language of the window.
  static QString name();

 protected:
  void setTexts() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  /// A field whose text the model knows.
  struct Entry {
    AccountDraft::Field field;
    QLineEdit* input;
    FormField* row;
    /// An error shows when the person has left the field, and goes when it is cured.
    bool wasLeft = false;
  };

  Entry newEntry(AccountDraft::Field field);
  void build();
  void listen();
  void type(AccountDraft::Field field, const QString& text);
  void showModel();
  void showEntry(Entry& entry);
  void showNotices();
  void showNews();
  void showButtons();
  void testOrCancel();
  void test();
  void leaveButtons();

  AccountModel& account_;
  Questions& questions_;

  Card* welcome_;
  std::array<ToneLabel*, 3> welcomeLines_{};
  Notice* fileNotice_;
  Notice* keyringNotice_;
  Card* fields_;
  std::array<Entry, 3> entries_;
  PasswordField* password_;
  StageRow* stages_;
  Notice* news_;
  ToneLabel* obstacle_;
  QPushButton* test_;
  QPushButton* remove_;
  QPushButton* save_;
  bool isShowingModel_ = false;
  bool wasShown_ = false;
};

}  // namespace tarnwell

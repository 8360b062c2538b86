#pragma once

/// The page "About": version and licence, the language, where things are, diagnostics to copy.
///
/// Threads: that of the window. The model must outlive the page.

#include <QLineEdit>
#include <optional>

#include "App/Models/AboutModel.h"
#include "App/Widgets/Card.h"
#include "App/Widgets/ChoiceBox.h"
#include "App/Widgets/FormField.h"
#include "App/Widgets/Notice.h"
#include "App/Widgets/Page.h"

namespace tarnwell {

class AboutPage : public Page {
  Q_OBJECT

 public:
  explicit AboutPage(AboutModel& about, QWidget* parent = nullptr);

  /// In the language of the window.
  static QString name();

 protected:
  void setTexts() final;

 private:
  FormField* addPlace(const QString& place);
  void showModel();
  void showNotices();
  void copyDiagnostics(const QString& text);

  AboutModel& about_;
  Notice* saveNotice_;
  Notice* copyNotice_;
  ToneLabel* program_;
  Card* languages_;
  ChoiceBox* language_;
  FormField* languageField_;
  Card* places_;
  FormField* settingsPlace_;
  FormField* passwordPlace_;
  FormField* logPlace_;
  Card* licence_;
  QPushButton* copy_;
  /// Why the language could not be saved.
  std::optional<QString> failure_;
  /// What was copied last.
  std::optional<QString> diagnostics_;
};

}  // namespace tarnwell

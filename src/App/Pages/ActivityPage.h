#pragma once

/// The page "Activity": what this app and all helpers did, as it happens. One row for each call, or with the
/// switch "Every line" the log as it is.
///
/// Threads: that of the window. The model and the file choice must outlive the page.

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVariant>

#include "App/Models/ActivityModel.h"
#include "App/Pages/ActivityTable.h"
#include "App/Widgets/ChoiceBox.h"
#include "App/Widgets/FileChoice.h"
#include "App/Widgets/Notice.h"
#include "App/Widgets/Page.h"
#include "App/Widgets/ReadingText.h"
#include "App/Widgets/Switch.h"

namespace tarnwell {

class ActivityPage : public Page {
  Q_OBJECT

 public:
  ActivityPage(ActivityModel& activity, FileChoice& files, QWidget* parent = nullptr);

  /// In the language of the window.
  static QString name();

 protected:
  void setTexts() override;
  /// The system's log is first read when somebody wants to see it.
  void showEvent(QShowEvent* event) override;

 private:
  void arrange();
  void connectModel();

  void showProcesses();
  int placeOf(const QVariant& process) const;
  void chooseProcess(int place);
  void showAccess();
  void showSaved();
  /// The entry that the keyboard is on, in full, as it is said and as it was logged; or why the table is
  /// empty.
  void showEntry();
  void copy();
  void save();

  /// What became of the last file.
  struct SavedFile {
    QString path{};
    /// Empty when it was saved.
    QString failure{};
  };

  ActivityModel& activity_;
  FileChoice& files_;
  Notice* accessNotice_;
  Notice* savedNotice_;
  QLineEdit* search_;
  ChoiceBox* process_;
  QLabel* everyLineLabel_;
  Switch* everyLine_;
  QLabel* followLabel_;
  Switch* follow_;
  ActivityTable* table_;
  /// Why the table is empty.
  ToneLabel* emptyText_;
  ReadingText* entry_;
  QPushButton* clear_;
  QPushButton* copy_;
  QPushButton* save_;
  SavedFile savedFile_;
};

}  // namespace tarnwell

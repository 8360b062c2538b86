#pragma once

/// The window with all of its pages and what they know, put together.
///
/// Threads: that of the window. Closing waits for nothing: what runs is given up, and its threads end by
/// themselves.

#include "App/MainWindow.h"
#include "App/Models/AboutModel.h"
#include "App/Models/AccountModel.h"
#include "App/Models/ActivityModel.h"
#include "App/Models/SafetyModel.h"
#include "App/Models/SettingsFile.h"
#include "App/Pages/ActivityTexts.h"
#include "App/Widgets/FileChoice.h"
#include "App/Widgets/Questions.h"

namespace tarnwell {

class AppWindow {
 public:
  /// The pages in the order of their names at the left.
  enum class PageName { account, safety, activity, about };

  /// `settings` must outlive the window.
  AppWindow(SettingsFile& settings, const KeychainStore& passwords);

  MainWindow& window() { return window_; }
  AccountModel& account() { return account_; }
  const ActivityModel& activity() const { return activity_; }
  void choose(PageName page) { window_.choose(static_cast<int>(page)); }

 private:
  DialogQuestions questions_;
  DialogFileChoice files_;
  ActivityTexts activityTexts_;
  AccountModel account_;
  SafetyModel safety_;
  ActivityModel activity_;
  AboutModel about_;
  MainWindow window_;  // last, because its pages refer to the models
};

}  // namespace tarnwell

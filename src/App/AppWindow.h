#pragma once

/// The window with all of its pages and what they know, put together.
///
/// Threads: that of the window. Closing the window waits for nothing: a test that runs is given up, and its
/// thread ends by itself.

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

  /// What a person saved shall not be lost by closing the window right after it. Waits, with the window
  /// closed, until it is on the disk and in the keyring: 10 seconds at most.
  void finishSaving();

  MainWindow& window() { return window_; }
  AccountModel& account() { return account_; }
  const ActivityModel& activity() const { return activity_; }
  void choose(PageName page) { window_.choose(static_cast<int>(page)); }

 private:
  SettingsFile& settings_;
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

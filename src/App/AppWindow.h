#pragma once

/// The window with all of its pages and what they know, put together.
///
/// Threads: that of the window. Closing the window waits for nothing: a test that runs is given up, and its
/// thread ends by itself.

#include <chrono>

#include "App/MainWindow.h"
#include "App/Models/AboutModel.h"
#include "App/Models/AccountModel.h"
#include "App/Models/ActivityModel.h"
#include "App/Models/AssistantsModel.h"
#include "App/Models/EndpointModel.h"
#include "App/Models/SafetyModel.h"
#include "App/Models/SettingsFile.h"
#include "App/Models/TryItModel.h"
#include "App/Pages/ActivityTexts.h"
#include "App/Widgets/FileChoice.h"
#include "App/Widgets/Questions.h"

namespace tarnwell {

class AppWindow {
 public:
  /// The pages in the order of their names at the left.
  enum class PageName { account, safety, assistants, tryIt, endpoint, activity, about };

  /// `settings` must outlive the window. The assistants are those of `machine`.
  AppWindow(SettingsFile& settings, const KeychainStore& passwords,
            const Machine& machine = Machine::thisOne());

  /// What a person began shall not be lost by closing the window right after it. Waits, with the window
  /// closed, until what was saved is on the disk and in the keyring, and the call that the endpoint runs has
  /// ended: `longest` at most. However long it takes, waits until what is done for an assistant is done, so
  /// that it never ends between two commands; each of them is given a minute.
  void finishWork(std::chrono::milliseconds longest = std::chrono::seconds(10));

  MainWindow& window() { return window_; }
  AccountModel& account() { return account_; }
  AssistantsModel& assistants() { return assistants_; }
  TryItModel& tryIt() { return tryIt_; }
  EndpointModel& endpoint() { return endpoint_; }
  ActivityModel& activity() { return activity_; }
  void choose(PageName page) { window_.choose(static_cast<int>(page)); }

 private:
  void addPages();
  bool isWorking() const;
  bool mayClose();

  SettingsFile& settings_;
  DialogQuestions questions_;
  DialogFileChoice files_;
  ActivityTexts activityTexts_;
  AccountModel account_;
  SafetyModel safety_;
  AssistantsModel assistants_;
  TryItModel tryIt_;
  EndpointModel endpoint_;
  ActivityModel activity_;
  AboutModel about_;
  MainWindow window_;  // last, because its pages refer to the models
};

}  // namespace tarnwell

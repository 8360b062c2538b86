#pragma once

/// Draws every page of the app into files, in each language and scheme, for the documents.
///
/// Threads: that of the window.

#include <QString>
#include <functional>

#include "App/AppWindow.h"
#include "App/Models/Language.h"

namespace tarnwell {

class PictureBook {
 public:
  PictureBook(AppWindow& app, Language& language, QString directory)
      : app_(app), language_(language), directory_(std::move(directory)) {}

  /// Draws one page four times, into "NAME-LANGUAGE-SCHEME.png". False when a file cannot be written.
  bool draw(AppWindow::PageName page, const QString& name);

 private:
  AppWindow& app_;
  Language& language_;
  QString directory_;
};

}  // namespace tarnwell

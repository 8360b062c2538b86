/// The window of the companion app, put together as the app does it.

#include <QApplication>
#include <cstdlib>

#include "App/AppWindow.h"
#include "App/DesktopScheme.h"
#include "App/Models/Language.h"
#include "App/SingleInstance.h"
#include "App/Widgets/ScrollAreaAccess.h"
#include "FirstFrame.h"

int main(int count, char** words) {
  using namespace tarnwell;
  QApplication application(count, words);
  makeScrollAreasSafeForScreenReaders();
  const SingleInstance instance;
  SettingsFile settings(ConfigStore::shared());
  Language language;
  language.choose(settings.config().language);
  const DesktopScheme desktop;
  applyTheme(application, desktop.scheme());
  AppWindow app(settings, KeychainStore::shared());
  FirstFrame::endAfter(app.window());
  app.window().show();
  std::_Exit(QApplication::exec());
}

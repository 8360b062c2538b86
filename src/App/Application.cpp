#include "App/Application.h"

#include <QApplication>
#include <QIcon>
#include <optional>

#include "App/AppWindow.h"
#include "App/DesktopScheme.h"
#include "App/Models/Language.h"
#include "App/SingleInstance.h"
#include "App/Widgets/ScrollAreaAccess.h"
#include "App/Widgets/Theme.h"
#include "Core/BridgeConstants.h"

namespace tarnwell {

int runApplication(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName("tarnwell-app");
  const QString identifier = QString::fromUtf8(BridgeConstants::bundleIdentifier.data());
  QApplication::setDesktopFileName(identifier);
  makeScrollAreasSafeForScreenReaders();
  QApplication::setWindowIcon(QIcon::fromTheme(identifier));  // the installed one; Wayland takes the entry's

  std::optional<SingleInstance> instance(std::in_place);
  if (!instance->isFirst()) {
    return 0;
  }
  SettingsFile settings(ConfigStore::shared());
  Language language;
  language.choose(settings.config().language);
  QObject::connect(&settings, &SettingsFile::changed, &language,
                   [&] { language.choose(settings.config().language); });
  DesktopScheme desktop;
  applyTheme(application, desktop.scheme());
  QObject::connect(&desktop, &DesktopScheme::changed, &application,
                   [&](Scheme scheme) { applyTheme(application, scheme); });

  AppWindow app(settings, KeychainStore::shared());
  QObject::connect(&*instance, &SingleInstance::startedAgain, &app.window(), &MainWindow::raiseToFront);
  app.window().show();
  const int status = QApplication::exec();
  instance.reset();  // whoever starts the app from now on wants a new window
  app.finishWork();
  return status;
}

}  // namespace tarnwell

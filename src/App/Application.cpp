#include "App/Application.h"

#include <QApplication>
#include <QIcon>
#include <cstdlib>

#include "App/DesktopScheme.h"
#include "App/MainWindow.h"
#include "App/Models/Language.h"
#include "App/Models/SettingsFile.h"
#include "App/SingleInstance.h"
#include "App/Widgets/Theme.h"
#include "Core/BridgeConstants.h"
#include "Platform/PrivateMemory.h"

namespace tarnwell {

int runApplication(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName("tarnwell-app");
  const QString identifier = QString::fromUtf8(BridgeConstants::bundleIdentifier.data());
  QApplication::setDesktopFileName(identifier);
  QApplication::setWindowIcon(QIcon::fromTheme(identifier));  // the installed one; Wayland takes the entry's

  SingleInstance instance;
  if (!instance.isFirst()) {
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

  MainWindow window;
  QObject::connect(&instance, &SingleInstance::startedAgain, &window, &MainWindow::raiseToFront);
  QObject::connect(&window, &MainWindow::activated, &settings, &SettingsFile::reload);
  window.show();
  return QApplication::exec();
}

}  // namespace tarnwell

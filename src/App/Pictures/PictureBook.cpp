#include "App/Pictures/PictureBook.h"

#include <QApplication>
#include <QDir>
#include <QImage>

#include "App/Widgets/Theme.h"

namespace tarnwell {

namespace {

/// Lets what was asked for arrive: new texts, colours and sizes.
void settle() {
  for (int round = 0; round < 5; ++round) {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents();
  }
}

}  // namespace

/// A palette of 256 colours is enough for a page, and a third of the size. Dots of other colours would make
/// it large.
bool PictureBook::draw(AppWindow::PageName page, const QString& name) {
  app_.choose(page);
  for (const AppLanguage language : AppLanguages::allCases) {
    language_.choose(language);
    for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
      applyTheme(*qApp, scheme);
      settle();
      const std::string_view code = rawValue(language);
      const QString file =
          name + QLatin1Char('-') + QString::fromUtf8(code.data(), static_cast<qsizetype>(code.size())) +
          (scheme == Scheme::light ? QLatin1String("-light.png") : QLatin1String("-dark.png"));
      const QImage picture = app_.window().grab().toImage().convertToFormat(
          QImage::Format_Indexed8, Qt::ThresholdDither | Qt::AvoidDither);
      if (!picture.save(QDir(directory_).filePath(file))) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace tarnwell

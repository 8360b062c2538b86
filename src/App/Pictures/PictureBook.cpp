#include "App/Pictures/PictureBook.h"

#include <QApplication>
#include <QDir>
#include <QHash>
#include <QImage>
#include <algorithm>
#include <functional>

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

/// With the 128 colours that it has most of: enough for a page, and a quarter of the size.
QImage withFewColours(const QImage& picture) {
  QHash<QRgb, int> counts;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      ++counts[picture.pixel(x, y)];
    }
  }
  QList<QRgb> colours = counts.keys();
  std::ranges::sort(colours, std::greater(), [&](QRgb colour) { return counts[colour]; });
  colours.resize(std::min<qsizetype>(colours.size(), 128));
  return picture.convertToFormat(QImage::Format_Indexed8, colours, Qt::ThresholdDither | Qt::AvoidDither);
}

}  // namespace

bool PictureBook::draw(AppWindow::PageName page, const QString& name) {
  app_.choose(page);
  QDir().mkpath(directory_);
  for (const AppLanguage language : AppLanguages::allCases) {
    language_.choose(language);
    for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
      applyTheme(*qApp, scheme);
      settle();
      const std::string_view code = rawValue(language);
      const QString file =
          name + QLatin1Char('-') + QString::fromUtf8(code.data(), static_cast<qsizetype>(code.size())) +
          (scheme == Scheme::light ? QLatin1String("-light.png") : QLatin1String("-dark.png"));
      const QImage picture =
          withFewColours(app_.window().grab().toImage().convertToFormat(QImage::Format_RGB32));
      if (!picture.save(QDir(directory_).filePath(file))) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace tarnwell

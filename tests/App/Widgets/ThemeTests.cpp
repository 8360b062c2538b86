#include "App/Widgets/Theme.h"

#include <gtest/gtest.h>

#include <QEvent>
#include <algorithm>
#include <cmath>

#include "support/RowName.h"

namespace tarnwell::test {
namespace {

/// Relative luminance and contrast (WCAG 2.2).
double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& first, const QColor& second) {
  const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
  return (lighter + 0.05) / (darker + 0.05);
}

constexpr double enough = 4.5;

class EachScheme : public testing::TestWithParam<Scheme> {};

TEST_P(EachScheme, textsHaveEnoughContrastOnEveryGround) {
  const QPalette palette = paletteOf(GetParam());
  for (const QPalette::ColorRole ground : {QPalette::Window, QPalette::Base, QPalette::AlternateBase}) {
    for (const Tone tone :
         {Tone::text, Tone::faint, Tone::accent, Tone::success, Tone::warning, Tone::error}) {
      EXPECT_GE(contrast(toneColour(tone, palette), palette.color(ground)), enough)
          << "tone " << static_cast<int>(tone) << " on role " << ground;
    }
    for (const QPalette::ColorRole text : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                           QPalette::PlaceholderText, QPalette::Link}) {
      for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        EXPECT_GE(contrast(palette.color(group, text), palette.color(ground)), enough)
            << "role " << text << " on role " << ground;
      }
    }
  }
  EXPECT_GE(contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)), enough);
  EXPECT_GE(contrast(palette.color(QPalette::ToolTipText), palette.color(QPalette::ToolTipBase)), enough);
}

TEST_P(EachScheme, everyColourOfTheStyleSheetIsFilledIn) {
  EXPECT_FALSE(styleSheetOf(GetParam()).contains(QLatin1Char('@')));
}

INSTANTIATE_TEST_SUITE_P(Both, EachScheme, testing::Values(Scheme::light, Scheme::dark),
                         [](const auto& row) { return row.param == Scheme::light ? "light" : "dark"; });

TEST(ToneLabel, keepsItsToneWhenTheSchemeChangesLive) {
  applyTheme(*qApp, Scheme::light);
  QWidget parent;
  ToneLabel label(Tone::error, &parent);
  parent.show();
  for (const Scheme scheme : {Scheme::dark, Scheme::light, Scheme::dark}) {
    applyTheme(*qApp, scheme);
    QCoreApplication::processEvents();
    EXPECT_EQ(label.palette().color(QPalette::WindowText), toneColour(Tone::error, paletteOf(scheme)));
    EXPECT_EQ(label.palette().color(QPalette::Link), paletteOf(scheme).color(QPalette::Link));
  }
}

bool hasPixel(const QImage& picture, const QColor& colour) {
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.pixelColor(x, y) == colour) {
        return true;
      }
    }
  }
  return false;
}

TEST(ToneLabel, linksTakeTheColourOfTheNewScheme) {
  applyTheme(*qApp, Scheme::light);
  QWidget parent;
  ToneLabel label(Tone::faint, &parent);
  label.setText("<a href=\"https://example.org\">IIIIIIII</a>");
  parent.show();
  for (const Scheme scheme : {Scheme::dark, Scheme::light}) {
    applyTheme(*qApp, scheme);
    QCoreApplication::processEvents();
    label.resize(label.sizeHint());
    EXPECT_TRUE(hasPixel(label.grab().toImage(), paletteOf(scheme).color(QPalette::Link)));
  }
}

}  // namespace
}  // namespace tarnwell::test

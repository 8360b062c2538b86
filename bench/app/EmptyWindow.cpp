/// An empty window of Qt: what every program of this kind costs. With the argument "word" it shows one word,
/// for which Qt must find and load a font.

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <cstdlib>

#include "FirstFrame.h"

int main(int count, char** words) {
  const QApplication application(count, words);
  QMainWindow window;
  window.resize(940, 700);
  if (QApplication::arguments().contains(QStringLiteral("word"))) {
    window.setCentralWidget(new QLabel(QStringLiteral("Tarnwell")));
  }
  FirstFrame::endAfter(window);
  window.show();
  std::_Exit(QApplication::exec());
}

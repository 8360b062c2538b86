#pragma once

/// The lines that a change adds to a text and takes from it, with some around them.
///
/// A sign before each line tells them apart as well as its colour does: "+" for added, "−" for removed.

#include <QString>
#include <vector>

#include "App/Widgets/CodeText.h"

namespace tarnwell {

class DifferenceView : public CodeText {
  Q_OBJECT

 public:
  struct Line {
    enum class Kind {
      same,
      removed,
      added,
      /// Words in place of lines that stay as they are.
      remark
    };
    Kind kind;
    QString text;

    bool operator==(const Line&) const = default;
  };

  explicit DifferenceView(QWidget* parent = nullptr);

  /// The same lines again leave cursor and selection where they are.
  void setLines(std::vector<Line> lines);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void colour();

  std::vector<Line> lines_;
};

}  // namespace tarnwell

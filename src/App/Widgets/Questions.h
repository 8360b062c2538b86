#pragma once

/// Asks the person something that has two answers.
///
///     questions.ask(this, {.title = ..., .text = ..., .yes = tr("Remove"), .no = tr("Keep")},
///                   [this](bool yes) { if (yes) { model_.remove(); } });
///
/// An interface, so that a test can answer.
///
/// Threads: that of the window. Never waits: the answer comes later, or never when the window goes away.

#include <QString>
#include <QWidget>
#include <functional>

namespace tarnwell {

struct Question {
  QString title{};
  /// One or two sentences of plain text.
  QString text{};
  /// What the buttons do, as verbs.
  QString yes{};
  QString no{};
  /// The answer "yes" cannot be taken back, or makes something less safe. "No" is then the default.
  bool isDangerous = true;
};

class Questions {
 public:
  virtual ~Questions() = default;
  virtual void ask(QWidget* parent, const Question& question, std::function<void(bool yes)> answered) = 0;
};

/// Asks in a dialog of the window.
class DialogQuestions : public Questions {
 public:
  void ask(QWidget* parent, const Question& question, std::function<void(bool yes)> answered) override;
};

}  // namespace tarnwell

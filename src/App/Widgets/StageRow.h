#pragma once

/// The stages of something that takes a while, one below the other, as they happen.

#include <QStringList>
#include <QWidget>
#include <vector>

#include "App/Widgets/Theme.h"

namespace tarnwell {

class StageRow : public QWidget {
  Q_OBJECT

 public:
  enum class State { waiting, running, done, failed };

  explicit StageRow(QWidget* parent = nullptr);

  /// Names the stages. Those that were there keep their state.
  void setStages(const QStringList& names);
  void setState(int stage, State state);
  void setAll(State state);
  State state(int stage) const { return stages_.at(static_cast<std::size_t>(stage)).state; }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  struct Stage {
    QString name;
    State state = State::waiting;
    ToneLabel* mark = nullptr;
    ToneLabel* text = nullptr;
  };
  void showStage(const Stage& stage);

  std::vector<Stage> stages_;
};

}  // namespace tarnwell

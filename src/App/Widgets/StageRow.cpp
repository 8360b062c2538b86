#include "App/Widgets/StageRow.h"

#include <QEvent>
#include <QGridLayout>

namespace tarnwell {

StageRow::StageRow(QWidget* parent) : QWidget(parent) {
  auto* const grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(10);
  grid->setVerticalSpacing(4);
  grid->setColumnStretch(1, 1);
}

void StageRow::setStages(const QStringList& names) {
  auto* const grid = static_cast<QGridLayout*>(layout());
  stages_.resize(static_cast<std::size_t>(names.size()));
  for (int row = 0; row < names.size(); ++row) {
    Stage& stage = stages_[static_cast<std::size_t>(row)];
    stage.name = names[row];
    if (stage.mark == nullptr) {
      stage.mark = new ToneLabel(Tone::faint, this);
      stage.text = new ToneLabel(Tone::faint, this);
      grid->addWidget(stage.mark, row, 0);
      grid->addWidget(stage.text, row, 1);
    }
    showStage(stage);
  }
}

void StageRow::setState(int stage, State state) {
  Stage& changed = stages_.at(static_cast<std::size_t>(stage));
  changed.state = state;
  showStage(changed);
}

void StageRow::setAll(State state) {
  for (std::size_t stage = 0; stage < stages_.size(); ++stage) {
    setState(static_cast<int>(stage), state);
  }
}

void StageRow::showStage(const Stage& stage) {
  struct Look {
    Tone tone;
    QString mark;
    QString spoken;
  };
  const auto look = [&]() -> Look {
    switch (stage.state) {
      case State::waiting:
        return {Tone::faint, QStringLiteral("\u25cb"), tr("%1: not yet")};
      case State::running:
        return {Tone::accent, QStringLiteral("\u25cf"), tr("%1: under way")};
      case State::done:
        return {Tone::success, QStringLiteral("\u2713"), tr("%1: done")};
      case State::failed:
        return {Tone::error, QStringLiteral("\u2715"), tr("%1: failed")};
    }
    return {};
  }();
  stage.mark->setText(look.mark);
  stage.mark->setTone(look.tone);
  stage.text->setText(stage.name);
  stage.text->setTone(look.tone);
  stage.text->setAccessibleName(look.spoken.arg(stage.name));
}

void StageRow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    for (const Stage& stage : stages_) {
      showStage(stage);
    }
  }
}

}  // namespace tarnwell

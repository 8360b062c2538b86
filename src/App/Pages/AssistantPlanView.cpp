#include "App/Pages/AssistantPlanView.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QVBoxLayout>

#include "App/Pages/AssistantsTexts.h"

namespace tarnwell {

namespace {

QString numbered(const QStringList& steps) {
  QStringList lines;
  for (const QString& step : steps) {
    lines += QLocale().toString(lines.size() + 1) + QLatin1String(". ") + step;
  }
  return lines.join(QLatin1Char('\n'));
}

void showText(QLabel* label, const QString& text) {
  label->setText(text);
  label->setVisible(!text.isEmpty());
}

}  // namespace

AssistantPlanView::AssistantPlanView(QWidget* parent)
    : QWidget(parent),
      lead_(new ToneLabel(Tone::text, this)),
      path_(new ToneLabel(Tone::faint, this)),
      steps_(new ToneLabel(Tone::text, this)),
      commands_(new CodeText(this)),
      difference_(new DifferenceView(this)),
      block_(new CopyBlock(this)),
      caution_(new ToneLabel(Tone::faint, this)),
      confirm_(new QPushButton(this)),
      dismiss_(new QPushButton(this)) {
  for (QLabel* const label : {lead_, path_, steps_, caution_}) {
    label->setTextFormat(Qt::PlainText);
  }
  path_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  makePrimary(confirm_);
  confirm_->setAutoDefault(true);  // Enter presses it too
  dismiss_->setAutoDefault(true);

  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 2, 0, 0);
  rows->setSpacing(8);
  rows->addWidget(lead_);
  rows->addWidget(path_);
  rows->addWidget(commands_);
  rows->addWidget(difference_);
  rows->addWidget(block_);
  rows->addWidget(steps_);
  rows->addWidget(caution_);
  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(confirm_);
  buttons->addWidget(dismiss_);
  buttons->addStretch(1);
  rows->addLayout(buttons);

  connect(confirm_, &QPushButton::clicked, this, &AssistantPlanView::confirmed);
  connect(dismiss_, &QPushButton::clicked, this, &AssistantPlanView::dismissed);
}

void AssistantPlanView::showPlan(const AssistantState& assistant, const AssistantProgress& progress) {
  const ConnectionPlan& plan = *progress.plan;
  const QString label = AssistantsTexts::label(assistant, plan);
  lead_->setText(AssistantsTexts::lead(assistant, plan));
  showText(path_, plan.change ? AssistantsTexts::path(plan.change->path) : QString());
  commands_->setVisible(plan.way == ConnectingWay::ownCommand);
  difference_->setVisible(plan.way == ConnectingWay::file);
  block_->setVisible(plan.way == ConnectingWay::block);
  if (const QString commands = AssistantsTexts::commands(plan); commands != commands_->toPlainText()) {
    commands_->setPlainText(commands);
  }
  difference_->setLines(AssistantsTexts::lines(progress.difference));
  block_->setText(AssistantsTexts::block(plan), [text = plan.block] { return QString::fromStdString(text); });
  commands_->setAccessibleName(label);
  difference_->setAccessibleName(label);
  block_->setAccessibleLabel(label);
  showText(steps_, numbered(AssistantsTexts::steps(assistant, plan)));
  showText(caution_, AssistantsTexts::caution(plan));
  confirm_->setText(AssistantsTexts::confirm(progress));
  confirm_->setVisible(plan.way != ConnectingWay::block);
  dismiss_->setText(AssistantsTexts::dismiss(plan));
}

QWidget* AssistantPlanView::first() const {
  for (QWidget* const part : std::initializer_list<QWidget*>{commands_, difference_}) {
    if (part->isVisibleTo(this)) {
      return part;
    }
  }
  return block_->copyButton();
}

void AssistantPlanView::setTabOrderAfter(QWidget* before) {
  for (QWidget* const next : std::initializer_list<QWidget*>{commands_, difference_, block_->code(),
                                                             block_->copyButton(), confirm_, dismiss_}) {
    setTabOrder(before, next);
    before = next;
  }
}

}  // namespace tarnwell

#include "App/Pages/AssistantListRow.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "App/Pages/AssistantsTexts.h"

namespace tarnwell {

namespace {

using Connection = AssistantState::Connection;
using Step = AssistantProgress::Step;

Tone toneOf(const AssistantState& assistant) {
  switch (assistant.connection) {
    case Connection::none:
      break;
    case Connection::here:
      return assistant.isSwitchedOff ? Tone::warning : Tone::success;
    case Connection::elsewhere:
    case Connection::unknown:
      return Tone::warning;
  }
  return Tone::faint;
}

/// Tells the states apart as well as their colour does.
QString markOf(const AssistantState& assistant) {
  switch (toneOf(assistant)) {
    case Tone::success:
      return QStringLiteral("\u2713");
    case Tone::warning:
      return QStringLiteral("!");
    default:
      return QStringLiteral("\u25cb");
  }
}

Notice::Kind noticeKind(const AssistantState& assistant, AssistantNews::Kind kind) {
  using Kind = AssistantNews::Kind;
  switch (kind) {
    case Kind::connected:
      return assistant.isSwitchedOff ? Notice::Kind::warning : Notice::Kind::success;
    case Kind::disconnected:
    case Kind::undone:
      return Notice::Kind::success;
    case Kind::alreadyConnected:
    case Kind::alreadyDisconnected:
      return Notice::Kind::information;
    case Kind::newPlan:
    case Kind::assistantRuns:
    case Kind::changedSince:
      return Notice::Kind::warning;
    default:
      return Notice::Kind::error;
  }
}

/// Many rows have the same buttons.
QString spoken(const AssistantState& assistant, const QString& button) {
  return QStringLiteral("%1: %2").arg(AssistantsTexts::name(assistant), button);
}

bool isOpen(const AssistantProgress& progress) {
  return progress.step == Step::planned || progress.step == Step::carryingOut;
}

}  // namespace

AssistantListRow::AssistantListRow(QWidget* parent)
    : QWidget(parent),
      name_(new ToneLabel(Tone::text, this)),
      mark_(new ToneLabel(Tone::faint, this)),
      state_(new ToneLabel(Tone::faint, this)),
      action_(new QPushButton(this)),
      disconnect_(new QPushButton(this)),
      trouble_(new Notice(this)),
      news_(new Notice(this)) {
  QFont bold = name_->font();
  bold.setBold(true);
  name_->setFont(bold);
  mark_->setWordWrap(false);
  mark_->setMinimumWidth(mark_->fontMetrics().horizontalAdvance(QStringLiteral("\u25cb")));
  QSizePolicy place = action_->sizePolicy();
  place.setRetainSizeWhenHidden(true);
  action_->setSizePolicy(place);
  for (QLabel* const label : {name_, mark_, state_}) {
    label->setTextFormat(Qt::PlainText);
  }
  makeQuiet(disconnect_);
  for (QPushButton* const button : {action_, disconnect_, news_->action()}) {
    button->setAutoDefault(true);  // Enter presses it too
  }

  auto* const line = new QHBoxLayout;
  line->setSpacing(8);
  line->addWidget(mark_, 0, Qt::AlignTop);
  line->addWidget(state_, 1);
  auto* const texts = new QVBoxLayout;
  texts->setSpacing(4);
  texts->addWidget(name_);
  texts->addLayout(line);
  texts->addStretch();
  auto* const buttons = new QVBoxLayout;
  buttons->setSpacing(4);
  buttons->addWidget(action_);
  buttons->addWidget(disconnect_);
  auto* const top = new QHBoxLayout;
  top->setSpacing(16);
  top->addLayout(texts, 1);
  top->addLayout(buttons);
  top->setAlignment(buttons, Qt::AlignTop);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(10);
  rows->addLayout(top);
  rows->addWidget(trouble_);
  rows->addWidget(news_);

  connect(action_, &QPushButton::clicked, this, &AssistantListRow::acted);
  connect(disconnect_, &QPushButton::clicked, this, &AssistantListRow::disconnectWanted);
  connect(news_, &Notice::acted, this, &AssistantListRow::offerTaken);
}

/// The focus goes where the person goes on: into the plan, and back to its button when the plan is gone.
void AssistantListRow::showAssistant(const AssistantState& assistant, const AssistantProgress& progress) {
  const QWidget* const focus = QApplication::focusWidget();
  const bool hadFocus = focus && isAncestorOf(focus);
  const bool wasShown = plan_ && plan_->isVisibleTo(this);
  const bool isShown = isOpen(progress);
  showState(assistant);
  if (!isShown) {
    const bool isOffered = AssistantsModel::offersDisconnect(assistant);
    const bool isLost = focus == disconnect_ && !isOffered;
    action_->show();
    disconnect_->setVisible(isOffered);
    if (hadFocus && (wasShown || isLost)) {
      const bool isBack = isOffered && progress.goal == ConnectionPlan::Goal::disconnect;
      (isBack ? disconnect_ : action_)->setFocus();
    }
  }
  showNews(assistant, progress);
  showPlan(assistant, progress);
  if (isShown) {
    if (hadFocus && !wasShown) {
      plan_->first()->setFocus();
    }
    action_->hide();
    disconnect_->hide();
  }
}

void AssistantListRow::showState(const AssistantState& assistant) {
  const QString state = AssistantsTexts::state(assistant);
  const QString action = AssistantsTexts::action(AssistantsModel::action(assistant));
  name_->setText(AssistantsTexts::name(assistant));
  mark_->setText(markOf(assistant));
  mark_->setTone(toneOf(assistant));
  state_->setText(state);
  action_->setText(action);
  action_->setAccessibleName(spoken(assistant, action));
  action_->setAccessibleDescription(state);
  const QString removal = AssistantsTexts::action(AssistantsModel::Action::disconnect);
  disconnect_->setText(removal);
  disconnect_->setAccessibleName(spoken(assistant, removal));
  disconnect_->setAccessibleDescription(state);
  if (assistant.connection == Connection::unknown) {
    trouble_->tell(Notice::Kind::warning, AssistantsTexts::remedy(assistant),
                   newsOf(assistant.problem).details);
  } else {
    trouble_->fallSilent();
  }
}

void AssistantListRow::showNews(const AssistantState& assistant, const AssistantProgress& progress) {
  const AssistantNews& news = progress.news;
  const bool isAboutPlan = news.kind == AssistantNews::Kind::newPlan;
  const QString text =
      isOpen(progress) && !isAboutPlan ? QString() : AssistantsTexts::news(assistant, progress);
  const QString offer = AssistantsTexts::offer(progress);
  if (news_->action()->hasFocus() && (text.isEmpty() || offer.isEmpty())) {
    action_->setFocus();
  }
  if (text.isEmpty()) {
    news_->fallSilent();
    return;
  }
  const bool isNew = text != news_->text() || !news_->isVisibleTo(this);
  news_->tell(noticeKind(assistant, news.kind), text, news.details);
  news_->setAction(offer);
  news_->action()->setAccessibleName(spoken(assistant, offer));
  if (isNew) {
    Q_EMIT grew();
  }
}

/// Most rows never have a plan, so the view of one is made when it is needed.
void AssistantListRow::showPlan(const AssistantState& assistant, const AssistantProgress& progress) {
  if (!isOpen(progress)) {
    if (plan_) {
      plan_->hide();
    }
    return;
  }
  if (!plan_) {
    plan_ = new AssistantPlanView(this);
    layout()->addWidget(plan_);
    plan_->setTabOrderAfter(news_->action());
    connect(plan_, &AssistantPlanView::confirmed, this, &AssistantListRow::confirmed);
    connect(plan_, &AssistantPlanView::dismissed, this, &AssistantListRow::dismissed);
  }
  const bool isNew = !plan_->isVisibleTo(this);
  plan_->showPlan(assistant, progress);
  plan_->show();
  if (isNew) {
    Q_EMIT grew();
  }
}

}  // namespace tarnwell

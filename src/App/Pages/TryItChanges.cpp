#include "App/Pages/TryItChanges.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "App/Pages/TryItTexts.h"

namespace tarnwell {

namespace {

Notice::Kind kindOf(TriedOutcome::Kind kind) {
  switch (kind) {
    case TriedOutcome::Kind::allowed:
      return Notice::Kind::success;
    case TriedOutcome::Kind::refusedAsReadOnly:
    case TriedOutcome::Kind::refusedAsDisabled:
      return Notice::Kind::warning;
    case TriedOutcome::Kind::failed:
      break;
  }
  return Notice::Kind::error;
}

}  // namespace

TryItChanges::TryItChanges(TryItModel& tryIt, QWidget* parent)
    : QWidget(parent),
      tryIt_(tryIt),
      opener_(new QPushButton(this)),
      choices_(new QWidget(this)),
      promise_(new ToneLabel(Tone::faint)),
      folders_(new ChoiceBox),
      move_(new QPushButton),
      trash_(new QPushButton),
      markRead_(new QPushButton),
      outcome_(new Notice) {
  opener_->setCheckable(true);
  folders_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  folders_->setMinimumContentsLength(12);

  auto* const moving = new QHBoxLayout;
  moving->setSpacing(8);
  moving->addWidget(folders_, 1);
  moving->addWidget(move_);
  auto* const others = new QHBoxLayout;
  others->setSpacing(8);
  others->addWidget(trash_);
  others->addWidget(markRead_);
  others->addStretch(1);
  auto* const rows = new QVBoxLayout(choices_);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(10);
  rows->addWidget(promise_);
  rows->addLayout(moving);
  rows->addLayout(others);
  rows->addWidget(outcome_);
  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->setSpacing(10);
  all->addWidget(opener_, 0, Qt::AlignLeft);
  all->addWidget(choices_);

  connect(opener_, &QPushButton::toggled, this, &TryItChanges::unfold);
  connect(move_, &QPushButton::clicked, this,
          [this] { tryIt_.tryChange(TriedChange::move, folders_->currentData().toString()); });
  connect(trash_, &QPushButton::clicked, this, [this] { tryIt_.tryChange(TriedChange::trash); });
  connect(markRead_, &QPushButton::clicked, this, [this] { tryIt_.tryChange(TriedChange::markRead); });
  connect(&tryIt_, &TryItModel::foldersChanged, this, &TryItChanges::showFolders);
  connect(&tryIt_, &TryItModel::messageChanged, this, &TryItChanges::showOutcome);
  unfold(false);
}

void TryItChanges::unfold(bool isOpen) {
  choices_->setVisible(isOpen);
  if (isOpen) {
    tryIt_.loadFolders();
    showFolders();
    showOutcome();
  }
}

void TryItChanges::startAnew() {
  opener_->setChecked(false);
  outcome_->fallSilent();
}

void TryItChanges::showFolders() {
  const QString before = folders_->currentData().toString();
  folders_->clear();
  for (const TriedFolder& folder : tryIt_.folders()) {
    folders_->addItem(folder.name, folder.path);
  }
  if (folders_->count() == 0) {
    folders_->addItem(tryIt_.isListing()        ? tr("Reading the folders…")
                      : tryIt_.foldersFailure() ? tr("The folders could not be read")
                                                : tr("There is no other folder."));
  }
  folders_->setCurrentIndex(std::max(folders_->findData(before), 0));
  const bool areThere = !tryIt_.folders().empty();
  folders_->setEnabled(areThere);
  move_->setEnabled(areThere);
}

void TryItChanges::showOutcome() {
  if (const std::optional<TriedOutcome>& outcome = tryIt_.outcome()) {
    outcome_->tell(kindOf(outcome->kind),
                   TryItTexts::outcome(*outcome) + QLatin1Char('\n') + TryItTexts::quoted(outcome->told));
  } else if (tryIt_.isTrying()) {
    outcome_->tell(Notice::Kind::information, tr("Asking…"));
  } else {
    outcome_->fallSilent();
  }
}

void TryItChanges::setTexts() {
  opener_->setText(tr("What would &happen?"));
  opener_->setToolTip(tr("Shows what an assistant could do with this message."));
  opener_->setAccessibleDescription(opener_->toolTip());
  promise_->setText(tr("These only ask. The message stays as it is."));
  folders_->setAccessibleName(tr("Folder"));
  move_->setText(tr("If it were &moved there?"));
  trash_->setText(tr("If it were &trashed?"));
  markRead_->setText(tr("If it were mar&ked as read?"));
  showFolders();
  showOutcome();
}

}  // namespace tarnwell

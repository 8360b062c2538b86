#include "App/Pages/ActivityPage.h"

#include <QClipboard>
#include <QDate>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVariant>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "App/Pages/ActivityTexts.h"

namespace tarnwell {

namespace {

constexpr int linesOfAnEntry = 6;

}  // namespace

ActivityPage::ActivityPage(ActivityModel& activity, FileChoice& files, QWidget* parent)
    : Page(parent),
      activity_(activity),
      files_(files),
      accessNotice_(new Notice),
      savedNotice_(new Notice),
      search_(new QLineEdit),
      process_(new ChoiceBox),
      everyLineLabel_(new QLabel),
      everyLine_(new Switch),
      followLabel_(new QLabel),
      follow_(new Switch),
      table_(new ActivityTable(activity)),
      emptyText_(new ToneLabel),
      entry_(new ReadingText(linesOfAnEntry)),
      clear_(new QPushButton),
      copy_(new QPushButton),
      save_(new QPushButton) {
  arrange();
  connectModel();
  setTexts();
}

void ActivityPage::arrange() {
  fillRoom();
  search_->setClearButtonEnabled(true);
  follow_->setChecked(table_->isFollowing());
  everyLine_->setChecked(activity_.detail() == ActivityDetail::everyLine);
  // Room for some letters to search for, whatever the processes are called.
  search_->setMinimumWidth(fontMetrics().averageCharWidth() * 20);
  process_->setMinimumContentsLength(20);

  auto* const tools = new QHBoxLayout;
  tools->addWidget(search_, 1);
  tools->addWidget(process_);
  auto* const view = new QHBoxLayout;
  view->addWidget(everyLine_);
  view->addWidget(everyLineLabel_);
  view->addStretch(1);
  view->addWidget(followLabel_);
  view->addWidget(follow_);
  body()->addWidget(accessNotice_);
  body()->addWidget(savedNotice_);
  body()->addLayout(tools);
  body()->addLayout(view);
  body()->addWidget(table_, 1);
  body()->addWidget(emptyText_);
  body()->addWidget(entry_);
  footer()->addWidget(clear_);
  footer()->addStretch(1);
  footer()->addWidget(copy_);
  footer()->addWidget(save_);
  everyLineLabel_->setBuddy(everyLine_);
  followLabel_->setBuddy(follow_);

  auto* const find = new QShortcut(QKeySequence::Find, this);
  find->setContext(Qt::WidgetWithChildrenShortcut);
  connect(find, &QShortcut::activated, search_, [this] {
    search_->setFocus(Qt::ShortcutFocusReason);
    search_->selectAll();
  });
  connect(search_, &QLineEdit::textChanged, &activity_, &ActivityModel::search);
  connect(process_, &QComboBox::currentIndexChanged, this, &ActivityPage::chooseProcess);
  connect(everyLine_, &QCheckBox::toggled, &activity_, [this](bool isOn) {
    activity_.showDetail(isOn ? ActivityDetail::everyLine : ActivityDetail::calls);
  });
  connect(follow_, &QCheckBox::toggled, table_, &ActivityTable::setFollowing);
  connect(table_, &ActivityTable::followingChanged, follow_, &QCheckBox::setChecked);
  connect(table_, &ActivityTable::copyWanted, this, &ActivityPage::copy);
  connect(clear_, &QPushButton::clicked, &activity_, &ActivityModel::clear);
  connect(copy_, &QPushButton::clicked, this, &ActivityPage::copy);
  connect(save_, &QPushButton::clicked, this, &ActivityPage::save);
}

void ActivityPage::connectModel() {
  connect(&activity_, &ActivityModel::accessChanged, this, &ActivityPage::showAccess);
  connect(&activity_, &ActivityModel::processesChanged, this, &ActivityPage::showProcesses);
  connect(&activity_, &ActivityModel::saved, this, [this](const QString& path) {
    savedFile_ = {path, {}};
    showSaved();
  });
  connect(&activity_, &ActivityModel::notSaved, this, [this](const QString& path, const QString& reason) {
    savedFile_ = {path, reason};
    showSaved();
  });
  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &ActivityPage::showEntry);
  connect(&activity_, &ActivityModel::grown, this, &ActivityPage::showEntry);
  connect(&activity_, &QAbstractItemModel::modelReset, this, &ActivityPage::showEntry);
  connect(&activity_, &QAbstractItemModel::dataChanged, this, &ActivityPage::showEntry);
}

void ActivityPage::showEvent(QShowEvent* event) {
  Page::showEvent(event);
  activity_.follow();
}

QString ActivityPage::name() { return tr("Activity"); }

void ActivityPage::setTexts() {
  setHeading(name(), tr("What this app and the helpers of your assistants did. It holds no mail "
                        "and no password."));
  search_->setPlaceholderText(tr("Search the entries"));
  search_->setAccessibleName(tr("Search"));
  process_->setAccessibleName(tr("Process"));
  process_->setToolTip(tr("Shows only what one process did: this app, or one helper of an assistant."));
  process_->setAccessibleDescription(process_->toolTip());
  everyLineLabel_->setText(tr("&Every line of the log"));
  everyLine_->setAccessibleName(tr("Every line of the log"));
  everyLine_->setToolTip(tr("Shows each line as it was logged, instead of one for each call."));
  everyLine_->setAccessibleDescription(everyLine_->toolTip());
  followLabel_->setText(tr("&Follow"));
  follow_->setAccessibleName(tr("Follow"));
  follow_->setToolTip(tr("Stays at the newest entry."));
  follow_->setAccessibleDescription(follow_->toolTip());
  table_->setAccessibleName(tr("Entries"));
  entry_->setAccessibleName(tr("The chosen entry"));
  clear_->setText(tr("C&lear"));
  clear_->setToolTip(tr("Hides all entries so far. The logs themselves stay as they are."));
  clear_->setAccessibleDescription(clear_->toolTip());
  copy_->setText(tr("&Copy"));
  copy_->setToolTip(tr("Copies the selected entries, or all when none is selected."));
  copy_->setAccessibleDescription(copy_->toolTip());
  save_->setText(tr("&Save to a file…"));
  save_->setToolTip(tr("Saves all entries that are shown."));
  save_->setAccessibleDescription(save_->toolTip());
  table_->fitColumns();
  activity_.retranslate();
  showProcesses();
  showAccess();
  showSaved();
  showEntry();
}

/// Everything and this app stand first, then the others, newest first. What is there stays there, so an open
/// list does not jump.
void ActivityPage::showProcesses() {
  std::vector<std::pair<QVariant, QString>> wanted{
      {QVariant(), tr("Everything")},
      {ActivityProcesses::thisApp, ActivityTexts::process({.kind = ActivityProcess::Kind::thisApp})}};
  std::map<QString, int> uses;
  for (const ActivityProcess& process : activity_.otherProcesses()) {
    ++uses[ActivityTexts::process(process)];
  }
  for (const ActivityProcess& process : activity_.otherProcesses()) {
    const QString name = ActivityTexts::process(process);
    wanted.emplace_back(process.number, uses[name] == 1 ? name : ActivityTexts::exactProcess(process));
  }
  const QSignalBlocker blocker(process_);
  int place = 0;
  for (const auto& [number, name] : wanted) {
    // Whatever stands before it is gone, or has another place now.
    const int before = placeOf(number);
    for (int gone = before - 1; gone >= place; --gone) {
      process_->removeItem(gone);
    }
    if (before < 0) {
      process_->insertItem(place, name, number);
    } else {
      process_->setItemText(place, name);
    }
    ++place;
  }
  while (process_->count() > place) {
    process_->removeItem(place);
  }
  const std::optional<int> shown = activity_.shownProcess();
  process_->setCurrentIndex(placeOf(shown ? QVariant(*shown) : QVariant()));
}

/// Negative when it is not among the choices.
int ActivityPage::placeOf(const QVariant& process) const {
  for (int place = 0; place < process_->count(); ++place) {
    if (process_->itemData(place) == process) {
      return place;
    }
  }
  return -1;
}

void ActivityPage::chooseProcess(int place) {
  const QVariant number = process_->itemData(place);
  activity_.showProcess(number.isValid() ? std::optional(number.toInt()) : std::nullopt);
}

void ActivityPage::showAccess() {
  const LogAccess access = activity_.access().value_or(LogAccess::readable);
  if (access == LogAccess::readable) {
    accessNotice_->fallSilent();
  } else {
    accessNotice_->tell(Notice::Kind::warning, ActivityTexts::missing(access), ActivityTexts::remedy(access));
  }
}

void ActivityPage::showSaved() {
  if (savedFile_.path.isEmpty()) {
    savedNotice_->fallSilent();
  } else if (savedFile_.failure.isEmpty()) {
    savedNotice_->tell(Notice::Kind::success, tr("Saved to %1.").arg(savedFile_.path));
  } else {
    savedNotice_->tell(Notice::Kind::error, tr("The entries could not be saved to %1.").arg(savedFile_.path),
                       savedFile_.failure);
  }
}

void ActivityPage::showEntry() {
  const bool isEmpty = activity_.rowCount() == 0;
  emptyText_->setText(activity_.isSearching()    ? tr("No entry has this text.")
                      : activity_.shownProcess() ? tr("No entry of this process is shown.")
                                                 : tr("No entry is shown."));
  emptyText_->setVisible(isEmpty);
  QString text;
  if (const QModelIndex current = table_->currentIndex(); !isEmpty && current.isValid()) {
    const ActivityEntry& entry = activity_.entry(current.row());
    text = ActivityTexts::isOurs(entry) ? ActivityTexts::sentence(entry) + u'\n' : QString();
    text += entry.original;
  }
  entry_->setText(text);
  entry_->setVisible(!text.isEmpty());
}

void ActivityPage::copy() {
  const std::vector<int> rows = table_->selectedRowNumbers();
  QGuiApplication::clipboard()->setText(rows.empty() ? activity_.allLines() : activity_.lines(rows));
}

void ActivityPage::save() {
  savedFile_ = {};
  showSaved();
  const QString name = "tarnwell-" + QDate::currentDate().toString(Qt::ISODate) + ".txt";
  files_.askWhereToSave(this, tr("Save the entries"), name,
                        [this](const QString& path) { activity_.save(path); });
}

}  // namespace tarnwell

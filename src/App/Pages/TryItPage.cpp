#include "App/Pages/TryItPage.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QHideEvent>
#include <QKeyEvent>
#include <QShortcut>
#include <QVBoxLayout>

#include "App/Pages/TryItTexts.h"
#include "App/Widgets/Card.h"

namespace tarnwell {

namespace {

constexpr int narrowest = 700;  // of a page with list and message side by side

/// Pages in turn, each of which scrolls by itself where it must. So it asks for little room, whatever the
/// texts in them would like to have.
class Turns : public QStackedWidget {
 public:
  bool hasHeightForWidth() const override { return false; }
  QSize sizeHint() const override { return minimumSizeHint(); }
};

enum State { welcome, waiting, results, blank };
enum Pane { nothing, message, calls };

bool isMendedAtTheAccount(TriedFailure::Kind kind) {
  return kind != TriedFailure::Kind::tooSlow && kind != TriedFailure::Kind::other;
}

}  // namespace

TryItPage::TryItPage(TryItModel& tryIt, QWidget* parent)
    : Page(parent),
      tryIt_(tryIt),
      search_(new TryItSearch),
      trouble_(new Notice),
      before_(new Notice),
      states_(new Turns),
      welcomeTitle_(new QLabel),
      welcomeText_(new ToneLabel(Tone::faint)),
      progress_(new ToneLabel),
      cancel_(new QPushButton),
      summary_(new ToneLabel),
      json_(new QPushButton),
      back_(new QPushButton),
      list_(new TryItList(tryIt)),
      panes_(new QStackedWidget),
      hint_(new ToneLabel(Tone::faint)),
      message_(new TryItMessage(tryIt)),
      calls_(new TryItCalls(tryIt)) {
  arrange();
  connectParts();
  setTexts();
}

void TryItPage::arrange() {
  fillRoom();
  states_->addWidget(makeWelcome());
  states_->addWidget(makeWaiting());
  states_->addWidget(makeResults());
  states_->addWidget(new QWidget);
  body()->addWidget(search_);
  body()->addWidget(trouble_);
  body()->addWidget(before_);
  body()->addWidget(states_, 1);
}

QWidget* TryItPage::makeWelcome() {
  QFont large = welcomeTitle_->font();
  large.setBold(true);
  large.setPointSizeF(large.pointSizeF() * 1.2);
  welcomeTitle_->setFont(large);
  for (QLabel* const label : {welcomeTitle_, static_cast<QLabel*>(welcomeText_)}) {
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
  }
  auto* const page = new QWidget;
  auto* const rows = new QVBoxLayout(page);
  rows->setContentsMargins(48, 0, 48, 0);
  rows->setSpacing(12);
  rows->addStretch(2);
  rows->addWidget(new MarkLabel(Mark::shield, Tone::accent, 56), 0, Qt::AlignHCenter);
  rows->addWidget(welcomeTitle_);
  rows->addWidget(welcomeText_);
  rows->addStretch(3);
  return page;
}

QWidget* TryItPage::makeWaiting() {
  progress_->setAlignment(Qt::AlignHCenter);
  auto* const page = new QWidget;
  auto* const rows = new QVBoxLayout(page);
  rows->setSpacing(14);
  rows->addStretch(2);
  rows->addWidget(progress_);
  rows->addWidget(cancel_, 0, Qt::AlignHCenter);
  rows->addStretch(3);
  return page;
}

QWidget* TryItPage::makeResults() {
  QFont bold = summary_->font();
  bold.setBold(true);
  summary_->setFont(bold);
  json_->setCheckable(true);
  hint_->setAlignment(Qt::AlignCenter);
  hint_->setMargin(32);

  auto* const card = new Card;
  card->rows()->addWidget(calls_);
  auto* const scrolled = new QScrollArea;
  scrolled->setWidget(card);
  scrolled->setWidgetResizable(true);
  scrolled->setFocusPolicy(Qt::NoFocus);
  panes_->addWidget(hint_);
  panes_->addWidget(message_);
  panes_->addWidget(scrolled);

  auto* const page = new QWidget;
  auto* const top = new QHBoxLayout;
  top->setSpacing(10);
  top->addWidget(back_, 0, Qt::AlignLeft);
  top->addWidget(summary_, 1);
  top->addWidget(json_, 0, Qt::AlignRight);
  auto* const columns = new QHBoxLayout;
  columns->setSpacing(14);
  columns->addWidget(list_, 6);
  columns->addWidget(panes_, 7);
  auto* const rows = new QVBoxLayout(page);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(10);
  rows->addLayout(top);
  rows->addLayout(columns, 1);
  return page;
}

void TryItPage::connectParts() {
  auto* const find = new QShortcut(QKeySequence::Find, this);
  find->setContext(Qt::WidgetWithChildrenShortcut);
  connect(find, &QShortcut::activated, search_, &TryItSearch::focusWords);
  connect(search_, &TryItSearch::wanted, this, [this] { tryIt_.search(search_->query()); });
  connect(cancel_, &QPushButton::clicked, &tryIt_, &TryItModel::cancelSearch);
  connect(trouble_, &Notice::acted, this, &TryItPage::accountWanted);
  connect(before_, &Notice::acted, &tryIt_, &TryItModel::searchAgain);
  connect(json_, &QPushButton::toggled, this, &TryItPage::showPanes);
  connect(back_, &QPushButton::clicked, this, &TryItPage::goBack);
  connect(list_, &TryItList::currentMoved, this, [this](int row) {
    if (isWide() && row >= 0) {
      tryIt_.choose(static_cast<std::size_t>(row));
    }
  });
  connect(list_, &QListView::activated, this, [this](const QModelIndex& index) { open(index.row()); });
  connect(list_, &QListView::clicked, this, [this](const QModelIndex& index) { open(index.row()); });
  connect(&tryIt_, &TryItModel::searchChanged, this, &TryItPage::takeMessages);
  connect(&tryIt_, &TryItModel::aged, this, &TryItPage::showAge);
  connect(&tryIt_, &TryItModel::progressed, this, &TryItPage::showProgress);
  connect(&tryIt_, &TryItModel::chosenChanged, this, &TryItPage::showPanes);
}

/// Who waited at the button goes on in the list. Screen readers announce what was found.
void TryItPage::takeMessages() {
  const bool hadFocus = cancel_->hasFocus();
  list_->showMessages();
  showSearch();
  if (tryIt_.state() != TryItModel::State::found) {
    return;
  }
  if (hadFocus && !tryIt_.messages().empty()) {
    list_->setFocus(Qt::OtherFocusReason);
  }
  QAccessibleEvent alert(summary_, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void TryItPage::showSearch() {
  using enum TryItModel::State;
  const TryItModel::State state = tryIt_.state();
  states_->setCurrentIndex(state == empty       ? welcome
                           : state == searching ? waiting
                           : state == found     ? results
                                                : blank);
  showAge();
  showProgress();
  showFailure();
  showPanes();
}

void TryItPage::showAge() {
  summary_->setText(TryItTexts::summary(static_cast<int>(tryIt_.messages().size()), tryIt_.withheldCount(),
                                        tryIt_.isFromBefore()));
  if (tryIt_.isFromBefore()) {
    before_->tell(Notice::Kind::information, tr("The settings have changed since this search."));
    before_->setAction(tr("Search a&gain"));
  } else {
    before_->fallSilent();
  }
}

void TryItPage::showProgress() { progress_->setText(TryItTexts::progress(tryIt_.progress())); }

void TryItPage::showFailure() {
  const std::optional<TriedFailure>& failure = tryIt_.failure();
  if (failure) {
    trouble_->tell(Notice::Kind::error,
                   TryItTexts::failure(*failure) + QLatin1Char('\n') + TryItTexts::quoted(failure->told));
    trouble_->setAction(isMendedAtTheAccount(failure->kind) ? tr("Open “&Account”") : QString());
  } else {
    trouble_->fallSilent();
  }
  if (tryIt_.state() == TryItModel::State::cancelled) {
    trouble_->tell(Notice::Kind::information, tr("The search was stopped."));
  }
}

void TryItPage::showPanes() {
  const bool hasMessage = tryIt_.chosen() != nullptr;
  const bool isOpen = hasMessage || json_->isChecked();
  panes_->setCurrentIndex(json_->isChecked() ? calls : hasMessage ? message : nothing);
  const bool hasList = !tryIt_.messages().empty();
  list_->setVisible(hasList && (isWide() || !isOpen));
  panes_->setVisible(isOpen || (isWide() && hasList));
  back_->setVisible(isOpen && !isWide());
  summary_->setVisible(isWide() || !isOpen);
}

void TryItPage::open(int row) {
  tryIt_.choose(static_cast<std::size_t>(row));
  if (!isWide()) {
    back_->setFocus(Qt::OtherFocusReason);
  }
}

void TryItPage::goBack() {
  json_->setChecked(false);
  tryIt_.choose(std::nullopt);
  list_->setFocus(Qt::OtherFocusReason);
}

bool TryItPage::isWide() const { return width() >= narrowest; }

void TryItPage::resizeEvent(QResizeEvent* event) {
  Page::resizeEvent(event);
  showPanes();
}

void TryItPage::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && tryIt_.state() == TryItModel::State::searching) {
    tryIt_.cancelSearch();
  } else if (event->key() == Qt::Key_Escape && back_->isVisible()) {
    goBack();
  } else {
    Page::keyPressEvent(event);
  }
}

/// A window that is only minimized keeps what it shows.
void TryItPage::hideEvent(QHideEvent* event) {
  Page::hideEvent(event);
  if (!event->spontaneous()) {
    json_->setChecked(false);
    search_->forget();
    tryIt_.forget();
  }
}

QString TryItPage::name() { return tr("Try it"); }

void TryItPage::setTexts() {
  setHeading(name(), tr("What an assistant sees of your inbox, by its own tools and with your settings. "
                        "Nothing is changed, and nothing is kept."));
  search_->setTexts();
  welcomeTitle_->setText(tr("See it with the eyes of an assistant"));
  welcomeText_->setText(tr(
      "Search your inbox. For each message you see what an assistant would get, what is withheld, and which "
      "word is the reason. When you leave this page, all of it is forgotten."));
  cancel_->setText(tr("Ca&ncel"));
  json_->setText(tr("The exact &JSON"));
  json_->setToolTip(tr("What an assistant sends, and byte for byte what it receives"));
  json_->setAccessibleDescription(json_->toolTip());
  back_->setText(tr("&Back"));
  list_->setAccessibleName(tr("Messages"));
  hint_->setText(tr("Choose a message to see what an assistant gets of it."));
  list_->retranslate();
  message_->setTexts();
  calls_->setTexts();
  showSearch();
}

}  // namespace tarnwell

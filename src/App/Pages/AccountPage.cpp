#include "App/Pages/AccountPage.h"

#include <QFocusEvent>
#include <QScopedValueRollback>
#include <QShortcut>
#include <utility>

#include "App/Pages/AccountTexts.h"

namespace tarnwell {

namespace {

using Activity = AccountModel::Activity;
using Field = AccountDraft::Field;
using Finding = AccountDraft::Finding;
using Obstacle = AccountModel::Obstacle;

StageRow::State shownState(AccountModel::StageState state) {
  using enum AccountModel::StageState;
  switch (state) {
    case waiting:
      break;
    case running:
      return StageRow::State::running;
    case done:
      return StageRow::State::done;
    case failed:
      return StageRow::State::failed;
  }
  return StageRow::State::waiting;
}

Notice::Kind noticeKind(const AccountNews& news) {
  using Kind = AccountNews::Kind;
  if (news.kind == Kind::testCancelled || news.kind == Kind::removed) {
    return Notice::Kind::information;
  }
  return news.isFailure() ? Notice::Kind::error : Notice::Kind::success;
}

bool isBusyOrFree(Obstacle obstacle) { return obstacle == Obstacle::none || obstacle == Obstacle::busy; }

}  // namespace

AccountPage::AccountPage(AccountModel& account, Questions& questions, QWidget* parent)
    : Page(parent),
      account_(account),
      questions_(questions),
      welcome_(new Card(this)),
      fileNotice_(new Notice(this)),
      keyringNotice_(new Notice(this)),
      fields_(new Card(this)),
      entries_{newEntry(Field::email), newEntry(Field::host), newEntry(Field::port)},
      password_(new PasswordField(fields_)),
      stages_(new StageRow(this)),
      news_(new Notice(this)),
      obstacle_(new ToneLabel(Tone::faint, this)),
      test_(new QPushButton(this)),
      remove_(new QPushButton(this)),
      save_(new QPushButton(this)) {
  build();
  listen();
  setTexts();
}

AccountPage::Entry AccountPage::newEntry(Field field) {
  auto* const input = new QLineEdit;
  return {.field = field, .input = input, .row = new FormField(input, fields_)};
}

void AccountPage::build() {
  for (ToneLabel*& line : welcomeLines_) {
    line = new ToneLabel(Tone::text, welcome_);
    welcome_->rows()->addWidget(line);
  }
  auto& [email, host, port] = entries_;
  email.input->setInputMethodHints(Qt::ImhEmailCharactersOnly | Qt::ImhNoAutoUppercase);
  host.input->setInputMethodHints(Qt::ImhUrlCharactersOnly | Qt::ImhNoAutoUppercase);
  port.input->setInputMethodHints(Qt::ImhDigitsOnly);
  port.row->setMaximumWidth(140);
  obstacle_->setTextFormat(Qt::PlainText);
  makePrimary(save_);
  makeDangerous(remove_);

  auto* const server = new QHBoxLayout;
  server->setSpacing(14);
  server->addWidget(host.row, 1, Qt::AlignTop);
  server->addWidget(port.row, 0, Qt::AlignTop);
  fields_->rows()->addWidget(email.row);
  fields_->rows()->addLayout(server);
  fields_->rows()->addWidget(password_);
  for (QWidget* const part : std::initializer_list<QWidget*>{welcome_, fileNotice_, keyringNotice_, fields_,
                                                             stages_, news_, obstacle_}) {
    body()->addWidget(part);
  }
  footer()->addWidget(test_);
  footer()->addStretch(1);
  footer()->addWidget(remove_);
  footer()->addWidget(save_);
}

void AccountPage::listen() {
  for (Entry& entry : entries_) {
    entry.input->installEventFilter(this);
    connect(entry.input, &QLineEdit::textChanged, this,
            [this, field = entry.field](const QString& text) { type(field, text); });
    connect(entry.input, &QLineEdit::returnPressed, this, &AccountPage::test);
  }
  password_->input()->installEventFilter(this);
  connect(password_, &PasswordField::edited, this,
          [this](bool isEmpty) { account_.setPasswordTyped(!isEmpty); });
  connect(password_->input(), &QLineEdit::returnPressed, this, &AccountPage::test);
  connect(test_, &QPushButton::clicked, this, &AccountPage::testOrCancel);
  connect(save_, &QPushButton::clicked, this, [this] { account_.save(password_->typed()); });
  connect(remove_, &QPushButton::clicked, this, [this] {
    questions_.ask(this, AccountTexts::removal(), [this](bool yes) {
      if (yes) {
        account_.remove();
      }
    });
  });
  connect(keyringNotice_, &Notice::acted, &account_, &AccountModel::unlockKeyring);
  auto* const cancel = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  cancel->setContext(Qt::WidgetWithChildrenShortcut);
  connect(cancel, &QShortcut::activated, &account_, &AccountModel::giveUp);
  connect(&account_, &AccountModel::passwordDone, password_, &PasswordField::forget);
  connect(&account_, &AccountModel::changed, this, &AccountPage::showModel);
}

/// Deliberate: also for a text that did not come from the keyboard. Screen readers and input methods set it.
void AccountPage::type(Field field, const QString& text) {
  if (isShowingModel_) {
    return;
  }
  switch (field) {
    case Field::email:
      account_.setEmail(text);
      break;
    case Field::host:
      account_.setHost(text);
      break;
    case Field::port:
      account_.setPort(text);
      break;
  }
}

bool AccountPage::eventFilter(QObject* watched, QEvent* event) {
  const bool comes = event->type() == QEvent::FocusIn;
  const bool leaves =
      event->type() == QEvent::FocusOut && static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason;
  if (comes || leaves) {
    for (Entry& entry : entries_) {
      entry.wasLeft = entry.wasLeft || (leaves && entry.input == watched);
    }
    account_.setEditing(comes);
  }
  return Page::eventFilter(watched, event);
}

void AccountPage::showEvent(QShowEvent* event) {
  Page::showEvent(event);
  account_.refreshKeyring();
  if (!account_.isConfigured() && !std::exchange(wasShown_, true)) {
    entries_.front().input->setFocus();
  }
}

void AccountPage::testOrCancel() {
  if (account_.activity() == Activity::testing) {
    account_.cancelTest();
  } else {
    test();
  }
}

void AccountPage::test() { account_.test(password_->typed()); }

void AccountPage::showModel() {
  leaveButtons();
  const QScopedValueRollback isShowing(isShowingModel_, true);
  const bool isConfigured = account_.isConfigured();
  const Provider* const provider = account_.draft().provider();
  welcome_->setVisible(!isConfigured);
  for (Entry& entry : entries_) {
    showEntry(entry);
  }
  entries_[0].row->setHint(AccountTexts::emailHint(account_.draft()).toHtmlEscaped());
  entries_[1].row->setHint(AccountTexts::hostHint(account_.draft()).toHtmlEscaped());
  password_->setLabel(AccountTexts::passwordLabel(provider));
  password_->setHint(AccountTexts::passwordHint(provider));
  password_->input()->setPlaceholderText(isConfigured ? tr("Stored in the keyring. Type to replace it.")
                                                      : QString());
  showNotices();
  showNews();
  showButtons();
}

void AccountPage::showEntry(Entry& entry) {
  const AccountDraft& draft = account_.draft();
  if (const QString text = draft.text(entry.field); text != entry.input->text()) {
    entry.input->setText(text);
  }
  const Finding finding = draft.finding(entry.field);
  if (!AccountDraft::isObstacle(finding)) {
    entry.wasLeft = false;
  }
  const bool isShown = entry.wasLeft || finding == Finding::takesNoPassword;
  const QString error = isShown ? AccountTexts::finding(finding, draft.provider()) : QString();
  if (error != entry.row->error()) {
    entry.row->setError(error);
  }
}

void AccountPage::showNotices() {
  const SettingsFile& settings = account_.settings();
  if (const QString text = AccountTexts::file(settings); text.isEmpty()) {
    fileNotice_->fallSilent();
  } else {
    fileNotice_->tell(Notice::Kind::warning, text, settings.reason());
  }
  const KeyringState keyring = account_.keyring().value_or(KeyringState::ready);
  if (const QString text = AccountTexts::keyring(keyring); text.isEmpty()) {
    keyringNotice_->fallSilent();
  } else {
    keyringNotice_->tell(Notice::Kind::warning, text);
    keyringNotice_->setAction(AccountTexts::keyringAction(keyring));
  }
}

void AccountPage::showNews() {
  const auto& stages = account_.stages();
  stages_->setVisible(stages.has_value());
  for (std::size_t stage = 0; stages && stage < stages->size(); ++stage) {
    stages_->setState(static_cast<int>(stage), shownState(stages->at(stage)));
  }
  const AccountNews& news = account_.news();
  const QString text = AccountTexts::news(news);
  if (text.isEmpty()) {
    news_->fallSilent();
  } else if (text != news_->text() || news.details != news_->details()) {
    news_->tell(noticeKind(news), text, news.details);
    bringIntoView(news_);
  }
  if (account_.activity() == Activity::testing) {
    bringIntoView(stages_);
  }
}

void AccountPage::showButtons() {
  const Obstacle toTest = account_.obstacleToTest();
  const Obstacle toSave = account_.obstacleToSave();
  test_->setText(account_.activity() == Activity::testing ? tr("&Cancel") : tr("&Test connection"));
  // Busy buttons stay enabled and do nothing, so the focus stays where the person has it.
  test_->setEnabled(isBusyOrFree(toTest));
  save_->setEnabled(isBusyOrFree(toSave));
  remove_->setVisible(account_.isConfigured());
  remove_->setEnabled(isBusyOrFree(account_.obstacleToRemove()));
  const QString why = AccountTexts::obstacle(toTest);
  obstacle_->setText(why);
  obstacle_->setVisible(!why.isEmpty());
}

/// Gives the focus to something sensible before the button that has it goes.
void AccountPage::leaveButtons() {
  if (save_->hasFocus() && !isBusyOrFree(account_.obstacleToSave())) {
    test_->setFocus();
  }
  if (remove_->hasFocus() && !account_.isConfigured()) {
    entries_[0].input->setFocus();
  }
}

QString AccountPage::name() { return tr("Account"); }

void AccountPage::setTexts() {
  setHeading(
      name(),
      tr("The mailbox that your assistant may look into. The password goes into your keyring and nowhere "
         "else."));
  const QStringList lines = AccountTexts::welcome();
  for (std::size_t line = 0; line < welcomeLines_.size(); ++line) {
    welcomeLines_[line]->setText(lines[static_cast<qsizetype>(line)]);
  }
  welcome_->setHeading(tr("Welcome"));
  stages_->setStages(AccountTexts::stages());
  auto& [email, host, port] = entries_;
  email.row->setLabel(tr("&E-mail address"));
  host.row->setLabel(tr("&Mail server"));
  port.row->setLabel(tr("P&ort"));
  remove_->setText(tr("&Remove account"));
  save_->setText(tr("&Save"));
  showModel();
}

}  // namespace tarnwell

#include "App/Pages/EndpointPage.h"

#include <QShortcut>

#include "App/Pages/AccountTexts.h"
#include "App/Pages/EndpointTexts.h"

namespace tarnwell {

namespace {

using State = EndpointModel::State;
using Kind = EndpointNews::Kind;

Tone toneOf(State state) {
  switch (state) {
    case State::running:
      return Tone::success;
    case State::failed:
      return Tone::error;
    default:
      return Tone::text;
  }
}

Notice::Kind noticeKind(const EndpointNews& news) {
  switch (news.kind) {
    case Kind::tokenRenewed:
      return Notice::Kind::success;
    case Kind::keyring:
      return news.keyring == AccountNews::Kind::unlocked ? Notice::Kind::success : Notice::Kind::error;
    default:
      return Notice::Kind::error;
  }
}

}  // namespace

EndpointPage::EndpointPage(EndpointModel& endpoint, Questions& questions, QWidget* parent)
    : Page(parent),
      endpoint_(endpoint),
      questions_(questions),
      keyringNotice_(new Notice(this)),
      news_(new Notice(this)),
      state_(new ToneLabel(Tone::text, this)),
      sentence_(new ToneLabel(Tone::faint, this)),
      start_(new QPushButton(this)),
      address_(new CopyBlock(this)),
      port_(new NumberBox(EndpointModel::leastPort, EndpointModel::greatestPort)),
      portRow_(new SettingRow(port_, this)),
      tokenCard_(new Card(this)),
      danger_(new ToneLabel(Tone::text, this)),
      token_(new CopyBlock(this)),
      show_(new QPushButton(this)),
      renew_(new QPushButton(this)),
      clientCard_(new Card(this)),
      clientSentence_(new ToneLabel(Tone::text, this)),
      block_(new CopyBlock(this)) {
  build();
  listen();
  setTexts();
}

void EndpointPage::build() {
  QFont large = state_->font();
  large.setBold(true);
  large.setPointSizeF(large.pointSizeF() * 1.25);
  state_->setFont(large);
  makePrimary(start_);
  port_->setGroupSeparatorShown(false);

  auto* const status = new Card(this);
  auto* const words = new QVBoxLayout;
  words->setSpacing(4);
  words->addWidget(state_);
  words->addWidget(sentence_);
  auto* const top = new QHBoxLayout;
  top->setSpacing(16);
  top->addLayout(words, 1);
  top->addWidget(start_, 0, Qt::AlignVCenter);
  status->rows()->addLayout(top);
  status->rows()->addWidget(address_);
  status->rows()->addWidget(portRow_);

  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(show_);
  buttons->addWidget(renew_);
  buttons->addStretch(1);
  tokenCard_->rows()->addWidget(danger_);
  tokenCard_->rows()->addWidget(token_);
  tokenCard_->rows()->addLayout(buttons);

  clientCard_->rows()->addWidget(clientSentence_);
  clientCard_->rows()->addWidget(block_);
  for (QWidget* const part :
       std::initializer_list<QWidget*>{keyringNotice_, news_, status, tokenCard_, clientCard_}) {
    body()->addWidget(part);
  }
}

void EndpointPage::listen() {
  connect(start_, &QPushButton::clicked, this, &EndpointPage::startOrStop);
  connect(port_, &NumberBox::chosen, this, [this](int port) {
    endpoint_.setPort(port);
    showModel();
  });
  connect(show_, &QPushButton::clicked, this, [this] { setTokenShown(!isTokenShown_); });
  connect(renew_, &QPushButton::clicked, this, &EndpointPage::renew);
  connect(news_, &Notice::acted, this, [this] {
    endpoint_.startAtFreePort();  // first: what is typed into the port counts no more
    start_->setFocus();           // the notice goes
  });
  connect(keyringNotice_, &Notice::acted, &endpoint_, &EndpointModel::unlockKeyring);
  auto* const cancel = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  cancel->setContext(Qt::WidgetWithChildrenShortcut);
  connect(cancel, &QShortcut::activated, &endpoint_, &EndpointModel::giveUp);
  connect(&endpoint_, &EndpointModel::changed, this, &EndpointPage::showModel);
}

void EndpointPage::startOrStop() {
  start_->setFocus();  // a key or a screen reader may press it from the port, whose number counts now
  if (endpoint_.isRunning()) {
    endpoint_.stop();
  } else {
    endpoint_.start();
  }
}

void EndpointPage::renew() {
  questions_.ask(this, EndpointTexts::renewal(), [this](bool yes) {
    if (yes) {
      endpoint_.renewToken();
    }
  });
}

void EndpointPage::setTokenShown(bool isShown) {
  isTokenShown_ = isShown;
  showToken();
}

QString EndpointPage::token() const {
  const std::string_view token = endpoint_.token() ? endpoint_.token()->view() : std::string_view();
  return QString::fromLatin1(token.data(), static_cast<qsizetype>(token.size()));
}

void EndpointPage::showEvent(QShowEvent* event) {
  Page::showEvent(event);
  endpoint_.refresh();
}

void EndpointPage::hideEvent(QHideEvent* event) {
  Page::hideEvent(event);
  setTokenShown(false);
}

void EndpointPage::showModel() {
  showState();
  showNotices();
  showToken();
}

void EndpointPage::showState() {
  const State state = endpoint_.state();
  state_->setText(EndpointTexts::state(state));
  state_->setTone(toneOf(state));
  sentence_->setText(EndpointTexts::sentence(state));
  // A busy button stays enabled, so that the focus stays where the person has it.
  start_->setText(endpoint_.isRunning() ? tr("S&top") : tr("&Start"));
  address_->setText(endpoint_.address());
  port_->showNumber(endpoint_.port());
  port_->setEnabled(endpoint_.mayChangePort());
}

void EndpointPage::showNotices() {
  const KeyringState keyring = endpoint_.keyring().value_or(KeyringState::ready);
  if (const QString text = AccountTexts::keyring(keyring); text.isEmpty()) {
    keyringNotice_->fallSilent();
  } else {
    keyringNotice_->tell(Notice::Kind::warning, text);
    keyringNotice_->setAction(AccountTexts::keyringAction(keyring));
  }
  const EndpointNews& news = endpoint_.news();
  if (const QString text = EndpointTexts::news(news, endpoint_.port()); text.isEmpty()) {
    news_->fallSilent();
  } else if (text != news_->text() || news.details != news_->details()) {
    news_->tell(noticeKind(news), text, news.details);
    news_->setAction(EndpointTexts::action(news));
    bringIntoView(news_);
  }
}

void EndpointPage::showToken() {
  const bool isKnown = endpoint_.token().has_value();
  const QString mask(16, QChar(0x2022));  // as long as no token: the length tells nothing
  const QString shown = isTokenShown_ ? token() : mask;
  token_->setSecretText(shown, [this] { return token(); });
  block_->setSecretText(endpoint_.clientBlock(shown), [this] { return endpoint_.clientBlock(token()); });
  show_->setText(isTokenShown_ ? tr("&Hide") : tr("S&how"));
  show_->setAccessibleName(isTokenShown_ ? tr("Hide the token") : tr("Show the token"));
  for (QWidget* const part : std::initializer_list<QWidget*>{token_, show_, renew_, clientCard_}) {
    part->setVisible(isKnown);
  }
  danger_->setText(isKnown
                       ? tr("Without the token, every program and every user of this computer could use your "
                            "mailbox through the endpoint. Give it only to programs that you trust.")
                       : tr("Without a token, every program and every user of this computer could use your "
                            "mailbox through the endpoint. Yours is made when you start it for the first "
                            "time, and kept in the keyring."));
}

QString EndpointPage::name() { return tr("Local endpoint"); }

void EndpointPage::setTexts() {
  setHeading(name(),
             tr("For programs on this computer that speak HTTP. An assistant that can start Tarnwell "
                "itself is better connected on the page Assistants: that needs no port and no token."));
  address_->setAccessibleLabel(tr("Address of the endpoint"));
  portRow_->setTexts(tr("Port"), tr("It can be changed while the endpoint is stopped."));
  tokenCard_->setHeading(tr("Token"));
  token_->setAccessibleLabel(tr("Token"));
  renew_->setText(tr("&Renew"));
  renew_->setAccessibleName(tr("Renew the token"));
  clientCard_->setHeading(tr("In the client"));
  clientSentence_->setText(
      tr("Clients that speak HTTP take a block like this one. Copying takes the token along."));
  block_->setAccessibleLabel(tr("Settings for the client"));
  showModel();
}

}  // namespace tarnwell

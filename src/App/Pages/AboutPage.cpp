#include "App/Pages/AboutPage.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QTextDocumentFragment>

namespace tarnwell {

namespace {

/// The paragraphs of the licence, without the line ends inside of them.
QString licenceText() {
  QFile file(QStringLiteral(":/LICENSE"));
  if (!file.open(QFile::ReadOnly)) {
    return {};
  }
  static const QRegularExpression lineEnd(QStringLiteral("(?<!\n)\n(?!\n)"));
  return QString::fromUtf8(file.readAll()).trimmed().replace(lineEnd, QStringLiteral(" "));
}

}  // namespace

AboutPage::AboutPage(AboutModel& about, QWidget* parent)
    : Page(parent),
      about_(about),
      saveNotice_(new Notice(this)),
      copyNotice_(new Notice(this)),
      program_(new ToneLabel(Tone::text, this)),
      languages_(new Card(this)),
      language_(new ChoiceBox),
      languageField_(new FormField(language_, languages_)),
      places_(new Card(this)),
      settingsPlace_(addPlace(about_.settingsPath())),
      passwordPlace_(addPlace(about_.secretService())),
      logPlace_(addPlace(about_.logCommand())),
      licence_(new Card(this)),
      copy_(new QPushButton(this)) {
  program_->setOpenExternalLinks(true);
  program_->setTextInteractionFlags(Qt::TextBrowserInteraction);
  program_->setFocusPolicy(Qt::StrongFocus);
  auto* const top = new Card(this);
  top->rows()->addWidget(program_);

  language_->addItem({});
  for (const AppLanguage language : AppLanguages::allCases) {
    language_->addItem(QString::fromUtf8(displayName(language)));
  }
  languages_->rows()->addWidget(languageField_);

  auto* const licence = new ToneLabel(Tone::faint, licence_);
  licence->setTextFormat(Qt::PlainText);
  licence->setText(licenceText());
  licence_->rows()->addWidget(licence);

  for (QWidget* const part :
       {static_cast<QWidget*>(saveNotice_), static_cast<QWidget*>(copyNotice_), static_cast<QWidget*>(top),
        static_cast<QWidget*>(languages_), static_cast<QWidget*>(places_), static_cast<QWidget*>(licence_)}) {
    body()->addWidget(part);
  }
  footer()->addWidget(copy_);
  footer()->addStretch(1);
  QWidget* before = program_;
  for (QWidget* const next : {static_cast<QWidget*>(language_), settingsPlace_->input(),
                              passwordPlace_->input(), logPlace_->input(), static_cast<QWidget*>(copy_)}) {
    setTabOrder(before, next);
    before = next;
  }

  connect(language_, &ChoiceBox::activated, this, [this](int row) {
    failure_.reset();
    about_.setLanguage(row > 0 ? std::optional(AppLanguages::allCases.at(static_cast<std::size_t>(row) - 1))
                               : std::nullopt);
    showNotices();
  });
  connect(copy_, &QPushButton::clicked, this, [this] {
    about_.diagnose({.platform = QGuiApplication::platformName(),
                     .isDark = schemeOf(palette()) == Scheme::dark,
                     .scale = devicePixelRatioF()});
  });
  connect(&about_, &AboutModel::changed, this, &AboutPage::showModel);
  connect(&about_, &AboutModel::diagnosed, this, &AboutPage::copyDiagnostics);
  connect(&about_, &AboutModel::notSaved, this, [this](const QString& reason) {
    failure_ = reason;
    showNotices();
  });
  setTexts();
}

/// A text field, so that a long path can be read and copied with keys.
FormField* AboutPage::addPlace(const QString& place) {
  auto* const input = new QLineEdit(place);
  input->setReadOnly(true);
  input->setCursorPosition(0);
  auto* const field = new FormField(input, places_);
  places_->rows()->addWidget(field);
  return field;
}

void AboutPage::showModel() {
  const std::optional<AppLanguage> language = about_.language();
  language_->setCurrentIndex(language ? language_->findText(QString::fromUtf8(displayName(*language))) : 0);
}

void AboutPage::showNotices() {
  if (failure_) {
    saveNotice_->tell(Notice::Kind::error, tr("The settings could not be saved. The page shows what holds."),
                      *failure_);
  } else {
    saveNotice_->fallSilent();
  }
  if (diagnostics_) {
    copyNotice_->tell(
        Notice::Kind::success,
        tr("The diagnostics are on the clipboard. They hold no address, no server and no password."),
        *diagnostics_);
  } else {
    copyNotice_->fallSilent();
  }
}

void AboutPage::copyDiagnostics(const QString& text) {
  QGuiApplication::clipboard()->setText(text);
  diagnostics_ = text;
  showNotices();
}

QString AboutPage::name() { return tr("About"); }

void AboutPage::setTexts() {
  setHeading(name(), tr("An assistant works with your mail, and you decide how far."));
  const QString program =
      tr("Tarnwell %1 lets an AI assistant work with one mailbox. Assistants reach it by the "
         "<a href=\"%2\">Model Context Protocol</a>. It is free software under the "
         "<a href=\"%3\">MIT licence</a>.")
          .arg(about_.version(), QStringLiteral("https://modelcontextprotocol.io"),
               QStringLiteral("https://opensource.org/license/mit"));
  program_->setText(program);
  program_->setAccessibleName(QTextDocumentFragment::fromHtml(program).toPlainText());
  languages_->setHeading(tr("Language"));
  languageField_->setLabel(tr("&Language of this window"));
  language_->setItemText(
      0, tr("That of the system (%1)").arg(QString::fromUtf8(displayName(systemDefaultLanguage()))));
  places_->setHeading(tr("Where things are"));
  settingsPlace_->setLabel(tr("The &settings"));
  settingsPlace_->setHint(tr("The helper reads this file afresh for every call."));
  passwordPlace_->setLabel(tr("The &password"));
  passwordPlace_->setHint(tr("It lies in the keyring of your desktop, under this name and your address."));
  logPlace_->setLabel(tr("The l&og"));
  logPlace_->setHint(tr("This command shows it in a terminal. The page “Activity” shows the same."));
  licence_->setHeading(tr("Licence"));
  copy_->setText(tr("&Copy diagnostics"));
  showModel();
  showNotices();
}

}  // namespace tarnwell

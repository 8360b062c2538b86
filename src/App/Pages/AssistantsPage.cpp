#include "App/Pages/AssistantsPage.h"

#include <QLocale>
#include <QShortcut>
#include <algorithm>
#include <array>

#include "App/Pages/AssistantsTexts.h"

namespace tarnwell {

namespace {

constexpr std::array formats{BlockFormat::mcpServersJSON, BlockFormat::serversJSON,
                             BlockFormat::codexTOML,      BlockFormat::gooseYAML,
                             BlockFormat::continueYAML,   BlockFormat::opencodeJSON};

/// An entry may be left of an assistant that is gone.
bool isHere(const AssistantState& assistant) {
  return assistant.isInstalled || assistant.connection != AssistantState::Connection::none;
}

}  // namespace

AssistantsPage::AssistantsPage(AssistantsModel& assistants, QWidget* parent)
    : Page(parent),
      assistants_(assistants),
      accountNotice_(new Notice(this)),
      found_(new Card(this)),
      rows_(newRows()),
      nobody_(new ToneLabel(Tone::faint, found_)),
      missing_(new ToneLabel(Tone::faint, found_)),
      other_(new Card(this)),
      otherLead_(new ToneLabel(Tone::faint, other_)),
      formats_(new ChoiceBox),
      formatField_(new FormField(formats_, other_)),
      block_(new CopyBlock(other_)) {
  found_->rows()->addWidget(nobody_);
  found_->rows()->addWidget(missing_);
  for ([[maybe_unused]] const BlockFormat format : formats) {
    formats_->addItem({});
  }
  formats_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  other_->rows()->addWidget(otherLead_);
  other_->rows()->addWidget(formatField_);
  other_->rows()->addWidget(block_);
  body()->addWidget(accountNotice_);
  body()->addWidget(found_);
  body()->addWidget(other_);

  connect(formats_, &ChoiceBox::currentIndexChanged, this, &AssistantsPage::showBlock);
  auto* const cancel = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  cancel->setContext(Qt::WidgetWithChildrenShortcut);
  connect(cancel, &QShortcut::activated, &assistants_, &AssistantsModel::cancel);
  connect(&assistants_, &AssistantsModel::changed, this, &AssistantsPage::showModel);
  setTexts();
}

/// In the fixed order of all that are known. A row is seen when its assistant is found.
std::map<AssistantID, AssistantListRow*> AssistantsPage::newRows() {
  std::map<AssistantID, AssistantListRow*> rows;
  for (int number = 0; number <= static_cast<int>(AssistantID::roo); ++number) {
    const auto assistant = static_cast<AssistantID>(number);
    rows.emplace(assistant, newRow(assistant));
  }
  return rows;
}

AssistantListRow* AssistantsPage::newRow(AssistantID assistant) {
  auto* const row = new AssistantListRow(found_);
  row->hide();
  found_->rows()->addWidget(row);
  connect(row, &AssistantListRow::acted, this, [this, assistant] { assistants_.act(assistant); });
  connect(row, &AssistantListRow::disconnectWanted, this,
          [this, assistant] { assistants_.remove(assistant); });
  connect(row, &AssistantListRow::confirmed, &assistants_, &AssistantsModel::carryOut);
  connect(row, &AssistantListRow::dismissed, &assistants_, &AssistantsModel::cancel);
  connect(row, &AssistantListRow::offerTaken, this, [this, assistant] {
    if (assistants_.progress(assistant).offer == AssistantProgress::Offer::undo) {
      assistants_.undo(assistant);
    } else {
      assistants_.tryAgain(assistant);
    }
  });
  connect(row, &AssistantListRow::grew, this, [this, row] { bringIntoView(row); });
  return row;
}

void AssistantsPage::showEvent(QShowEvent* event) {
  Page::showEvent(event);
  assistants_.look();
}

void AssistantsPage::showModel() {
  if (assistants_.isAccountMissing()) {
    accountNotice_->tell(Notice::Kind::information,
                         tr("No account is saved yet. You can connect an assistant already, but it gets an "
                            "error until you save one on the page “Account”."));
  } else {
    accountNotice_->fallSilent();
  }
  QStringList missing;
  bool isAnyHere = false;
  for (const AssistantState& assistant : assistants_.assistants()) {
    AssistantListRow* const row = rows_.at(assistant.id);
    const AssistantProgress& progress = assistants_.progress(assistant.id);
    if (isHere(assistant) || progress.step != AssistantProgress::Step::idle || progress.done) {
      row->showAssistant(assistant, progress);
      row->show();
      isAnyHere = true;
    } else {
      row->hide();
      missing += AssistantsTexts::name(assistant);
    }
  }
  const bool isFirstLook = assistants_.assistants().empty();
  nobody_->setText(isFirstLook
                       ? tr("Looking for assistants…")
                       : tr("None of the assistants that Tarnwell knows was found on this computer."));
  nobody_->setVisible(!isAnyHere);
  missing_->setText(tr("Not found here: %1").arg(QLocale().createSeparatedList(missing)));
  missing_->setVisible(!missing.isEmpty());
}

void AssistantsPage::showBlock() {
  const auto chosen = static_cast<std::size_t>(std::max(formats_->currentIndex(), 0));
  block_->setText(assistants_.block(formats.at(chosen)));
}

QString AssistantsPage::name() { return tr("Assistants"); }

void AssistantsPage::setTexts() {
  setHeading(name(), tr("Connect the assistants on this computer to Tarnwell. Every change is shown to you "
                        "before it is made, and can be undone."));
  found_->setHeading(tr("On this computer"));
  other_->setHeading(tr("Another assistant"));
  otherLead_->setText(
      tr("Any other assistant that knows the Model Context Protocol can use Tarnwell. Copy this "
         "entry into its settings, beside what is there, and restart it."));
  formatField_->setLabel(tr("&Format of the settings"));
  for (std::size_t place = 0; place < formats.size(); ++place) {
    formats_->setItemText(static_cast<int>(place), AssistantsTexts::format(formats.at(place)));
  }
  block_->setAccessibleLabel(tr("Entry for another assistant"));
  showBlock();
  showModel();
}

}  // namespace tarnwell

#include "App/Pages/SafetyPage.h"

#include "App/Pages/SafetyTexts.h"

namespace tarnwell {

SafetyPage::SafetyPage(SafetyModel& safety, Questions& questions, QWidget* parent)
    : Page(parent),
      safety_(safety),
      questions_(questions),
      fileNotice_(new Notice(this)),
      saveNotice_(new Notice(this)),
      summary_(new ToneLabel(Tone::text, this)),
      withheld_(new ToneLabel(Tone::faint, this)),
      reading_(new Card(this)),
      changes_(new Card(this)),
      back_(new QPushButton(this)) {
  auto* const top = new Card(this);
  QFont bold = summary_->font();
  bold.setBold(true);
  summary_->setFont(bold);
  body()->addWidget(fileNotice_);
  body()->addWidget(saveNotice_);
  body()->addWidget(top);
  body()->addWidget(reading_);
  body()->addWidget(changes_);
  footer()->addWidget(back_);
  footer()->addStretch(1);

  top->rows()->addWidget(summary_);
  top->rows()->addWidget(withheld_);
  addSwitch(top, SafetySwitch::readOnly);
  addSwitch(reading_, SafetySwitch::blockAuthCodeBodies);
  addSwitch(reading_, SafetySwitch::strictWithholding);
  for (const SafetyLimit limit : SafetyItems::limits) {
    addLimit(reading_, limit);
  }
  for (const SafetySwitch item : {SafetySwitch::allowMarkRead, SafetySwitch::allowMove,
                                  SafetySwitch::allowTrash, SafetySwitch::allowCopyMoveFallback}) {
    addSwitch(changes_, item);
  }
  setTabOrder(limits_.back().control, switches_.at(3).control);
  setTabOrder(switches_.back().control, back_);

  connect(back_, &QPushButton::clicked, this, [this] {
    back_->setFocus();  // a number that is still typed counts before, and not after
    forgetFailure();
    safety_.backToSafeValues();
  });
  connect(&safety_, &SafetyModel::changed, this, &SafetyPage::showModel);
  connect(&safety_, &SafetyModel::notSaved, this, [this](const QString& reason) {
    failure_ = reason;
    showFailure();
  });
  setTexts();
}

void SafetyPage::addSwitch(Card* card, SafetySwitch item) {
  auto* const control = new Switch;
  const SwitchRow row{item, control, new SettingRow(control, card)};
  card->rows()->addWidget(row.row);
  switches_.push_back(row);
  connect(control, &Switch::clicked, this, [this, row] { turn(row); });
}

void SafetyPage::addLimit(Card* card, SafetyLimit limit) {
  const auto [least, most] = SafetyModel::bounds(limit);
  auto* const control = new NumberBox(least, most);
  control->setSingleStep(limit == SafetyLimit::maxBodyChars ? 500 : 1);
  const LimitRow row{limit, control, new SettingRow(control, card)};
  card->rows()->addWidget(row.row);
  limits_.push_back(row);
  connect(control, &NumberBox::chosen, this, [this, limit](int number) {
    forgetFailure();
    safety_.set(limit, number);
    showModel();
  });
}

void SafetyPage::turn(const SwitchRow& row) {
  const bool isOn = row.control->isChecked();
  forgetFailure();
  if (!safety_.asksBefore(row.item, isOn)) {
    safety_.set(row.item, isOn);
    return;
  }
  showModel();  // the switch stays where it was until the answer
  questions_.ask(this, SafetyTexts::question(row.item, safety_.summaryWith(row.item, isOn)),
                 [this, item = row.item, isOn](bool yes) {
                   if (yes) {
                     safety_.set(item, isOn);
                   }
                 });
}

void SafetyPage::forgetFailure() {
  failure_.reset();
  showFailure();
}

void SafetyPage::showModel() {
  for (const auto& [item, control, row] : switches_) {
    control->setChecked(safety_.isOn(item));
    row->setTexts(SafetyTexts::label(item), SafetyTexts::sentence(item, safety_.withoutEffect(item)),
                  SafetyTexts::quotation(item));
  }
  for (const auto& [limit, control, row] : limits_) {
    row->setTexts(SafetyTexts::label(limit), SafetyTexts::sentence(limit, safety_.withoutEffect(limit)));
    control->showNumber(safety_.value(limit));
  }
  summary_->setText(SafetyTexts::summary(safety_.summary()));
  withheld_->setText(SafetyTexts::withheld(safety_.summary()));
  back_->setEnabled(!safety_.isAtSafeValues());
  if (const QString text = SafetyTexts::fileNotice(safety_.fileState()); text.isEmpty()) {
    fileNotice_->fallSilent();
  } else {
    fileNotice_->tell(Notice::Kind::warning, text, safety_.fileProblem());
  }
}

void SafetyPage::showFailure() {
  if (failure_) {
    saveNotice_->tell(Notice::Kind::error, tr("The settings could not be saved. The page shows what holds."),
                      *failure_);
  } else {
    saveNotice_->fallSilent();
  }
}

QString SafetyPage::name() { return tr("Safety settings"); }

void SafetyPage::setTexts() {
  setHeading(
      name(),
      tr("What an assistant may read and change. Each change counts from the assistant's next call on."));
  reading_->setHeading(tr("Reading"));
  changes_->setHeading(tr("Changes"));
  back_->setText(tr("&Back to the safe values"));
  for (const LimitRow& limit : limits_) {
    limit.control->setLocale(QLocale());
  }
  showModel();
  showFailure();
}

}  // namespace tarnwell

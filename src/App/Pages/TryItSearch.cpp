#include "App/Pages/TryItSearch.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tarnwell {

namespace {

/// The choices of the filter by time, in days. 0 means any time.
constexpr int periods[] = {0, 1, 7, 30, 365};

}  // namespace

TryItSearch::TryItSearch(QWidget* parent)
    : QWidget(parent),
      words_(new QLineEdit),
      filters_(new QPushButton),
      search_(new QPushButton),
      card_(new Card),
      sender_(new QLineEdit),
      senderField_(new FormField(sender_)),
      subject_(new QLineEdit),
      subjectField_(new FormField(subject_)),
      since_(new ChoiceBox),
      sinceField_(new FormField(since_)),
      unread_(new QCheckBox) {
  words_->setClearButtonEnabled(true);
  filters_->setCheckable(true);
  makePrimary(search_);
  for (const int days : periods) {
    since_->addItem(QString(), days);
  }

  auto* const line = new QHBoxLayout;
  line->setSpacing(8);
  line->addWidget(words_, 1);
  line->addWidget(filters_);
  line->addWidget(search_);
  auto* const grid = new QGridLayout;
  grid->setHorizontalSpacing(14);
  grid->setVerticalSpacing(12);
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(1, 1);
  grid->addWidget(senderField_, 0, 0);
  grid->addWidget(subjectField_, 0, 1);
  grid->addWidget(sinceField_, 1, 0);
  auto* const beside = new QVBoxLayout;  // at the height of the box
  beside->setContentsMargins(0, 0, 0, 8);
  beside->addStretch(1);
  beside->addWidget(unread_);
  grid->addLayout(beside, 1, 1);
  card_->rows()->addLayout(grid);
  card_->hide();
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(10);
  rows->addLayout(line);
  rows->addWidget(card_);
  setTabOrder(words_, filters_);
  setTabOrder(filters_, search_);
  setTabOrder(search_, sender_);

  connect(filters_, &QPushButton::toggled, card_, &QWidget::setVisible);
  connect(search_, &QPushButton::clicked, this, &TryItSearch::wanted);
  for (QLineEdit* const field : {words_, sender_, subject_}) {
    connect(field, &QLineEdit::returnPressed, this, &TryItSearch::wanted);
  }
}

TriedQuery TryItSearch::query() const {
  TriedQuery query{.words = words_->text().trimmed()};
  if (filters_->isChecked()) {  // what is not seen does not count
    query.sender = sender_->text().trimmed();
    query.subject = subject_->text().trimmed();
    query.isUnreadOnly = unread_->isChecked();
    if (const int days = since_->currentData().toInt(); days > 0) {
      query.since = QDate::currentDate().addDays(-days);
    }
  }
  return query;
}

void TryItSearch::forget() {
  for (QLineEdit* const field : {words_, sender_, subject_}) {
    field->setText({});
  }
  since_->setCurrentIndex(0);
  unread_->setChecked(false);
  filters_->setChecked(false);
}

void TryItSearch::focusWords() {
  words_->setFocus(Qt::ShortcutFocusReason);
  words_->selectAll();
}

void TryItSearch::setTexts() {
  words_->setPlaceholderText(tr("Search the inbox, or leave this empty for the newest messages"));
  words_->setAccessibleName(tr("Search the inbox"));
  words_->setAccessibleDescription(words_->placeholderText());
  filters_->setText(tr("&Filters"));
  search_->setText(tr("&Search"));
  senderField_->setLabel(tr("Fr&om"));
  subjectField_->setLabel(tr("S&ubject"));
  sinceField_->setLabel(tr("&Received"));
  const QString names[] = {tr("At any time"), tr("Since yesterday"), tr("In the last 7 days"),
                           tr("In the last 30 days"), tr("In the last 365 days")};
  static_assert(std::size(names) == std::size(periods));
  for (int item = 0; item < since_->count(); ++item) {
    since_->setItemText(item, names[item]);
  }
  unread_->setText(tr("Unread messages onl&y"));
  unread_->setAccessibleName(tr("Unread messages only"));
}

}  // namespace tarnwell

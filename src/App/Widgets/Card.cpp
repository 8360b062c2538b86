#include "App/Widgets/Card.h"

namespace tarnwell {

Card::Card(QWidget* parent) : QFrame(parent), heading_(new QLabel(this)), rows_(new QVBoxLayout) {
  setObjectName("card");
  QFont bold = heading_->font();
  bold.setBold(true);
  heading_->setFont(bold);
  heading_->setWordWrap(true);
  heading_->hide();
  rows_->setSpacing(14);
  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(20, 16, 20, 16);
  all->setSpacing(12);
  all->addWidget(heading_);
  all->addLayout(rows_);
}

void Card::setHeading(const QString& heading) {
  heading_->setText(heading);
  heading_->setVisible(!heading.isEmpty());
  setAccessibleName(heading);
}

}  // namespace tarnwell

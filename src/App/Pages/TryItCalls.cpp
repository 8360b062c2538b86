#include "App/Pages/TryItCalls.h"

#include <QSignalBlocker>
#include <QVBoxLayout>

#include "App/Models/HarmlessText.h"
#include "App/Pages/TryItTexts.h"

namespace tarnwell {

namespace {

/// Copies byte for byte, and shows what could deceive the eye.
void showExact(CopyBlock& block, const std::string& json) {
  const QString exact = QString::fromStdString(json);
  if (exact != block.text()) {
    block.setText(exact);
    block.code()->setPlainText(harmlessText(json));
  }
}

}  // namespace

TryItCalls::TryItCalls(const TryItModel& tryIt, QWidget* parent)
    : QWidget(parent),
      tryIt_(tryIt),
      choice_(new ChoiceBox),
      sentName_(new ToneLabel(Tone::faint)),
      sent_(new CopyBlock),
      receivedName_(new ToneLabel(Tone::faint)),
      received_(new CopyBlock) {
  sent_->code()->setMostLines(8);
  received_->code()->setMostLines(22);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(8);
  rows->addWidget(choice_, 0, Qt::AlignLeft);
  rows->addSpacing(4);
  rows->addWidget(sentName_);
  rows->addWidget(sent_);
  rows->addSpacing(4);
  rows->addWidget(receivedName_);
  rows->addWidget(received_);
  rows->addStretch(1);
  connect(choice_, &QComboBox::currentIndexChanged, this, &TryItCalls::showCall);
  connect(&tryIt_, &TryItModel::searchChanged, this, &TryItCalls::showCalls);
  connect(&tryIt_, &TryItModel::chosenChanged, this, &TryItCalls::showCalls);
  connect(&tryIt_, &TryItModel::messageChanged, this, &TryItCalls::showCalls);
}

void TryItCalls::showCalls() {
  {
    const QSignalBlocker quiet(choice_);
    const int before = choice_->count();
    const QVariant shown = choice_->currentData();
    choice_->clear();
    for (const ToolCall* const call : tryIt_.calls()) {
      choice_->addItem(TryItTexts::call(call->tool), static_cast<int>(call->tool));
    }
    const int same = choice_->findData(shown);
    choice_->setCurrentIndex(choice_->count() > before || same < 0 ? choice_->count() - 1 : same);
  }
  showCall();
}

void TryItCalls::showCall() {
  const std::vector<const ToolCall*> calls = tryIt_.calls();
  const auto place = static_cast<std::size_t>(choice_->currentIndex());
  const ToolCall none;
  const ToolCall& call = place < calls.size() ? *calls[place] : none;
  showExact(*sent_, call.request);
  showExact(*received_, call.answer);
}

void TryItCalls::setTexts() {
  choice_->setAccessibleName(tr("Call"));
  sentName_->setText(tr("What an assistant sends"));
  sent_->setAccessibleLabel(sentName_->text());
  receivedName_->setText(tr("What an assistant receives, byte for byte"));
  received_->setAccessibleLabel(receivedName_->text());
  showCalls();
}

}  // namespace tarnwell

#include "App/Widgets/Questions.h"

#include <QMessageBox>
#include <QPushButton>
#include <utility>

#include "App/Widgets/Theme.h"

namespace tarnwell {

void DialogQuestions::ask(QWidget* parent, const Question& question, std::function<void(bool)> answered) {
  auto* const dialog = new QMessageBox(parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowModality(Qt::WindowModal);
  dialog->setIcon(question.isDangerous ? QMessageBox::Warning : QMessageBox::Question);
  dialog->setWindowTitle(question.title);
  dialog->setTextFormat(Qt::PlainText);
  dialog->setText(question.text);
  QPushButton* const yes = dialog->addButton(question.yes, QMessageBox::AcceptRole);
  QPushButton* const no = dialog->addButton(question.no, QMessageBox::RejectRole);
  if (question.isDangerous) {
    makeDangerous(yes);
  }
  dialog->setDefaultButton(question.isDangerous ? no : yes);
  dialog->setEscapeButton(no);
  QObject::connect(dialog, &QMessageBox::finished, dialog, [dialog, yes, answered = std::move(answered)] {
    answered(dialog->clickedButton() == yes);
  });
  dialog->open();
}

}  // namespace tarnwell

#include "App/Widgets/FileChoice.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <utility>

namespace tarnwell {

void DialogFileChoice::askWhereToSave(QWidget* parent, const QString& title, const QString& name,
                                      std::function<void(const QString&)> chosen) {
  auto* const dialog = new QFileDialog(parent, title, QDir::homePath());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setDefaultSuffix(QFileInfo(name).suffix());
  dialog->selectFile(name);
  QObject::connect(dialog, &QFileDialog::fileSelected, parent,
                   [chosen = std::move(chosen)](const QString& path) { chosen(path); });
  dialog->open();
}

}  // namespace tarnwell

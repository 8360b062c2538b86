/// What an `ActivityModel` shows of the entries that it has, and gives away.
#include <QSaveFile>
#include <iterator>
#include <numeric>
#include <stdexcept>

#include "App/Models/ActivityModel.h"

namespace tarnwell {
namespace {

constexpr ActivityColumn columns[] = {ActivityColumn::time, ActivityColumn::level, ActivityColumn::subject,
                                      ActivityColumn::text};

void write(const QString& path, const QByteArray& text) {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
    throw std::runtime_error(file.errorString().toStdString());
  }
}

}  // namespace

QString ActivityModel::wordsOf(const ActivityEntry& entry) const {
  QString all;
  for (const ActivityColumn column : columns) {
    all += words_.words(entry, column) + '\n';
  }
  return all;
}

bool ActivityModel::matches(ActivityItem& item) const {
  const bool isCalls = detail_ == ActivityDetail::calls;
  if ((isCalls && item.isDetail) || (process_ && item.process != *process_)) {
    return false;
  }
  if (isCalls && item.call && item.call->words.isEmpty()) {
    item.call->words = wordsOf(item.call->entry);
  }
  return (isCalls && item.call ? item.call->words : item.words).contains(search_, Qt::CaseInsensitive);
}

void ActivityModel::showDetail(ActivityDetail detail) {
  if (detail != detail_) {
    detail_ = detail;
    showMatches();
  }
}

void ActivityModel::showProcess(std::optional<int> number) {
  if (number != process_) {
    process_ = number;
    processes_.choose(number);
    showMatches();
    showProcesses();
  }
}

void ActivityModel::search(const QString& text) {
  if (text != search_) {
    search_ = text;
    showMatches();
  }
}

void ActivityModel::showMatches() {
  beginResetModel();
  shown_.clear();
  for (const std::unique_ptr<ActivityItem>& item : items_) {
    if (matches(*item)) {
      shown_.push_back(item.get());
    }
  }
  endResetModel();
}

void ActivityModel::clear() {
  cleared_ = std::chrono::system_clock::now();
  beginResetModel();
  processes_.dropAll();
  shown_.clear();
  items_.clear();
  endResetModel();
  showProcesses();
}

void ActivityModel::retranslate() {
  for (const std::unique_ptr<ActivityItem>& item : items_) {
    item->words = wordsOf(item->line);
    if (item->call) {
      item->call->words.clear();
    }
  }
  Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
  if (isSearching()) {
    showMatches();
  } else if (!shown_.empty()) {
    Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
  }
}

QString ActivityModel::lines(const std::vector<int>& rows) const {
  QString text;
  for (const int row : rows) {
    const ActivityEntry& shown = entry(row);
    text += localTime(shown.date);
    for (const ActivityColumn column :
         {ActivityColumn::level, ActivityColumn::subject, ActivityColumn::text}) {
      text += '\t' + words_.words(shown, column);
    }
    if (words_.words(shown, ActivityColumn::text) != shown.original) {
      text += '\t' + shown.original;
    }
    text += '\n';
  }
  return text;
}

QString ActivityModel::allLines() const {
  std::vector<int> rows(shown_.size());
  std::iota(rows.begin(), rows.end(), 0);
  return lines(rows);
}

void ActivityModel::save(const QString& path) {
  saving_.run([path, text = allLines().toUtf8()] { write(path, text); },
              [this, path](const Outcome<void>& outcome) {
                try {
                  if (outcome.failure) {
                    std::rethrow_exception(outcome.failure);
                  }
                  Q_EMIT saved(path);
                } catch (const std::exception& error) {
                  Q_EMIT notSaved(path, QString::fromUtf8(error.what()));
                }
              });
}

int ActivityModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int ActivityModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(std::size(columns));
}

QVariant ActivityModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  const ActivityEntry& shown = entry(index.row());
  switch (role) {
    case Qt::DisplayRole:
      return words_.words(shown, columns[index.column()]);
    case Qt::ToolTipRole:
      // Mark-up of its own, so that mark-up in the entry is not read as such and a long text breaks its
      // lines.
      return QString("<qt>" + shown.original.toHtmlEscaped() + "</qt>");
    case levelRole:
      return static_cast<int>(shown.level);
    default:
      return {};
  }
}

QVariant ActivityModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const bool isHeading =
      orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < columnCount();
  return isHeading ? words_.heading(columns[section]) : QVariant();
}

}  // namespace tarnwell

#pragma once

/// An `ActivityModel` with plain words, a log buffer and a system log that the test writes.

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QTest>
#include <memory>
#include <string>
#include <vector>

#include "App/support/FakeActivity.h"

namespace tarnwell::test {

/// Says the column and the part: "text:hello".
class PlainWords : public ActivityWords {
 public:
  QString heading(ActivityColumn column) const override {
    return QStringList{"Time", "Level", "Subject", "Text"}[static_cast<int>(column)] + suffix;
  }
  QString words(const ActivityEntry& entry, ActivityColumn column) const override {
    switch (column) {
      case ActivityColumn::time:
        return QString::number((entry.date - moment(0)) / std::chrono::seconds(1)) + "s";
      case ActivityColumn::level:
        return QStringList{"Debug", "Info", "Notice", "Error"}[static_cast<int>(entry.level)] + suffix;
      case ActivityColumn::subject:
        return "<" + entry.category + ">";
      case ActivityColumn::text:
        if (entry.call) {
          return QString(entry.call->isTrial ? "trial " : "") + stateName(entry.call->state) +
                 decisionName(entry.call->decision) + ": " + entry.original;
        }
        return entry.text.phrase == LogPhrase::assistantLeft ? "Goodbye" + suffix : entry.original;
    }
    return {};
  }

  QString suffix;

 private:
  static QString stateName(ActivityCall::State state) {
    return QStringList{"begun", "ended", "unusable", "unknown", "broken off"}[static_cast<int>(state)];
  }
  static QString decisionName(LogPhrase decision) {
    return decision == LogPhrase::other                   ? ""
           : decision == LogPhrase::writeAllowed          ? " allowed"
           : decision == LogPhrase::writePreviewed        ? " preview"
           : decision == LogPhrase::writeRefusedReadOnly  ? " read-only"
           : decision == LogPhrase::writeRefusedBySetting ? " off"
                                                          : " no decision";
  }
};

struct ActivityModelTest : testing::Test {
  PlainWords words;
  LogBuffer buffer;
  FakeSystemLog log;
  // The model's thread may ask after the end of a test.
  std::shared_ptr<FakePrograms> programs = std::make_shared<FakePrograms>();
  std::unique_ptr<ActivityModel> model;
  std::unique_ptr<QAbstractItemModelTester> tester;

  void makeModel() {
    model = std::make_unique<ActivityModel>(
        buffer, words, log.follow(), [programs = programs, ask = programs->programs()] { return ask(); });
    tester = std::make_unique<QAbstractItemModelTester>(
        model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    model->follow();
  }
  ~ActivityModelTest() override {
    tester.reset();
    model.reset();
  }

  QString cell(int row, ActivityColumn column) const {
    return model->index(row, static_cast<int>(column)).data().toString();
  }
  std::vector<std::string> texts() const {
    std::vector<std::string> result;
    for (int row = 0; row < model->rowCount(); ++row) {
      result.push_back(cell(row, ActivityColumn::text).toStdString());
    }
    return result;
  }
  bool hasRows(int count) const {
    return QTest::qWaitFor([&] { return model->rowCount() == count; }, 20'000);
  }
};

}  // namespace tarnwell::test

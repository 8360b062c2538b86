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
        return entry.text.phrase == LogPhrase::assistantLeft ? "Goodbye" + suffix : entry.original;
    }
    return {};
  }

  QString suffix;
};

struct ActivityModelTest : testing::Test {
  PlainWords words;
  LogBuffer buffer;
  FakeSystemLog log;
  std::unique_ptr<ActivityModel> model;
  std::unique_ptr<QAbstractItemModelTester> tester;

  void makeModel() {
    model = std::make_unique<ActivityModel>(buffer, words, log.follow());
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
    return QTest::qWaitFor([&] { return model->rowCount() == count; });
  }
};

}  // namespace tarnwell::test

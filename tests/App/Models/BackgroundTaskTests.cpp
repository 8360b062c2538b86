#include "App/Models/BackgroundTask.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <atomic>
#include <future>
#include <stdexcept>
#include <string>

namespace tarnwell {
namespace {

/// Lets the events run until the condition holds.
template <class Condition>
bool eventually(Condition condition) {
  return QTest::qWaitFor(condition, 10'000);
}

TEST(BackgroundTask, answersOnTheThreadOfItsOwner) {
  BackgroundTask task;
  QThread* worked = nullptr;
  QThread* answered = nullptr;
  std::string value;
  task.run(
      [&worked] {
        worked = QThread::currentThread();
        return std::string("done");
      },
      [&](Outcome<std::string> outcome) {
        answered = QThread::currentThread();
        value = *std::move(outcome.value);
      });
  EXPECT_TRUE(task.isRunning());
  ASSERT_TRUE(eventually([&] { return !value.empty(); }));
  EXPECT_EQ(value, "done");
  EXPECT_EQ(answered, QThread::currentThread());
  EXPECT_NE(worked, answered);
  EXPECT_FALSE(task.isRunning());
}

TEST(BackgroundTask, handsOverTheExceptionOfTheWork) {
  BackgroundTask task;
  std::string what;
  task.run([] { throw std::runtime_error("full disk"); },
           [&](const Outcome<void>& outcome) {
             EXPECT_FALSE(outcome.value);
             try {
               std::rethrow_exception(outcome.failure);
             } catch (const std::runtime_error& error) {
               what = error.what();
             }
           });
  ASSERT_TRUE(eventually([&] { return !what.empty(); }));
  EXPECT_EQ(what, "full disk");
}

TEST(BackgroundTask, newerRunDropsTheOlderAnswer) {
  BackgroundTask task;
  std::promise<void> release;
  std::string answers;
  task.run(
      [released = release.get_future().share()] {
        released.wait();
        return 1;
      },
      [&](const Outcome<int>&) { answers += "older"; });
  task.run([] { return 2; }, [&](const Outcome<int>&) { answers += "newer"; });
  ASSERT_TRUE(eventually([&] { return !answers.empty(); }));
  release.set_value();
  QTest::qWait(50);
  EXPECT_EQ(answers, "newer");
}

TEST(BackgroundTask, abandonedRunIsNotAnswered) {
  BackgroundTask task;
  bool isAnswered = false;
  task.run([] { return 1; }, [&](const Outcome<int>&) { isAnswered = true; });
  task.abandon();
  EXPECT_FALSE(task.isRunning());
  QTest::qWait(50);
  EXPECT_FALSE(isAnswered);
}

TEST(BackgroundTask, reportsArriveInOrderBeforeTheAnswer) {
  BackgroundTask task;
  std::string arrived;
  const auto report = task.reporter<int>([&](int step) {
    EXPECT_TRUE(task.isRunning());
    arrived += std::to_string(step);
  });
  task.run(
      [report] {
        report(1);
        report(2);
      },
      [&](const Outcome<void>&) { arrived += "."; });
  ASSERT_TRUE(eventually([&] { return arrived.ends_with('.'); }));
  EXPECT_EQ(arrived, "12.");
}

TEST(BackgroundTask, reportOfAnAbandonedRunIsDropped) {
  BackgroundTask task;
  std::string arrived;
  const auto report = task.reporter<int>([&](int) { arrived += "report"; });
  task.run([report] { report(1); }, [&](const Outcome<void>&) { arrived += "answer"; });
  task.abandon();
  QTest::qWait(50);
  EXPECT_EQ(arrived, "");
}

/// The owner goes while the work runs, and after the work has posted its answer.
TEST(BackgroundTask, destroyedTaskIsNotAnswered) {
  auto isAnswered = std::make_shared<std::atomic<bool>>(false);
  for (const bool isPosted : {false, true}) {
    std::promise<void> release;
    auto returned = std::make_shared<std::promise<void>>();
    {
      BackgroundTask task;
      task.run(
          [released = release.get_future().share(), returned] {
            released.wait();
            returned->set_value();
          },
          [isAnswered](const Outcome<void>&) { *isAnswered = true; });
      if (isPosted) {
        release.set_value();
        returned->get_future().wait();
        QThread::msleep(20);
      }
    }
    if (!isPosted) {
      release.set_value();
    }
    QTest::qWait(50);
    EXPECT_FALSE(*isAnswered);
  }
}

}  // namespace
}  // namespace tarnwell

#include "App/SingleInstance.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <fstream>
#include <memory>

#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

class SingleInstanceTest : public testing::Test {
 protected:
  QString path() const { return QString::fromStdString(directory.path().string()); }

  TemporaryDirectory directory;
};

TEST_F(SingleInstanceTest, secondTellsTheFirstAndIsNotFirst) {
  SingleInstance first(path());
  EXPECT_TRUE(first.isFirst());
  const QSignalSpy again(&first, &SingleInstance::startedAgain);
  for (int start = 1; start <= 3; ++start) {
    const SingleInstance next(path());
    EXPECT_FALSE(next.isFirst());
    ASSERT_TRUE(QTest::qWaitFor([&] { return again.count() == start; }, 10'000));
  }
}

TEST_F(SingleInstanceTest, nextIsFirstAfterTheFirstHasEnded) {
  {
    const SingleInstance first(path());
  }
  const SingleInstance next(path());
  EXPECT_TRUE(next.isFirst());
}

/// A crash leaves the file of the lock and the socket.
TEST_F(SingleInstanceTest, leftoversOfACrashAreNoFirst) {
  std::ofstream(directory / "app.tarnwell.Tarnwell.socket") << "";
  std::ofstream(directory / "app.tarnwell.Tarnwell.lock") << "999999999\ntarnwell-app\nhost\n";
  SingleInstance instance(path());
  EXPECT_TRUE(instance.isFirst());
  const QSignalSpy again(&instance, &SingleInstance::startedAgain);
  const SingleInstance next(path());
  EXPECT_TRUE(QTest::qWaitFor([&] { return again.count() == 1; }, 10'000));
}

TEST_F(SingleInstanceTest, otherUsersHaveADirectoryOfTheirOwn) {
  const TemporaryDirectory other;
  const SingleInstance first(path());
  const SingleInstance ofAnother(QString::fromStdString(other.path().string()));
  EXPECT_TRUE(ofAnother.isFirst());
}

}  // namespace
}  // namespace tarnwell::test

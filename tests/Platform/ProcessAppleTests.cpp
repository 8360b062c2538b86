#include "Platform/Process.h"

#include <climits>
#include <fstream>

#include "apple/FrameworksInMemory.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

class ProcessOnApple : public testing::Test {
 protected:
  void SetUp() override { frameworks = {}; }
  void TearDown() override { EXPECT_EQ(frameworks.liveObjects, objectsBefore); }

  FrameworksInMemory& frameworks = frameworksInMemory();
  const int objectsBefore = frameworks.liveObjects;
};

TEST_F(ProcessOnApple, executablePathIsThatOfTheBundleWithoutSymbolicLinks) {
  TemporaryDirectory directory;
  const auto real = std::filesystem::canonical(directory.path()) / "tarnwell é";
  std::ofstream(real) << "a program";
  std::filesystem::create_symlink(real, directory / "link");
  frameworks.bundleExecutable = (directory / "link").string();
  EXPECT_EQ(executablePath(), real);
}

TEST_F(ProcessOnApple, executablePathIsAbsentWhenTheSystemDoesNotTell) {
  EXPECT_EQ(executablePath(), std::nullopt) << "no file of the bundle";
  frameworks.bundleExecutable = "/nonexistent/tarnwell";
  EXPECT_EQ(executablePath(), std::nullopt) << "no such file";
  frameworks.bundleExecutable = "/" + std::string(PATH_MAX, 'x');
  EXPECT_EQ(executablePath(), std::nullopt) << "a path that is too long";
  frameworks.hasBundle = false;
  EXPECT_EQ(executablePath(), std::nullopt) << "no bundle";
}

TEST_F(ProcessOnApple, invocationNameIsTheFirstWord) {
  std::string name = "./tarnwell";
  frameworks.arguments = {name.data(), nullptr};
  EXPECT_EQ(invocationName(), "./tarnwell");
  frameworks.arguments = {nullptr};
  EXPECT_EQ(invocationName(), "");
}

}  // namespace
}  // namespace tarnwell::test

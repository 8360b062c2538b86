#include "Platform/SDBusLibrary.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "Platform/SecretItems.h"

namespace tarnwell::test {
namespace {

bool isInProcess() { return ::dlopen("libsystemd.so.0", RTLD_LAZY | RTLD_NOLOAD) != nullptr; }

TEST(SDBusLibrary, isLoadedWhenItIsNeededAndNotBefore) {
  systemSecretItems();
  EXPECT_FALSE(isInProcess());
  EXPECT_TRUE(loadSDBusLibrary());
  EXPECT_TRUE(isInProcess());
  sd_bus* bus = nullptr;
  EXPECT_GE(sd_bus_new(&bus), 0);
  sd_bus_close_unref(bus);
}

}  // namespace
}  // namespace tarnwell::test

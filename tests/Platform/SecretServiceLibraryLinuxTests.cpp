#include "Platform/SecretServiceLibrary.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "Platform/SecretItems.h"

namespace tarnwell::test {
namespace {

bool isInProcess() { return ::dlopen("libsecret-1.so.0", RTLD_LAZY | RTLD_NOLOAD) != nullptr; }

TEST(SecretServiceLibrary, isLoadedWhenItIsNeededAndNotBefore) {
  systemSecretItems();
  EXPECT_FALSE(isInProcess());
  EXPECT_TRUE(loadSecretServiceLibrary());
  EXPECT_TRUE(isInProcess());
  EXPECT_TRUE(g_utf8_validate("text", 4, nullptr));
}

}  // namespace
}  // namespace tarnwell::test

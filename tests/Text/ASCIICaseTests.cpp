#include "Text/ASCIICase.h"

namespace tarnwell {
namespace {

TEST(ASCIICase, lettersAndDigitsAreThoseOfASCII) {
  std::string found;
  for (int byte = 0; byte < 256; ++byte) {
    if (isASCIILetterOrDigit(static_cast<char>(byte))) {
      found.push_back(static_cast<char>(byte));
    }
  }
  EXPECT_EQ(found, "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
}

}  // namespace
}  // namespace tarnwell

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

TEST(ASCIICase, onlySomeLettersFoldFromBeyondASCII) {
  for (const char* term : {"otp", "OTP", "2FA", "", "if", "lf", "f i", "tf"}) {
    EXPECT_TRUE(foldsFromASCIIOnly(term)) << term;
  }
  for (const char* term : {"k", "K", "s", "ST", "off", "oFF", "fi", "Fl", "otp\u00E9", "認証"}) {
    EXPECT_FALSE(foldsFromASCIIOnly(term)) << term;
  }
}

}  // namespace
}  // namespace tarnwell

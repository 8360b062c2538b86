#pragma once

#include <string>
#include <string_view>
#include "integration/FakeSecretService.h"

namespace tarnwell::test {

/// The answers of a secret service whose one item is the password of `testEmail`.
FakeSecretService::Answers passwordAnswers(std::string_view password);

/// Bytes as GVariant writes them, as in "[byte 112, 119]".
std::string byteList(std::string_view text);

/// The address of a bus of this test program's own, where a secret service holds the password of
/// `testEmail`. Started with the first call.
std::string busWithPassword();

/// Any bytes as that password, from now on.
void storePassword(std::string_view password);

}  // namespace tarnwell::test

#pragma once

#include <string>
#include <string_view>
#include "integration/FakeSecretService.h"

namespace tarnwell::test {

/// The answers of a secret service whose one item is the password of `testEmail`.
FakeSecretService::Answers passwordAnswers(std::string_view password);

/// Bytes as GVariant writes them, as in "[byte 112, 119]".
std::string byteList(std::string_view text);

/// The address of this test program's own bus, where a secret service has the password of `testEmail`. The
/// first call starts the bus.
std::string busWithPassword();

/// Replaces that password by any bytes.
void storePassword(std::string_view password);

}  // namespace tarnwell::test

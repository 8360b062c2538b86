#pragma once

#include <string>
#include <string_view>

namespace tarnwell::test {

/// The address of a bus of this test program's own, where a secret service holds the password of
/// `testEmail`. Started with the first call.
std::string busWithPassword();

/// Any bytes as that password, from now on.
void storePassword(std::string_view password);

}  // namespace tarnwell::test

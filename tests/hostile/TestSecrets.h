#pragma once

#include <string>

namespace tarnwell::test {

/// The address of a bus of this test program's own, where a secret service holds the password of
/// `testEmail`. Started with the first call.
std::string busWithPassword();

}  // namespace tarnwell::test

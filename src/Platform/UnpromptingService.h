#pragma once

/// The freedesktop Secret Service on the session bus, in a form that never asks the user anything. Linux
/// only; included by source files alone.

#include "Platform/BoundedCalls.h"

namespace tarnwell {

/// Connects to the session bus that the environment names, on a connection of its own, and opens the
/// service there. Whatever makes libsecret prompt fails with `SECRET_ERROR_IS_LOCKED` on the object that is
/// returned. Throws `SecretServiceError`. Does not tell whether any program offers the service: the first
/// request does.
ObjectPointer<SecretService> openUnpromptingService(BoundedCalls& calls);

}  // namespace tarnwell

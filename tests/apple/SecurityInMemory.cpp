#include <Security/Security.h>

#include "apple/ObjectsInMemory.h"

using tarnwell::test::FrameworksInMemory;
using tarnwell::test::frameworksInMemory;
using tarnwell::test::KeychainCall;
using tarnwell::test::utf16;
using tarnwell::test::utf8;

namespace {

FrameworksInMemory& state() { return frameworksInMemory(); }

/// A constant of a framework, which says its own name.
CFStringRef constant(const char* name) { return new __CFString(utf16(name)); }

std::string described(CFTypeRef value) {
  const auto* object = static_cast<const Object*>(value);
  if (const auto* data = dynamic_cast<const __CFData*>(object)) {
    return {reinterpret_cast<const char*>(data->bytes), static_cast<std::size_t>(data->length)};
  }
  if (const auto* string = dynamic_cast<const __CFString*>(object)) {
    std::size_t units = 0;
    return utf8(string->text, units);
  }
  return "true";
}

OSStatus record(const char* name, CFDictionaryRef query) {
  KeychainCall call{name, {}, state().mayInteract, nullptr};
  for (const auto& [key, value] : query->values) {
    call.attributes[described(key)] = described(value);
    if (key == kSecValueData) {
      call.dataBytes = static_cast<CFDataRef>(value)->bytes;
    }
  }
  state().keychainCalls.push_back(std::move(call));
  return state().keychainStatus;
}

}  // namespace

const CFStringRef kSecAttrAccessGroup = constant("access group");
const CFStringRef kSecAttrAccessible = constant("accessible");
const CFStringRef kSecAttrAccessibleWhenUnlocked = constant("when unlocked");
const CFStringRef kSecAttrAccount = constant("account");
const CFStringRef kSecAttrService = constant("service");
const CFStringRef kSecClass = constant("class");
const CFStringRef kSecClassGenericPassword = constant("generic password");
const CFStringRef kSecMatchLimit = constant("match limit");
const CFStringRef kSecMatchLimitOne = constant("one");
const CFStringRef kSecReturnData = constant("return data");
const CFStringRef kSecUseDataProtectionKeychain = constant("data protection");
const CFStringRef kSecValueData = constant("data");

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result) {
  const OSStatus status = record("copy", query);
  if (state().found == FrameworksInMemory::Found::text) {
    *result = new __CFString(utf16(state().foundBytes));
  } else if (state().found == FrameworksInMemory::Found::data) {
    *result = new __CFData(reinterpret_cast<const UInt8*>(state().foundBytes.data()),
                           static_cast<CFIndex>(state().foundBytes.size()));
  }
  return status;
}

OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef* /*result*/) { return record("add", attributes); }

OSStatus SecItemDelete(CFDictionaryRef query) { return record("delete", query); }

CFStringRef SecCopyErrorMessageString(OSStatus status, void* /*reserved*/) {
  auto found = state().messages.find(status);
  return found == state().messages.end() ? nullptr : new __CFString(utf16(found->second));
}

OSStatus SecKeychainGetUserInteractionAllowed(Boolean* isAllowed) {
  *isAllowed = state().mayInteract;
  return state().interactionStatus;
}

OSStatus SecKeychainSetUserInteractionAllowed(Boolean isAllowed) {
  state().mayInteract = isAllowed;
  return state().interactionStatus;
}

OSStatus SecKeychainGetStatus(SecKeychainRef keychain, SecKeychainStatus* status) {
  *status = keychain == nullptr ? state().keychainState : 0;
  return state().keychainStateStatus;
}

OSStatus SecKeychainUnlock(SecKeychainRef keychain, UInt32, const void*, Boolean usePassword) {
  if (keychain != nullptr || usePassword != 0) {
    return errSecParam;
  }
  ++state().unlockRequests;
  return state().unlockStatus;
}

#pragma once

/// The part of the Security framework that src/Platform uses, declared from its public documentation.

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

extern const CFStringRef kSecAttrAccessGroup;
extern const CFStringRef kSecAttrAccessible;
extern const CFStringRef kSecAttrAccessibleWhenUnlocked;
extern const CFStringRef kSecAttrAccount;
extern const CFStringRef kSecAttrService;
extern const CFStringRef kSecClass;
extern const CFStringRef kSecClassGenericPassword;
extern const CFStringRef kSecMatchLimit;
extern const CFStringRef kSecMatchLimitOne;
extern const CFStringRef kSecReturnData;
extern const CFStringRef kSecUseDataProtectionKeychain;
extern const CFStringRef kSecValueData;

enum : OSStatus {
  errSecSuccess = 0,
  errSecParam = -50,
  errSecNotAvailable = -25291,
  errSecDuplicateItem = -25299,
  errSecItemNotFound = -25300,
  errSecInteractionNotAllowed = -25308,
  errSecInternalError = -26276,
  errSecMissingEntitlement = -34018,
  errSecNoDefaultKeychain = -25307,
  errSecUserCanceled = -128,
};

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result);
OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef* result);
OSStatus SecItemDelete(CFDictionaryRef query);
CFStringRef SecCopyErrorMessageString(OSStatus status, void* reserved);

__attribute__((deprecated)) OSStatus SecKeychainGetUserInteractionAllowed(Boolean* state);
__attribute__((deprecated)) OSStatus SecKeychainSetUserInteractionAllowed(Boolean state);

using SecKeychainRef = struct OpaqueSecKeychainRef*;
using SecKeychainStatus = UInt32;
enum : SecKeychainStatus { kSecUnlockStateStatus = 1 };
__attribute__((deprecated)) OSStatus SecKeychainGetStatus(SecKeychainRef keychain, SecKeychainStatus* status);
__attribute__((deprecated)) OSStatus SecKeychainUnlock(SecKeychainRef keychain, UInt32 length,
                                                       const void* password, Boolean usePassword);
}

#include "Platform/Secrets/SecretItems.h"

#include <Security/Security.h>

#include "Platform/CoreFoundationObjects.h"

namespace tarnwell {
namespace {

// The framework's statuses pass through unchanged.
static_assert(SecretStatus::success == errSecSuccess);
static_assert(SecretStatus::badParameter == errSecParam);
static_assert(SecretStatus::notAvailable == errSecNotAvailable);
static_assert(SecretStatus::duplicateItem == errSecDuplicateItem);
static_assert(SecretStatus::itemNotFound == errSecItemNotFound);
static_assert(SecretStatus::interactionNotAllowed == errSecInteractionNotAllowed);
static_assert(SecretStatus::missingEntitlement == errSecMissingEntitlement);
static_assert(SecretStatus::internalError == errSecInternalError);

// These calls are deprecated together with the file-based keychains. Only they keep those keychains from
// showing a dialogue: the attributes that forbid dialogues work in the data-protection keychain alone.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

/// While this object lives, a call that needs an answer from the user fails with `interactionNotAllowed`. The
/// setting belongs to the whole process, so the destructor restores it.
class WithoutInteraction {
 public:
  WithoutInteraction() {
    status_ = SecKeychainGetUserInteractionAllowed(&wasAllowed_);
    if (status_ == errSecSuccess) {
      status_ = SecKeychainSetUserInteractionAllowed(false);
    }
  }
  ~WithoutInteraction() {
    if (status_ == errSecSuccess) {
      SecKeychainSetUserInteractionAllowed(wasAllowed_);
    }
  }
  WithoutInteraction(const WithoutInteraction&) = delete;
  WithoutInteraction& operator=(const WithoutInteraction&) = delete;

  /// An error when the setting could not be changed.
  OSStatus status() const { return status_; }

 private:
  Boolean wasAllowed_ = true;
  OSStatus status_ = errSecSuccess;
};

#pragma GCC diagnostic pop

using Attributes = CFPointer<CFMutableDictionaryRef>;

bool insertText(CFMutableDictionaryRef attributes, CFStringRef name, std::string_view text) {
  auto value = stringObject(text);
  if (!value) {
    return false;
  }
  CFDictionarySetValue(attributes, name, value.get());
  return true;
}

/// The attributes that identify an item. Null when a text is not valid UTF-8. A query with an access group
/// goes to the data-protection keychain, because only that one has access groups.
Attributes attributesOf(const SecretItemQuery& query) {
  Attributes attributes(CFDictionaryCreateMutable(kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks,
                                                  &kCFTypeDictionaryValueCallBacks));
  CFDictionarySetValue(attributes.get(), kSecClass, kSecClassGenericPassword);
  bool isText = insertText(attributes.get(), kSecAttrService, query.service) &&
                insertText(attributes.get(), kSecAttrAccount, query.account);
  if (query.accessGroup) {
    isText = isText && insertText(attributes.get(), kSecAttrAccessGroup, *query.accessGroup);
    CFDictionarySetValue(attributes.get(), kSecUseDataProtectionKeychain, kCFBooleanTrue);
  }
  return isText ? std::move(attributes) : nullptr;
}

class KeychainItems : public SecretItems {
 public:
  std::int32_t copyMatching(const SecretItemQuery& query, Receiver& receiver) override {
    return ask(query, [&](CFMutableDictionaryRef attributes) {
      CFDictionarySetValue(attributes, kSecReturnData, kCFBooleanTrue);
      CFDictionarySetValue(attributes, kSecMatchLimit, kSecMatchLimitOne);
      CFTypeRef found = nullptr;
      OSStatus status = SecItemCopyMatching(attributes, &found);
      CFPointer<CFTypeRef> owner(found);
      if (status == errSecSuccess && found != nullptr && CFGetTypeID(found) == CFDataGetTypeID()) {
        auto data = static_cast<CFDataRef>(found);
        receiver.receive({reinterpret_cast<const char*>(CFDataGetBytePtr(data)),
                          static_cast<std::size_t>(CFDataGetLength(data))});
      }
      return status;
    });
  }

  std::int32_t add(const SecretItemQuery& query, std::string_view data) override {
    return ask(query, [&](CFMutableDictionaryRef attributes) {
      // No copy: the object refers to the bytes of the caller and frees nothing.
      CFPointer<CFDataRef> bytes(
          CFDataCreateWithBytesNoCopy(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(data.data()),
                                      static_cast<CFIndex>(data.size()), kCFAllocatorNull));
      CFDictionarySetValue(attributes, kSecValueData, bytes.get());
      CFDictionarySetValue(attributes, kSecAttrAccessible, kSecAttrAccessibleWhenUnlocked);
      return SecItemAdd(attributes, nullptr);
    });
  }

  std::int32_t remove(const SecretItemQuery& query) override {
    return ask(query, [](CFMutableDictionaryRef attributes) { return SecItemDelete(attributes); });
  }

  std::optional<std::string> message(std::int32_t status) override {
    CFPointer<CFStringRef> sentence(SecCopyErrorMessageString(status, nullptr));
    return sentence ? utf8Text(sentence.get()) : std::nullopt;
  }

 private:
  template <class Call>
  static std::int32_t ask(const SecretItemQuery& query, const Call& call) {
    Attributes attributes = attributesOf(query);
    if (!attributes) {
      return SecretStatus::badParameter;
    }
    WithoutInteraction withoutInteraction;
    if (withoutInteraction.status() != errSecSuccess) {
      return withoutInteraction.status();
    }
    return call(attributes.get());
  }
};

}  // namespace

SecretItems& systemSecretItems() {
  static KeychainItems items;
  return items;
}

}  // namespace tarnwell

// Mistakes that scripts/check-apple must find, each with the compiler's words for it. A check that lets one
// of them pass would let anything pass.

#include <Security/Security.h>
#include <errno.h>
#include <os/log.h>
#include <sys/socket.h>
#include <QString>

// expected-note@*:* 0+ {{}}

void wrongTypes(CFMutableDictionaryRef attributes, CFStringRef text) {
  SecItemDelete(text);            // expected-error {{no matching function for call to 'SecItemDelete'}}
  SecItemAdd(attributes, &text);  // expected-error {{no matching function for call to 'SecItemAdd'}}
  CFDictionarySetValue(attributes, text, 1);  // expected-error {{no matching function}}
  CFStringRef name = kCFBooleanTrue;  // expected-error {{cannot initialize a variable of type 'CFStringRef'}}
  OSStatus status = attributes;       // expected-error {{cannot initialize a variable of type 'OSStatus'}}
  (void)name;
  (void)status;
}

void wrongLogging(os_log_t log, const char* text) {
  os_log_with_type(log, OS_LOG_TYPE_INFO, "%{public}d",
                   text);                        // expected-error {{format specifies type 'int'}}
  os_log_with_type(log, 1, "%{public}s", text);  // expected-error {{no matching function}}
}

void wordsOfLinux(int socket) {
  accept4(socket, nullptr, nullptr, 0);  // expected-error {{use of undeclared identifier 'accept4'}}
  (void)program_invocation_name;  // expected-error {{use of undeclared identifier 'program_invocation_name'}}
}

#ifdef Q_OS_MACOS
int narrowed(const QString& text) { return text.size(); }  // expected-error {{implicit conversion loses}}
#endif
#ifdef Q_OS_LINUX
#error Qt takes this for Linux
#endif
int narrowed(long size) { return size; }  // expected-error {{implicit conversion loses}}
int deprecated() { return SecKeychainSetUserInteractionAllowed(0); }  // expected-error {{is deprecated}}

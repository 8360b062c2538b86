#pragma once

/// The one way to log.
///
/// A call passes its message to the system's log, as public text under the application identifier and the
/// category, and appends it to `LogBuffer::shared()`. It writes nothing to a standard stream. Private data
/// must not be in a message: no password, mail text, subject or search text. An e-mail address goes in only
/// through `redact`, and a server's text only through the client's safe summary. The calls do not change a
/// message. Pass a text from elsewhere through `redactAddresses` first.
///
///     AppLogger::info(AppLogger::Category::imap, "Authenticated to IMAP for " + AppLogger::redact(email));
///
/// Threads: any, at the same time.

#include <string>
#include <string_view>

#include "Platform/SystemLog.h"

namespace tarnwell::AppLogger {

enum class Category { app, mcp, imap, security, tool, http };

/// "app", "mcp", "imap", "security", "tool" or "http".
std::string_view rawValue(Category category);

void debug(Category category, std::string_view message);
void info(Category category, std::string_view message);
void notice(Category category, std::string_view message);
void error(Category category, std::string_view message);

/// For tests: sends the messages of all calls to another system log and returns the log used before. The new
/// log must outlive its use.
const SystemLog& replaceSystemLog(const SystemLog& log);

/// Masks an address. Keeps at most the first two user-perceived characters before the first at sign, then
/// writes "***", then everything from the at sign on. A text without an at sign becomes "***".
std::string redact(std::string_view email);

/// Masks everything in the text that looks like an address, as `redact` does. An address is an at sign with a
/// local part before it and anything but a delimiter after it. The local part reaches back to white space, a
/// bracket, a comma or another delimiter, or it is a text in double quotes. Chinese, Japanese and Korean put
/// no blank before an address: unless the local part ends in one of their characters, it begins after the
/// last one.
std::string redactAddresses(std::string_view text);

}  // namespace tarnwell::AppLogger

#pragma once

/// The one way to log.
///
/// A call hands its message to the system's log, as public text under the application identifier and
/// the category, and appends it to `LogBuffer::shared()`. Nothing goes to a standard stream. What must
/// stay private never enters a message: passwords, mail text, subjects and search texts not at all, an
/// e-mail address only through `redact`, a server's text only through the client's safe summary. The calls
/// change nothing of a message: whoever logs a text that came from elsewhere passes it through
/// `redactAddresses` first.
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

/// Makes the calls write to another system log, which must outlive them, and returns the one in use until
/// then. For tests, which listen at an address of their own.
const SystemLog& replaceSystemLog(const SystemLog& log);

/// Masks an address: at most the first two user-perceived characters before the first at sign, "***",
/// and everything from the at sign on. A text without an at sign becomes "***".
std::string redact(std::string_view email);

/// The text with whatever looks like an address in it masked as by `redact`: an at sign with a local part
/// before it and anything but a delimiter after it. The local part reaches back to white space, a bracket, a
/// comma or the like, or is a text in double quotes; one that does not end in Chinese, Japanese or Korean
/// characters begins behind the last of them, since these languages put no blank before an address.
std::string redactAddresses(std::string_view text);

}  // namespace tarnwell::AppLogger

#include "MCP/Tools/LogText.h"

#include "Core/AppLogger.h"
#include "IMAP/Connection/IMAPError.h"
#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell {

std::string loggable(std::string_view text, std::size_t count) {
  constexpr std::size_t bytesForEach = 8;
  const std::string masked = AppLogger::redactAddresses(text);
  return std::string(characterPrefix(bytePrefix(masked, count * bytesForEach), count));
}

std::string loggable(const IMAPError& error) {
  if (error.kind() == IMAPError::Kind::folderNotFound) {
    return loggable(error.description());
  }
  constexpr std::size_t maximumLength = 1000;  // more than twice the program's longest own text
  return loggable(error.description(), maximumLength);
}

std::string counted(std::int64_t count, std::string_view noun) {
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

}  // namespace tarnwell

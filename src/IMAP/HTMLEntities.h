#pragma once

#include <string>
#include <string_view>

namespace tarnwell::IMAPParser {

/// The character references of mail decoded: twelve named ones and the numeric ones. Any other stays as
/// it stands. Linear in the text.
std::string decodeHTMLEntities(std::string_view text);

}  // namespace tarnwell::IMAPParser

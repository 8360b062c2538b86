#pragma once

#include <string>
#include <string_view>

namespace tarnwell::IMAPParser {

/// Decodes the character references of mail: twelve named ones and the numeric ones. Any other stays as
/// it stands. Linear in the text.
void decodeHTMLEntities(std::string& text);

}  // namespace tarnwell::IMAPParser

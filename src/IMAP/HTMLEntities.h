#pragma once

#include <string>

namespace tarnwell::IMAPParser {

/// The character references of mail decoded: twelve named ones and the numeric ones. Any other stays as
/// it stands. Linear in the text.
std::string decodeHTMLEntities(std::string text);

}  // namespace tarnwell::IMAPParser

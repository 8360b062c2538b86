#pragma once

/// Texts of strangers, made fit to be shown. What could reorder the text around it, fake a line of the page
/// or hide something from the eye that an assistant reads becomes visible:
///
///     harmlessLine("gpj\u202etxt.exe");   // "gpj‹U+202E›txt.exe"
///
/// That concerns control characters, the embeddings, overrides and isolates of UAX #9, letters and operators
/// without a shape, tag characters, and variation selectors that select nothing. A joiner or another
/// character without a width stays where it stands alone, because scripts need it: several in a row could be
/// a message.
///
/// Threads: all functions are pure.

#include <QString>
#include <string_view>

namespace tarnwell {

/// One line: a line end or a tab becomes a blank. A direction mark that stands alone goes. The text is UTF-8.
QString harmlessLine(std::string_view text);
/// Keeps line ends and tabs. Shows direction marks too.
QString harmlessText(std::string_view text);

/// For a stranger's text within a sentence: its direction of writing stays its own.
QString isolated(const QString& text);

}  // namespace tarnwell

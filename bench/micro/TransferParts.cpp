#include <gmime/gmime.h>

#include <memory>
#include <string_view>

#include "IMAP/Decoding/TextDecoding.h"
#include "MailInputs.h"
#include "Parts.h"

namespace tarnwell::bench {

namespace {

using TextDecoding::Underscore;

/// One round of GMime's decoder, with output memory that is not cleared first.
std::size_t decodeByGMime(GMimeContentEncoding encoding, std::string_view text) {
  GMimeEncoding decoder;
  g_mime_encoding_init_decode(&decoder, encoding);
  const auto output = std::make_unique_for_overwrite<char[]>(g_mime_encoding_outlen(&decoder, text.size()));
  return g_mime_encoding_step(&decoder, text.data(), text.size(), output.get());
}

void addBoth(std::vector<Part>& parts, const std::string& name, const std::string& text,
             GMimeContentEncoding encoding, std::function<std::size_t()> work) {
  const std::string rival = name + ", GMime";
  parts.push_back({.name = name,
                   .bytes = text.size(),
                   .goal = {.megabytesPerSecond = 1000, .fasterThan = {rival}},
                   .work = std::move(work)});
  parts.push_back({.name = rival, .bytes = text.size(), .work = [encoding, text] {
                     return decodeByGMime(encoding, text);
                   }});
}

void addQuotedPrintable(std::vector<Part>& parts, const std::string& name, const std::string& text) {
  addBoth(parts, name, text, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE,
          [text] { return TextDecoding::decodeQuotedPrintable(text, Underscore::isUnderscore).size(); });
}

}  // namespace

void addTransferParts(std::vector<Part>& parts) {
  constexpr std::size_t size = 1'000'000;
  g_mime_init();
  const std::string base64 = base64Lines(randomBytes(size));
  addBoth(parts, "base64", base64, GMIME_CONTENT_ENCODING_BASE64,
          [base64] { return TextDecoding::decodeBase64(base64)->size(); });
  addQuotedPrintable(parts, "quoted-printable, HTML newsletter", quotedPrintableLines(newsletter(size)));
  addQuotedPrintable(parts, "quoted-printable, Latin text", quotedPrintableLines(prose(Script::latin, size)));
  addQuotedPrintable(parts, "quoted-printable, Japanese text",
                     quotedPrintableLines(prose(Script::japanese, size)));
}

}  // namespace tarnwell::bench

#include <gmime/gmime.h>

#include <memory>

#include "IMAP/Decoding/TextDecoding.h"
#include "MailInputs.h"
#include "Parts.h"

namespace tarnwell::bench {

namespace {

struct Free {
  void operator()(char* text) const { g_free(text); }
};

std::size_t sizeOf(const std::vector<std::string>& fields) {
  std::size_t size = 0;
  for (const std::string& field : fields) {
    size += field.size();
  }
  return size;
}

std::size_t decodeFields(const std::vector<std::string>& fields) {
  std::size_t size = 0;
  for (const std::string& field : fields) {
    size += TextDecoding::decodeRFC2047(field)->size();
  }
  return size;
}

std::size_t decodeFieldsByGMime(const std::vector<std::string>& fields) {
  std::size_t size = 0;
  for (const std::string& field : fields) {
    const std::unique_ptr<char, Free> text(g_mime_utils_header_decode_text(nullptr, field.c_str()));
    size += std::string_view(text.get()).size();
  }
  return size;
}

}  // namespace

void addTextParts(std::vector<Part>& parts) {
  constexpr std::size_t size = 1'000'000;
  const std::vector<std::string> fields = headerFields(1000);
  parts.push_back({.name = "encoded words, 1,000 header fields",
                   .bytes = sizeOf(fields),
                   .goal = {.fasterThan = {"encoded words, GMime"}},
                   .work = [fields] { return decodeFields(fields); }});
  parts.push_back({.name = "encoded words, GMime", .bytes = sizeOf(fields), .work = [fields] {
                     return decodeFieldsByGMime(fields);
                   }});

  for (const std::size_t length : {std::size_t{50'000}, size}) {
    const std::string html = newsletter(length);
    parts.push_back({.name = "htmlToText, newsletter of " + std::to_string(length / 1000) + " kB",
                     .bytes = html.size(),
                     .goal = {.megabytesPerSecond = 300},
                     .work = [html] { return TextDecoding::htmlToText(html).size(); }});
  }

  const std::string dense =
      repeated("<tr><td><b>Ferry</b></td><td>6:10</td><td><i>daily</i></td></tr>\r\n", size);
  parts.push_back({.name = "htmlToText, a table of short cells", .bytes = dense.size(), .work = [dense] {
                     return TextDecoding::htmlToText(dense).size();
                   }});
}

}  // namespace tarnwell::bench

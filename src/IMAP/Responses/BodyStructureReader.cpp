#include <deque>

#include "IMAP/Responses/IMAPParser.h"
#include "IMAP/Responses/TokenReading.h"
#include "Text/ASCIICase.h"

namespace tarnwell {
namespace {

/// RFC 3501, section 9: body-fld-param = "(" string SP string *(SP string SP string) ")" / nil
/// The first parameter with the name decides, even when its value is not a text.
std::optional<std::string> paramValue(const std::optional<IMAPToken>& parameters, std::string_view key) {
  const IMAPTokenList list = listOf(parameters);
  for (auto element = list.begin(); element != list.end(); ++element) {
    const IMAPToken name = *element;
    if (++element == list.end()) {
      break;
    }
    if (name.textEquals(key)) {
      return (*element).text();
    }
  }
  return std::nullopt;
}

/// RFC 3501, section 9: body-fld-dsp = "(" string SP body-fld-param ")" / nil
/// Deliberate: the first word shows a disposition in any position, because servers omit extension fields
/// before it or add some.
bool isAttachment(IMAPTokenList part) {
  for (const IMAPToken field : part) {
    const IMAPTokenList disposition = field.list();
    if (disposition.empty()) {
      continue;
    }
    const IMAPToken word = *disposition.begin();
    if (word.textEquals("attachment")) {
      return true;
    }
    if (word.textEquals("inline")) {
      return false;
    }
  }
  return false;
}

/// Walks a structure of any depth with its own stack, and keeps only the preferred text part. A section
/// number grows with the depth. It is made only for the preferred part, at most twice: a plain part replaces
/// an HTML part.
class BodyStructureWalk {
 public:
  IMAPBodyInfo walk(IMAPTokenList structure) && {
    std::optional<IMAPTokenList> body = structure;
    while (body) {
      read(*body);
      body = nextChild();
    }
    return std::move(info_);
  }

 private:
  /// A multipart whose children the walk is visiting.
  struct Multipart {
    IMAPTokenList::Iterator next;
    IMAPTokenList::Iterator end;
    std::size_t childNumber = 0;  // of the child entered last, counted from 1
  };

  /// RFC 3501, section 9: body            = "(" (body-type-1part / body-type-mpart) ")"
  ///                      body-type-mpart = 1*body SP media-subtype [SP body-ext-mpart]
  void read(IMAPTokenList body) {
    if (body.empty()) {
      return;
    }
    if (isList(*body.begin())) {
      open_.push_back({body.begin(), body.end()});
    } else {
      readSinglePart(body);
    }
  }

  /// The next child of the innermost multipart that has children left. The children are the lists at the
  /// beginning of a multipart. Absent at the end of the walk.
  std::optional<IMAPTokenList> nextChild() {
    while (!open_.empty()) {
      Multipart& multipart = open_.back();
      if (multipart.next != multipart.end && isList(*multipart.next)) {
        ++multipart.childNumber;
        return (*multipart.next++).list();
      }
      open_.pop_back();
    }
    return std::nullopt;
  }

  /// RFC 3501, section 9: body-type-1part = (body-type-basic / body-type-msg / body-type-text)
  ///                                        [SP body-ext-1part]
  ///                      body-fields     = body-fld-param SP body-fld-id SP body-fld-desc SP
  ///                                        body-fld-enc SP body-fld-octets
  void readSinglePart(IMAPTokenList part) {
    ElementReader fields(part);
    const auto type = fields.next();
    const auto subtype = fields.next();
    const auto parameters = fields.next();
    fields.next();  // the id
    fields.next();  // the description
    const auto encoding = fields.next();
    const bool isText = type->textEquals("text");
    // Deliberate: an inline image or an application part is an attachment even without a disposition. A
    // message inside the message is one only with a disposition.
    const bool countsAlways = !isText && !type->textEquals("multipart") && !type->textEquals("message");
    if (countsAlways || isAttachment(part)) {
      info_.hasAttachments = true;
    } else if (isText) {
      // Every text that is not HTML counts as plain, also a calendar or a table.
      const bool isHTML = subtype && subtype->textEquals("html");
      if (!info_.preferredText || (info_.preferredText->isHTML && !isHTML)) {
        info_.preferredText =
            IMAPTextPart{sectionNumber(), asciiLowercased(textOf(encoding).value_or("7bit")),
                         paramValue(parameters, "charset"), isHTML};
      }
    }
  }

  /// RFC 3501, section 6.4.5: the part numbers from the outside in. The only part of a message that is not a
  /// multipart has the number 1.
  std::string sectionNumber() const {
    if (open_.empty()) {
      return "1";
    }
    std::string section;
    for (const Multipart& multipart : open_) {
      if (!section.empty()) {
        section += '.';
      }
      section += std::to_string(multipart.childNumber);
    }
    return section;
  }

  std::deque<Multipart> open_;  // from the outside in; growing does not move the elements
  IMAPBodyInfo info_;
};

}  // namespace

IMAPBodyInfo IMAPParser::parseBodyStructure(IMAPTokenList elements) {
  return BodyStructureWalk().walk(elements);
}

}  // namespace tarnwell

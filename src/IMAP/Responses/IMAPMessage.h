#pragma once

/// The summary of one message: envelope, flags and facts from the body structure (RFC 3501, section 7.4.2).
/// Threads: plain values.

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

namespace tarnwell {

struct IMAPAddress {
  /// The display name, decoded.
  std::optional<std::string> name;
  /// The local part.
  std::optional<std::string> mailbox;
  /// The domain.
  std::optional<std::string> host;

  /// Local part, at sign, domain. Absent when either part is missing. An empty part counts as present.
  std::optional<std::string> email() const;

  /// For people: `name <email>`. Without a name only the address, without an address only the name, without
  /// both the empty text.
  std::string display() const;

  bool operator==(const IMAPAddress&) const = default;
};

struct IMAPEnvelope {
  /// The Date field as sent, not parsed.
  std::optional<std::string> date;
  /// Decoded.
  std::optional<std::string> subject;
  std::vector<IMAPAddress> from;
  std::vector<IMAPAddress> sender;
  std::vector<IMAPAddress> replyTo;
  std::vector<IMAPAddress> to;
  std::vector<IMAPAddress> cc;
  std::vector<IMAPAddress> bcc;
  std::optional<std::string> inReplyTo;
  std::optional<std::string> messageID;

  /// The envelope without any data.
  static const IMAPEnvelope empty;

  bool operator==(const IMAPEnvelope&) const = default;
};

/// Where the text of a message lies.
struct IMAPTextPart {
  /// The section number, such as "1" or "1.2" (RFC 3501, section 6.4.5).
  std::string section;
  /// The content transfer encoding, lower-cased.
  std::string encoding;
  /// The charset parameter as sent.
  std::optional<std::string> charset;
  /// The part is text/html.
  bool isHTML = false;

  bool operator==(const IMAPTextPart&) const = default;
};

/// Facts from the body structure.
struct IMAPBodyInfo {
  bool hasAttachments = false;
  /// The part to read, if there is one.
  std::optional<IMAPTextPart> preferredText;

  /// For a body structure that could not be read.
  static const IMAPBodyInfo unknown;

  bool operator==(const IMAPBodyInfo&) const = default;
};

/// The beginning of the subject and of the first sender's name as the server sent them, in any charset. Only
/// the detector uses them (Readings.h).
struct HeaderBytes {
  std::string subject;
  std::string sender;

  bool operator==(const HeaderBytes&) const = default;
};

struct IMAPMessage {
  std::uint32_t uid = 0;
  /// As the server sent them.
  std::vector<std::string> flags;
  /// INTERNALDATE as sent, not parsed.
  std::optional<std::string> internalDate;
  IMAPEnvelope envelope;
  IMAPBodyInfo bodyInfo;
  HeaderBytes headerBytes;

  /// True when no flag is \Seen, in any letter case.
  bool isUnread() const;
  bool hasAttachments() const { return bodyInfo.hasAttachments; }

  bool operator==(const IMAPMessage&) const = default;
};

/// Keys are the field names. Absent texts are left out; lists are always written. Reading throws the JSON
/// library's exception when a list is missing or a field has the wrong type.
void to_json(nlohmann::json& json, const IMAPAddress& address);
void from_json(const nlohmann::json& json, IMAPAddress& address);
void to_json(nlohmann::json& json, const IMAPEnvelope& envelope);
void from_json(const nlohmann::json& json, IMAPEnvelope& envelope);

}  // namespace tarnwell

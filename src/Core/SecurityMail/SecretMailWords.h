#pragma once

/// The words by which `SecretMailRule` recognises mail with a code or an account link, as data.
///
/// Terms are in lower case and in the form of `foldedForScanning`, with straight apostrophes. How a term
/// matches:
/// - Letter case does not matter.
/// - A blank in a term matches a blank, a hyphen or nothing: "sign in" also matches "sign-in" and "signin".
/// - A term that begins or ends with a Latin letter or a digit must begin or end a word there. It may have an
///   "s" after it.
/// - A blank between two Japanese characters of the text is ignored.
/// - When the longest term at a place names another number (role `other`), only it counts. Otherwise all
///   terms that begin there count.
///
/// Threads: constants; any thread.

#include <cstdint>
#include <span>
#include <string_view>

namespace tarnwell {

/// What a word says about a mail. A term may have several roles.
using MailRoles = std::uint32_t;

namespace mail_role {

// Codes.
constexpr MailRoles codeName = 1U << 0;    // names a one-time code and nothing else
constexpr MailRoles code = 1U << 1;        // may name a one-time code
constexpr MailRoles other = 1U << 2;       // names another code or number; words inside it do not count
constexpr MailRoles handOver = 1U << 3;    // hands something over: "enter", "below"
constexpr MailRoles signIn = 1U << 4;      // the mail is about signing in or confirming
constexpr MailRoles shortLived = 1U << 5;  // something expires, is used once, or was asked for
constexpr MailRoles mistake = 1U << 6;     // what to do if the user did not ask for it
constexpr MailRoles elsewhere = 1U << 7;   // the mail is about parcels, doors, meetings, sales, failures

constexpr MailRoles secret = 1U << 8;  // nobody else may know it

// Account links.
constexpr MailRoles resets = 1U << 9;      // an action on a password
constexpr MailRoles confirms = 1U << 10;   // an action on an account, an address or a registration
constexpr MailRoles completes = 1U << 11;  // an action on a registration
constexpr MailRoles signsIn = 1U << 12;    // an action that needs no object
constexpr MailRoles password = 1U << 13;   // the objects of these actions
constexpr MailRoles account = 1U << 14;
constexpr MailRoles registration = 1U << 15;
constexpr MailRoles matter = 1U << 16;       // another object, which ends the search for one
constexpr MailRoles linkName = 1U << 17;     // action and object in one term
constexpr MailRoles press = 1U << 18;        // a link, or an invitation to press
constexpr MailRoles linkTerms = 1U << 19;    // a link that expires or works once, a sign-in not asked for
constexpr MailRoles done = 1U << 20;         // the action before it is over
constexpr MailRoles advice = 1U << 21;       // a password may or should be changed: a notice, not a link
constexpr MailRoles linkSubject = 1U << 22;  // names a link when it is in a subject, and nothing elsewhere

}  // namespace mail_role

/// One row: the roles, and the terms with a bar between them. A term in several rows has the roles of all of
/// them.
struct SecretMailWords {
  MailRoles roles;
  std::string_view terms;
};

/// The three tables: English names of codes and of other numbers; the English words around them and words
/// about links; all of these in Japanese.
std::span<const SecretMailWords> englishCodeWords();
std::span<const SecretMailWords> englishContextWords();
std::span<const SecretMailWords> japaneseSecretMailWords();

}  // namespace tarnwell

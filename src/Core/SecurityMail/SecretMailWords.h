#pragma once

/// The words by which `SecretMailRule` knows mail that carries a code or an account link, as data.
///
/// Terms are in lower case and in the form of `foldedForScanning`, with straight apostrophes. In a text,
/// letter case does not matter; a blank in a term stands for a blank, a hyphen or nothing ("sign in" is also
/// "sign-in" and "signin"); a term that begins or ends with a Latin letter or a digit does so at the end of a
/// word, but for an "s" behind it; a blank between two Japanese characters of the text is passed over. Where
/// the longest of the terms that begin at one place is another number's name, it counts alone; else all do.
///
/// Threads: constants; any thread.

#include <cstdint>
#include <span>
#include <string_view>

namespace tarnwell {

/// What a word says about a mail. A term may say several things.
using MailRoles = std::uint32_t;

namespace mail_role {

// Codes.
constexpr MailRoles codeName = 1U << 0;    // names a one-time code and nothing else
constexpr MailRoles code = 1U << 1;        // may name one
constexpr MailRoles other = 1U << 2;       // names another code or number; words inside of it do not count
constexpr MailRoles handOver = 1U << 3;    // hands something over: "enter", "below"
constexpr MailRoles signIn = 1U << 4;      // the mail is about signing in or confirming
constexpr MailRoles shortLived = 1U << 5;  // something expires, is used once, was asked for
constexpr MailRoles mistake = 1U << 6;     // what to do when it was not you
constexpr MailRoles elsewhere = 1U << 7;   // the mail is about parcels, doors, meetings, sales, failures

constexpr MailRoles secret = 1U << 8;  // nobody else may know

// Account links.
constexpr MailRoles resets = 1U << 9;      // an action on a password
constexpr MailRoles confirms = 1U << 10;   // an action on an account, an address or a registration
constexpr MailRoles completes = 1U << 11;  // an action on a registration
constexpr MailRoles signsIn = 1U << 12;    // an action that needs no object
constexpr MailRoles password = 1U << 13;   // objects
constexpr MailRoles account = 1U << 14;
constexpr MailRoles registration = 1U << 15;
constexpr MailRoles matter = 1U << 16;       // an object of another kind, which ends the search for one
constexpr MailRoles linkName = 1U << 17;     // action and object in one
constexpr MailRoles press = 1U << 18;        // a link, or an invitation to press
constexpr MailRoles linkTerms = 1U << 19;    // a link that expires or works once, a sign-in not asked for
constexpr MailRoles done = 1U << 20;         // the action before it is over
constexpr MailRoles advice = 1U << 21;       // a password may or should be changed: a notice, not a link
constexpr MailRoles linkSubject = 1U << 22;  // names a link as a subject, and nothing elsewhere

}  // namespace mail_role

/// One row: what its words say, and the words, with a bar between them. A word may stand in several rows and
/// says all of it.
struct SecretMailWords {
  MailRoles roles;
  std::string_view terms;
};

/// The three tables: what is a code and what is another number; what surrounds them, and links; both in
/// Japanese.
std::span<const SecretMailWords> englishCodeWords();
std::span<const SecretMailWords> englishContextWords();
std::span<const SecretMailWords> japaneseSecretMailWords();

}  // namespace tarnwell

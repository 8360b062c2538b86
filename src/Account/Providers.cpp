#include "Account/Providers.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <utility>

#include "Text/ASCIICase.h"

namespace tarnwell {

namespace {

using Password = Provider::Password;
using LoginName = Provider::LoginName;

/// Domains are separated by blanks. "yahoo.*" stands for yahoo.com and the provider's domains in countries,
/// such as yahoo.fr, yahoo.co.uk and yahoo.com.br. The first row that fits counts.
struct Row {
  std::string_view domains;
  Provider provider;
};

constexpr std::string_view gmxHelp =
    "https://support.gmx.com/security/2fa/application-specific-passwords.html";
constexpr std::string_view zohoHelp = "https://www.zoho.com/mail/help/imap-access.html";

constexpr std::array rows{
    Row{"icloud.com me.com mac.com",
        {.name = "iCloud Mail", .host = "imap.mail.me.com", .help = "https://support.apple.com/102654"}},
    Row{"gmail.com googlemail.com",
        {.name = "Gmail",
         .host = "imap.gmail.com",
         .password = Password::appAfterTwoStep,
         .help = "https://support.google.com/accounts/answer/185833",
         .showsBlanks = true}},
    Row{"outlook.* hotmail.* msn.com windowslive.com live.com live.jp live.co.jp live.at live.be live.ca "
        "live.cl live.cn live.co.kr live.co.uk live.co.za live.com.ar live.com.au live.com.mx live.com.my "
        "live.com.ph live.com.pt live.com.sg live.de live.dk live.fi live.fr live.hk live.ie live.in live.it "
        "live.nl live.no live.ru live.se livemail.tw",
        {.name = "Microsoft", .host = "outlook.office365.com", .password = Password::none}},
    Row{"yahoo.co.jp",
        {.name = "Yahoo! JAPAN",
         .host = "imap.mail.yahoo.co.jp",
         .password = Password::ordinary,
         .loginName = LoginName::other,
         .isSwitchedOnFirst = true}},
    Row{"yahoo.* ymail.com myyahoo.com rocketmail.com",
        {.name = "Yahoo Mail",
         .host = "imap.mail.yahoo.com",
         .help = "https://login.yahoo.com/account/security"}},
    Row{"docomo.ne.jp",
        {.name = "NTT docomo",
         .host = "imap.spmode.ne.jp",
         .password = Password::ownForIMAP,
         .help = "https://www.nttdocomo.co.jp/service/docomo_mail/security/",
         .loginName = LoginName::other}},
    Row{"i.softbank.jp",
        {.name = "SoftBank",
         .host = "imap.softbank.jp",
         .password = Password::ordinary,
         .loginName = LoginName::localPart}},
    Row{"au.com ezweb.ne.jp",
        {.name = "au",
         .host = "imap.ezweb.ne.jp",
         .password = Password::ownForIMAP,
         .loginName = LoginName::other}},
    Row{"fastmail.com fastmail.fm messagingengine.com",
        {.name = "Fastmail", .host = "imap.fastmail.com", .help = "https://www.fastmail.help/"}},
    Row{"aol.* aim.com",
        {.name = "AOL Mail", .host = "imap.aol.com", .help = "https://login.aol.com/account/security"}},
    Row{"gmx.net gmx.de gmx.at gmx.ch gmx.eu gmx.biz gmx.org gmx.info mein.gmx mail.gmx email.gmx",
        {.name = "GMX", .host = "imap.gmx.net", .help = gmxHelp, .isSwitchedOnFirst = true}},
    Row{"gmx.*", {.name = "GMX", .host = "imap.gmx.com", .help = gmxHelp, .isSwitchedOnFirst = true}},
    Row{"web.de",
        {.name = "WEB.DE",
         .host = "imap.web.de",
         .loginName = LoginName::localPart,
         .isSwitchedOnFirst = true}},
    Row{"mail.com email.com", {.name = "mail.com", .host = "imap.mail.com", .isSwitchedOnFirst = true}},
    Row{"zoho.com zohomail.com",
        {.name = "Zoho Mail",
         .host = "imap.zoho.com",
         .password = Password::appWithTwoStep,
         .help = zohoHelp,
         .isSwitchedOnFirst = true}},
    Row{"zoho.eu zohomail.eu",
        {.name = "Zoho Mail",
         .host = "imap.zoho.eu",
         .password = Password::appWithTwoStep,
         .help = zohoHelp,
         .isSwitchedOnFirst = true}},
    Row{"zoho.in zohomail.in",
        {.name = "Zoho Mail",
         .host = "imap.zoho.in",
         .password = Password::appWithTwoStep,
         .help = zohoHelp,
         .isSwitchedOnFirst = true}},
    Row{"zoho.jp zohomail.jp",
        {.name = "Zoho Mail",
         .host = "imap.zoho.jp",
         .password = Password::appWithTwoStep,
         .help = zohoHelp,
         .isSwitchedOnFirst = true}},
    Row{"posteo.* posteo.net posteo.org",
        {.name = "Posteo", .host = "posteo.de", .help = "https://posteo.de/en/help/app-passwords"}},
    Row{"mailbox.org",
        {.name = "mailbox.org", .host = "imap.mailbox.org", .password = Password::appWithTwoStep}},
};

/// A country's ending, such as "fr", "co.uk" and "com.br"; or "com".
bool isCountry(std::string_view ending) {
  if (ending == "com") {
    return true;
  }
  for (const std::string_view middle : {"co.", "com."}) {
    if (ending.starts_with(middle)) {
      ending.remove_prefix(middle.size());
      break;
    }
  }
  return ending.size() == 2 && ending.find('.') == ending.npos;
}

bool fits(std::string_view pattern, std::string_view domain) {
  if (!pattern.ends_with('*')) {
    return pattern == domain;
  }
  pattern.remove_suffix(1);
  return domain.starts_with(pattern) && isCountry(domain.substr(pattern.size()));
}

bool names(std::string_view domains, std::string_view domain) {
  while (!domains.empty()) {
    const std::size_t end = std::min(domains.find(' '), domains.size());
    if (fits(domains.substr(0, end), domain)) {
      return true;
    }
    domains.remove_prefix(std::min(end + 1, domains.size()));
  }
  return false;
}

std::string withoutBlanksAround(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t begin = std::min(text.find_first_not_of(blanks), text.size());
  const std::size_t end = text.find_last_not_of(blanks);
  return std::string(end == text.npos ? "" : text.substr(begin, end + 1 - begin));
}

}  // namespace

const Provider* providerOf(std::string_view address) {
  const std::string text = asciiLowercased(withoutBlanksAround(address));
  const std::size_t at = text.rfind('@');
  if (at == text.npos) {
    return nullptr;
  }
  const std::string domain = text.substr(at + 1);
  const auto* row =
      std::ranges::find_if(rows, [&](const Row& candidate) { return names(candidate.domains, domain); });
  return row == rows.end() ? nullptr : &row->provider;
}

const Provider* providerAt(std::string_view host) {
  const std::string name = withoutBlanksAround(host);
  const auto* row = std::ranges::find_if(
      rows, [&](const Row& candidate) { return equalsIgnoringASCIICase(candidate.provider.host, name); });
  return row == rows.end() ? nullptr : &row->provider;
}

Secret passwordToSend(const Provider* provider, Secret typed) {
  constexpr std::string_view noBreakSpace = "\u00a0";
  const bool dropsBlanks = provider != nullptr && provider->showsBlanks;
  Secret password;
  std::string_view rest = typed.view();
  while (rest.ends_with('\n') || rest.ends_with('\r')) {
    rest.remove_suffix(1);
  }
  while (!rest.empty()) {
    const bool isWide = rest.starts_with(noBreakSpace);
    const bool isBlank = isWide || rest.front() == ' ' || rest.front() == '\t';
    const std::size_t size = isWide ? noBreakSpace.size() : 1;
    if (!(isBlank && dropsBlanks)) {
      password.append(rest.substr(0, size));
    }
    rest.remove_prefix(size);
  }
  return password;
}

}  // namespace tarnwell

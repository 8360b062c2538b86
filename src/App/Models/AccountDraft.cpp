#include "App/Models/AccountDraft.h"

#include <algorithm>

namespace tarnwell {

namespace {

constexpr int largestPort = 65535;

/// As a program sends it: without blanks around, and with ASCII in the place of its full-width twins
/// (Unicode, "Halfwidth and Fullwidth Forms"), which Japanese input methods make.
QString plain(QString text) {
  constexpr char16_t first = 0xFF01;
  constexpr char16_t last = 0xFF5E;
  constexpr char16_t distance = 0xFEE0;
  for (QChar& character : text) {
    if (character.unicode() >= first && character.unicode() <= last) {
      character = QChar(static_cast<char16_t>(character.unicode() - distance));
    }
  }
  return text.trimmed();
}

std::string bytes(const QString& text) { return plain(text).toStdString(); }

bool hasBlank(const QString& text) {
  return std::any_of(text.begin(), text.end(), [](QChar character) {
    return character.isSpace() || character.category() == QChar::Other_Control;
  });
}

/// A name (RFC 1123, section 2.1), an IPv4 address or an IPv6 address.
bool isHost(const QString& text) {
  const bool isAddress = text.contains(QLatin1Char(':'));
  const auto fits = [&](QChar character) {
    const bool isLetterOrDigit = character.unicode() < 0x80 && character.isLetterOrNumber();
    const bool isMark = character == QLatin1Char('-') || character == QLatin1Char('.');
    return isLetterOrDigit || isMark || (isAddress && character == QLatin1Char(':'));
  };
  return std::all_of(text.begin(), text.end(), fits) && !text.contains(QLatin1String("..")) &&
         !text.startsWith(QLatin1Char('.')) && !text.startsWith(QLatin1Char('-')) &&
         (!isAddress || text.count(QLatin1Char(':')) > 1);
}

int portOf(const QString& text) {
  bool isNumber = false;
  const int number = plain(text).toInt(&isNumber);
  return isNumber && number <= largestPort ? std::max(number, 0) : 0;
}

}  // namespace

AccountDraft::AccountDraft(const AccountAddress& saved) {
  if (saved.email.empty()) {
    return;
  }
  email_ = QString::fromStdString(saved.email);
  host_ = QString::fromStdString(saved.imapHost);
  port_ = QString::number(saved.imapPort);
  lastProvider_ = email_.contains(QLatin1Char('@')) ? providerOf(saved.email) : providerAt(saved.imapHost);
  isHostTyped_ = lastProvider_ == nullptr || saved.imapHost != lastProvider_->host;
  isPortTyped_ = saved.imapPort != BridgeConstants::defaultIMAPPort;
}

QString AccountDraft::text(Field field) const {
  switch (field) {
    case Field::email:
      return email_;
    case Field::host:
      return host_;
    case Field::port:
      return port_;
  }
  return {};
}

void AccountDraft::setEmail(const QString& text) {
  email_ = text;
  const QString address = plain(text);
  if (address.isEmpty()) {
    lastProvider_ = nullptr;
  } else if (address.contains(QLatin1Char('@'))) {
    const Provider* const provider = providerOf(address.toStdString());
    fillIn(provider);
    lastProvider_ = provider != nullptr ? provider : lastProvider_;
    return;
  }
  fillIn(lastProvider_);
}

void AccountDraft::fillIn(const Provider* provider) {
  if (!isHostTyped_) {
    host_ = provider == nullptr
                ? QString()
                : QString::fromUtf8(provider->host.data(), static_cast<qsizetype>(provider->host.size()));
  }
  if (!isPortTyped_) {
    port_ = QString::number(provider == nullptr ? BridgeConstants::defaultIMAPPort : provider->port);
  }
}

void AccountDraft::setHost(const QString& text) {
  host_ = text;
  isHostTyped_ = !plain(text).isEmpty();
}

void AccountDraft::setPort(const QString& text) {
  port_ = text;
  isPortTyped_ = !plain(text).isEmpty();
}

AccountDraft::Finding AccountDraft::finding(Field field) const {
  switch (field) {
    case Field::email:
      return findingOfEmail();
    case Field::host:
      return plain(host_).isEmpty() ? Finding::empty
             : isHost(plain(host_)) ? Finding::none
                                    : Finding::notAHost;
    case Field::port:
      return plain(port_).isEmpty() ? Finding::empty : portOf(port_) > 0 ? Finding::none : Finding::notAPort;
  }
  return Finding::none;
}

AccountDraft::Finding AccountDraft::findingOfEmail() const {
  const QString address = plain(email_);
  if (address.isEmpty()) {
    return Finding::empty;
  }
  if (hasBlank(address)) {
    return Finding::brokenAddress;
  }
  if (const Provider* const known = provider();
      known != nullptr && known->password == Provider::Password::none) {
    return Finding::takesNoPassword;
  }
  const auto at = address.lastIndexOf(QLatin1Char('@'));
  if (at < 0) {
    return Finding::nameOnly;
  }
  return at == 0 || at + 1 == address.size() ? Finding::brokenAddress : Finding::none;
}

const Provider* AccountDraft::provider() const {
  return plain(host_).isEmpty() ? providerOfAddress() : providerAt(bytes(host_));
}

const Provider* AccountDraft::providerOfAddress() const { return providerOf(bytes(email_)); }

AccountAddress AccountDraft::address() const { return {bytes(email_), bytes(host_), portOf(port_)}; }

}  // namespace tarnwell

#pragma once

/// The texts of the page "Account", in the language of the window. Each news, finding and obstacle is one
/// sentence that says what to do.

#include <QString>
#include <QStringList>

#include "App/Models/AccountModel.h"
#include "App/Widgets/Questions.h"

namespace tarnwell::AccountTexts {

/// Three lines for somebody who has no account here yet.
QStringList welcome();

QStringList stages();

/// Empty for what is no fault.
QString finding(AccountDraft::Finding finding, const Provider* provider);

/// Why a button cannot be pressed. Empty when the reason shows by itself.
QString obstacle(AccountModel::Obstacle obstacle);

QString emailHint(const AccountDraft& draft);
QString hostHint(const AccountDraft& draft);
QString passwordLabel(const Provider* provider);
/// Rich text, with a link to the provider's page where one is known.
QString passwordHint(const Provider* provider);

QString news(const AccountNews& news);

/// What is wrong with the keyring, and the button that mends it. Empty when there is nothing to say.
QString keyring(KeyringState state);
QString keyringAction(KeyringState state);

/// What is wrong with the settings file. Empty when nothing is.
QString file(const SettingsFile& settings);

Question removal();

}  // namespace tarnwell::AccountTexts

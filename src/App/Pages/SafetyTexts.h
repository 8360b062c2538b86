#pragma once

/// The texts of the page "Safety settings", in the language of the window.
///
/// Where the helper's refusals name a setting, its English label is that name, so an assistant and a person
/// speak of the same thing.

#include <QString>
#include <optional>

#include "App/Models/SafetyModel.h"
#include "App/Widgets/Questions.h"

namespace tarnwell::SafetyTexts {

QString label(SafetySwitch item);
QString label(SafetyLimit limit);

/// What the setting does and what it risks; when it changes nothing at the moment, why.
QString sentence(SafetySwitch item, std::optional<WithoutEffect> effect);
QString sentence(SafetyLimit limit, std::optional<WithoutEffect> effect);

/// What an assistant reads when the setting forbids what it wants.
QString quotation(SafetySwitch item);

/// What an assistant may read and change.
QString summary(const SafetySummary& summary);
/// How much of a text leaves, and which mail does not.
QString withheld(const SafetySummary& summary);

/// What to ask before the switch is turned off. `then` is the summary after that.
Question question(SafetySwitch item, const SafetySummary& then);

/// Empty when there is nothing to say about the file.
QString fileNotice(ConfigStore::FileState state);

}  // namespace tarnwell::SafetyTexts

#pragma once

/// The texts of the page "Local endpoint", in the language of the window.

#include <QString>

#include "App/Models/EndpointModel.h"
#include "App/Widgets/Questions.h"

namespace tarnwell::EndpointTexts {

/// One or two words for the state, and a sentence that says what it means.
QString state(EndpointModel::State state);
QString sentence(EndpointModel::State state);

/// Empty when there is nothing to say.
QString news(const EndpointNews& news, int port);
/// The button that mends it. Empty when there is none.
QString action(const EndpointNews& news);

Question renewal();

/// For a window that is closed while the endpoint runs.
Question closing();

}  // namespace tarnwell::EndpointTexts

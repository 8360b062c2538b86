#pragma once

/// The texts of the page "Assistants", in the language of the window. Names, paths and commands stay as they
/// are in every language.

#include <QString>
#include <QStringList>

#include "App/Models/AssistantsModel.h"
#include "App/Widgets/DifferenceView.h"

namespace tarnwell::AssistantsTexts {

QString name(const AssistantState& assistant);
/// For a person to copy.
QString path(const std::filesystem::path& path);
/// For a place in a sentence: a line may end at every part of it.
QString pathInSentence(const std::filesystem::path& path);

/// Whether it is connected.
QString state(const AssistantState& assistant);
/// For `unknown`: why, and what to do about it.
QString remedy(const AssistantState& assistant);

QString action(AssistantsModel::Action action);

/// What makes the assistant see a change.
QString restart(const AssistantState& assistant);
/// What makes the assistant see that it is disconnected.
QString restartToStop(const AssistantState& assistant);
/// What came of it, and what to do next.
QString news(const AssistantState& assistant, const AssistantProgress& progress);
/// The button beside the news. Empty when they offer nothing.
QString offer(const AssistantProgress& progress);

/// What the plan does, above the commands or the lines.
QString lead(const AssistantState& assistant, const ConnectionPlan& plan);
/// What a screen reader calls the commands or the lines.
QString label(const AssistantState& assistant, const ConnectionPlan& plan);
QString commands(const ConnectionPlan& plan);
QString block(const ConnectionPlan& plan);
std::vector<DifferenceView::Line> lines(const std::vector<DifferenceLine>& difference);
/// What happens to the file besides. Empty for other plans.
QString caution(const ConnectionPlan& plan);
/// For a block: what a person does, in order.
QStringList steps(const AssistantState& assistant, const ConnectionPlan& plan);
/// The button that carries the plan out, which says so while it is done. Empty for a block.
QString confirm(const AssistantProgress& progress);
/// The button that closes the plan.
QString dismiss(const ConnectionPlan& plan);

QString format(BlockFormat format);

}  // namespace tarnwell::AssistantsTexts

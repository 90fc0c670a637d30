// Keeps a flood of events from becoming a flood of notifications. Pure.
#pragma once

#include "base/words/texts.h"
#include "notifications/decision.h"

#include <vector>

namespace nimbara {

/// How many events of one rule and pass have a decision each.
inline constexpr std::size_t kMostEvents = 20;

/// Decisions on the events of one rule. Of those that are new, known or held back the greatest stay and one
/// more stands for the rest: it counts them and names the greatest. Time grows with n log n.
std::vector<Decision> boundedEvents(std::vector<Decision> decisions, Texts const& texts);

}  // namespace nimbara

// Why something was sent, held back or skipped, in sentences: the outcome, the values that decided in the
// user's units, what else stood against it. Pure; decides nothing.
#pragma once

#include "base/units.h"
#include "notifications/log/notification_log.h"

#include <string>

namespace nimbara {

/// What became of it, or what would become of it: a preview sends nothing.
enum class ReasonTense { past, preview };

/// "Held back by the quiet hours. The strongest wind or gust will reach 72 km/h (told from 60 km/h)."
std::string reasonText(LoggedNotification const& line, Units const& units, Texts const& texts,
                       ReasonTense tense = ReasonTense::past);

}  // namespace nimbara

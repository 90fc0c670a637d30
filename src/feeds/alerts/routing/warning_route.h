// Which source of official warnings is asked for a place. Pure.
#pragma once

#include "feeds/alerts/gov_alert_service.h"

#include <string_view>
#include <vector>

namespace nimbara {

/// Those that may be asked for the place, the usual one first; each has warnings of its country, or may have.
/// Empty only for a coordinate that is not valid.
std::vector<std::string_view> possibleSources(GovAlertPlace const& place);

/// In the order in which they are asked: each only when the one before has failed. The source that the user
/// has chosen comes first; a name that is not possible for the place chooses nothing.
///
/// What follows must know the same events by the same identifiers and miss none of them, else a failure would
/// notify twice or hide a warning. So nobody follows where the issuer is asked directly and the aggregators
/// have only a part of what it says.
std::vector<std::string_view> warningRoute(GovAlertPlace const& place);

}  // namespace nimbara

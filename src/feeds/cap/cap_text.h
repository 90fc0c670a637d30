// The single values of messages of the Common Alerting Protocol. Pure functions.
#pragma once

#include "feeds/cap/cap_alert.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// A moment of ISO 8601 with white space around it; years from 2400 on are of the Buddhist era.
std::optional<Instant> capDate(std::string_view text);

/// Blank-separated "sender,identifier,sent"; those without an identifier are left out.
std::vector<CapReference> capReferences(std::string_view text);

}  // namespace nimbara

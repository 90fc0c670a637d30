// What has become of official warnings between two looks at them. Pure.
#pragma once

#include "cli/service/service_snapshot.h"
#include "platform/session/session_service.h"

#include <vector>

namespace nimbara {

/// Of places that are in both snapshots; of a new one every warning is created. A warning whose place could
/// not be checked stays what it is.
std::vector<WarningNews> warningNews(ServiceSnapshot const& before, ServiceSnapshot const& after,
                                     Instant now);

}  // namespace nimbara

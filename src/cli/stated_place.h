// A place as the sources of official warnings ask for it, with what the command line states of it.
#pragma once

#include "cli/command_line.h"
#include "feeds/alerts/gov_alert_service.h"
#include "feeds/regions/regions.h"

namespace nimbara {

/// What the reverse look-up finds, or what `stated` says that it would.
GovAlertPlace statedPlace(Coordinate coordinate, StatedRegions const& stated, Regions const& regions);

}  // namespace nimbara

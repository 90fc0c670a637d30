// States of hazards for tests: what feeds may have said, and how they may have failed.
#pragma once

#include "states.h"

namespace nimbara::test {

EarthquakeEvent quakeOf(std::string id, double magnitude, Coordinate place, std::chrono::milliseconds age);

/// Checked five minutes ago by one service.
OfficialCheck checkOf(Place const& place);

/// The check failed at `since`.
void fail(OfficialCheck& check, Instant since, ServiceFailure reason);

/// A week of Kp 2 in steps of three hours until `kNow`, and a storm foreseen.
HazardsState hazardsOf(OfficialCheck check);

std::shared_ptr<HazardsState const> shared(HazardsState state);

}  // namespace nimbara::test

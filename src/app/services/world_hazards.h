// Hazards that several feeds tell of together, asked for side by side.
#pragma once

#include "app/services/forecasts/side_by_side.h"
#include "feeds/storms/world_storms.h"

#include <stop_token>

namespace nimbara {

class FeedServices;

/// Asks every centre. Blocks.
FeedReading<WorldStorms> fetchWorldStorms(FeedServices& feeds, std::stop_token const& stop,
                                          Waiting waiting = Waiting::sideBySide);

}  // namespace nimbara

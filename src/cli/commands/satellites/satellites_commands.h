// The satellites commands by what they work on.
#pragma once

#include "cli/run_context.h"

namespace nimbara {

class SatelliteSource;

/// Element sets of a file, without services.
int runSatelliteFile(CommandLine const& line, Session const& session);

/// The catalogue of the feed server.
int runSatelliteCatalog(CommandLine const& line, Session const& session);

/// When one satellite passes over a place.
Result<std::string, Failure> satellitePassesAnswer(SatelliteSource& source, SatellitesOptions const& options);

}  // namespace nimbara

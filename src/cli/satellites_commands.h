// The satellites commands by what they work on.
#pragma once

#include "cli/cli.h"

namespace nimbara {

/// Element sets of a file, without services.
int runSatelliteFile(CommandLine const& line, Session const& session);

/// The catalogue of the feed server.
int runSatelliteCatalog(CommandLine const& line, Session const& session);

}  // namespace nimbara

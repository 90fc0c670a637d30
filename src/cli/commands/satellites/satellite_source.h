// Where the satellites commands get element sets from: the catalogue's groups by the feed server, with what
// was kept of them. Alive as long as the command; tells on standard error what was not available.
#pragma once

#include "cli/run_context.h"
#include "globe/satellite_feed.h"

namespace nimbara {

/// One satellite that a name or a number means, and the group that it came in.
struct FoundSatellite {
  SatelliteCatalog::Entry entry;
  std::string group;
};

class SatelliteSource {
 public:
  SatelliteSource(CommandLine const& line, Session const& session);

  Session const& session() const { return session_; }
  RunContext& context() { return context_; }
  Instant now() const { return clock_->now(); }

  /// The groups of these names, all for none. Unavailable groups are reported; only when none can be
  /// had there is no answer.
  Result<std::vector<SatelliteGroupLoad>, Failure> load(std::vector<std::string> const& groupIDs);
  /// Asks group after group, and no further once a satellite is found.
  Result<FoundSatellite, Failure> find(std::string_view wanted);

 private:
  Result<SatelliteGroupLoad, Failure> load(SatelliteCatalog::Group const& group);
  Result<SatelliteGroupLoad, ServiceFailure> fetched(SatelliteCatalog::Group const& group);

  Session const& session_;
  std::unique_ptr<Clock> clock_;
  RunContext context_;
  SatelliteFeed feed_;
};

}  // namespace nimbara

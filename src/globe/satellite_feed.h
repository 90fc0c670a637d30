// Loads the catalogue's groups from wherever feeds come and keeps each one's text in a file for six hours; an
// older text is used when there is no newer one. Blocking; one mutex, held while a group is asked for, so
// that no group is asked for twice at a time. Several processes may share the folder.
#pragma once

#include "globe/element_source.h"
#include "globe/satellite_catalog.h"
#include "platform/clock.h"
#include "platform/service_failure.h"

#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

/// One group as it was available.
struct SatelliteGroupLoad {
  enum class Source { file, server, staleFile };

  SatelliteCatalog::Group group;
  Source source = Source::server;
  Instant fetched;  ///< when the text came from its source
  SatelliteCatalog::Parsed parsed;
  std::optional<ServiceFailure> failure;  ///< why an old text had to do
};

class SatelliteFeed {
 public:
  static constexpr std::chrono::seconds kFreshFor{21'600};

  /// Without a folder nothing outlives the process.
  SatelliteFeed(ElementSource source, Clock const& clock, std::filesystem::path folder);

  /// An error where neither source nor file had the group.
  Result<SatelliteGroupLoad, ServiceFailure> load(SatelliteCatalog::Group const& group,
                                                  std::stop_token const& stop = {});

 private:
  std::filesystem::path fileOf(SatelliteCatalog::Group const& group) const;
  std::optional<ElementSets> kept(SatelliteCatalog::Group const& group) const;
  Result<ElementSets, ServiceFailure> ask(SatelliteCatalog::Group const& group, std::stop_token const& stop);
  void keep(SatelliteCatalog::Group const& group, ElementSets const& sets) const;

  ElementSource source_;
  Clock const& clock_;
  std::filesystem::path folder_;
  std::mutex turn_;
};

}  // namespace nimbara

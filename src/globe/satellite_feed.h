// Loads the catalogue's groups from the feed server and keeps each one's text in a file for six hours; an
// older text is used when the server cannot be had. Blocking; one mutex, held while a group is asked for, so
// that no group is asked for twice at a time. Several processes may share the folder.
#pragma once

#include "globe/satellite_catalog.h"
#include "platform/clock.h"
#include "platform/http_client.h"

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

/// One group as it could be had.
struct SatelliteGroupLoad {
  enum class Source { file, server, staleFile };

  SatelliteCatalog::Group group;
  Source source = Source::server;
  Instant fetched;  ///< when the text came from the server
  SatelliteCatalog::Parsed parsed;
  std::string failure;  ///< why an old text had to do; for people, without a full stop
};

class SatelliteFeed {
 public:
  static constexpr std::chrono::seconds kFreshFor{21'600};
  /// After a refusal (403) the server is left alone for a day, after other failures for ten minutes.
  static constexpr std::chrono::hours kPauseAfterRefusal{24};
  static constexpr std::chrono::minutes kPauseAfterFailure{10};

  /// Without a folder nothing outlives the process.
  SatelliteFeed(HttpClient& http, Clock const& clock, std::string baseUrl, std::filesystem::path folder);

  /// The error is a sentence without a full stop: neither server nor file had the group.
  Result<SatelliteGroupLoad, std::string> load(SatelliteCatalog::Group const& group,
                                               std::stop_token const& stop = {});

 private:
  struct Text {
    std::string body;
    Instant fetched;
  };

  std::filesystem::path fileOf(SatelliteCatalog::Group const& group) const;
  std::optional<Text> kept(SatelliteCatalog::Group const& group) const;
  Result<std::string, std::string> ask(SatelliteCatalog::Group const& group, std::stop_token const& stop);
  void keep(SatelliteCatalog::Group const& group, std::string_view body) const;

  HttpClient& http_;
  Clock const& clock_;
  std::string baseUrl_;
  std::filesystem::path folder_;
  std::mutex turn_;
  std::map<std::string, Instant, std::less<>> notBefore_;  ///< by group
};

}  // namespace nimbara

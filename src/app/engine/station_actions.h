// What a face asks of the user's weather station, and what it is told. Each action returns at once; the state
// comes to the listener after each change, on a thread of the engine's own. Here they do nothing.
#pragma once

#include "app/services/station_linking.h"
#include "feeds/stations/station_service.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace nimbara {

/// What is being done.
enum class StationTask { none, reading, consent, linking, around };

/// Which public stations were looked at, and what they tell.
struct StationsAround {
  std::string place;  ///< its name
  Coordinate at;
  PublicStations stations;  ///< empty where there is a problem
  std::optional<StationProblem> problem;

  bool operator==(StationsAround const&) const = default;
};

/// All that a page of the station shows of it.
struct StationDesk {
  StationTask task = StationTask::none;
  std::string consentUrl;      ///< while the browser is waited for
  std::optional<LinkEnd> end;  ///< of the last linking
  std::string problem;         ///< why the link could not be changed; English
  bool hasAccount = false;     ///< there are tokens, so that public stations can be asked for
  StationsReading reading;     ///< what is kept
  std::shared_ptr<StationsAround const> around;  ///< null: nobody has looked yet
};

class StationActions {
 public:
  using Listener = std::function<void(StationDesk)>;

  virtual ~StationActions() = default;

  /// One listener, from now on.
  virtual void follow(Listener listener);
  /// What is due is asked for.
  virtual void look() {}
  /// By the consent page, or with a refresh token where there is one.
  virtual void linkAccount(std::string id, std::string secret, std::string token);
  virtual void linkAddress(std::string address, std::string name);
  /// Ends the waiting for the browser.
  virtual void cancel() {}
  /// One of the account's.
  virtual void choose(std::string station);
  /// Looks for the public stations around the selected place.
  virtual void lookAround() {}
  /// One of these, or with none the median of all.
  virtual void chooseAround(std::string station);
  virtual void unlink() {}
};

}  // namespace nimbara

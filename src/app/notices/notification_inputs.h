// Gathers what notification rules look at: the forecasts of the places and the answers of the feeds that an
// enabled rule reads, each asked once a pass. Decides nothing about what is sent.
#pragma once

#include "app/places/place.h"
#include "app/places/places.h"
#include "app/services/feed_services.h"
#include "app/services/forecasts/side_by_side.h"
#include "app/services/in_use.h"
#include "feeds/alerts/gov_alert_service.h"
#include "notifications/custom_notification.h"
#include "notifications/engine/notification_manager.h"
#include "notifications/rules/rule_settings.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

namespace nimbara {

/// A place that notifications look at.
struct WatchedPlace {
  Place place;
  std::optional<Uuid> id;                  ///< of a saved one
  std::optional<PlaceChoice> choice = {};  // NOLINT(readability-redundant-member-init): what was chosen
};

/// The key under which a location is known to notifications.
std::string locationTag(Place const& place);

/// The selected place and then the saved ones, each once.
std::vector<WatchedPlace> watchedPlaces(Place const& selected, PlaceList const& saved);

/// What a rule reads, with the words that it points to.
struct GatheredInputs {
  RuleInputs inputs;
  std::shared_ptr<Texts const> texts;
};

class NotificationInputs {
 public:
  struct Options {
    Units units;
    std::shared_ptr<Texts const> texts;
    Calendar fallback = Calendar::utc();  ///< of places whose zone is unknown
    /// The forecast of a place as this program has it; nothing when there is none.
    std::function<std::shared_ptr<WeatherData const>(Place const&, std::stop_token const&)> weather;
    /// What is stated of a place instead of what the gazetteer finds; may be empty.
    std::function<GovAlertPlace(Place const&)> officialPlace;
    /// How several services are waited for. `weather` is asked for one place at a time in any case.
    Waiting waiting = Waiting::oneAfterTheOther;
  };

  NotificationInputs(InUse<FeedServices> feeds, Clock const& clock, Options options);

  /// From the next pass on.
  void setWording(Units const& units, std::shared_ptr<Texts const> texts);
  /// The first of `places` is the selected one. Blocks for the feeds.
  PassInputs gather(std::vector<WatchedPlace> const& places, NeededInputs const& needed,
                    Settings const& settings, std::vector<CustomNotification> const& rules,
                    std::stop_token const& stop = {});
  /// What one rule of the user's own reads at its place.
  GatheredInputs gatherFor(Place const& place, RuleInputSet needed, Settings const& settings,
                           std::stop_token const& stop = {});

 private:
  std::shared_ptr<Texts const> texts() const;
  RuleInputs inputsAt(Place const& place, Texts const& words, bool isSelected) const;
  /// What `wanted` names of each of `readings`, into it; of each service in the readings' order.
  void readAll(std::vector<RuleInputs>& readings, std::vector<Place> const& places,
               std::vector<RuleInputSet> const& wanted, RuleSettings const& settings,
               std::stop_token const& stop);
  void readForecast(RuleInputs& inputs, Place const& place, RuleInputSet needed, std::stop_token const& stop);
  void readOfficial(RuleInputs& inputs, Place const& place, RuleInputSet needed, std::stop_token const& stop);
  /// Those that differ from place to place.
  void readAirQuality(RuleInputs& inputs, RuleInputSet needed, std::stop_token const& stop);
  void readNowcast(RuleInputs& inputs, RuleInputSet needed, std::stop_token const& stop);
  void readFires(RuleInputs& inputs, RuleInputSet needed, RuleSettings const& settings,
                 std::stop_token const& stop);
  void readLightning(RuleInputs& inputs, RuleInputSet needed, RuleSettings const& settings,
                     std::stop_token const& stop);
  void readAdvisories(RuleInputs& inputs, Place const& place, RuleInputSet needed,
                      std::stop_token const& stop);
  /// Those that are the same for all places.
  void readEarthquakes(RuleInputs& world, std::stop_token const& stop);
  void readKp(RuleInputs& world, std::stop_token const& stop);
  void readStorms(RuleInputs& world, std::stop_token const& stop);
  void readTyphoons(RuleInputs& world, std::stop_token const& stop);
  void readStation(RuleInputs& world, std::stop_token const& stop);

  InUse<FeedServices> feeds_;
  Clock const& clock_;
  Options options_;
  mutable std::mutex mutex_;  // guards the two below
  Units units_;
  std::shared_ptr<Texts const> texts_;
};

}  // namespace nimbara

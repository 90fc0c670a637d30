// Everything that rules may look at for one place at one moment, as values. Built by whoever fetches; rules
// only read. Feeds that were not asked, or that failed without an older answer, are absent.
#pragma once

#include "base/enum_names.h"
#include "base/geodesy.h"
#include "base/time/calendar.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "feeds/air/air_quality.h"
#include "feeds/fetching/feed_reading.h"
#include "feeds/fires/fire_detection.h"
#include "feeds/nws/nws_alert.h"
#include "feeds/quakes/earthquake_event.h"
#include "feeds/storms/lightning_strike.h"
#include "feeds/storms/tropical_storm.h"
#include "feeds/travel/travel_advisory.h"
#include "model/nowcast.h"
#include "model/present.h"
#include "model/warnings/weather_alert.h"
#include "model/weather_data.h"
#include "notifications/place_choice.h"

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace nimbara {

struct StationReading;

/// What a rule reads; what no enabled rule reads is not fetched.
enum class RuleInput {
  hourly,
  generatedAlerts,
  govAlerts,
  nwsAlerts,
  earthquakes,
  kp,
  airQuality,
  storms,
  fires,
  advisories,
  lightning,
  typhoons,
  nowcast,
  station
};
template <>
inline constexpr auto enumNames<RuleInput> = std::to_array<std::string_view>(
    {"hourly", "generatedAlerts", "govAlerts", "nwsAlerts", "earthquakes", "kp", "airQuality", "storms",
     "fires", "advisories", "lightning", "typhoons", "nowcast", "station"});
static_assert(enumNamesComplete(RuleInput::station));
using RuleInputSet = EnumSet<RuleInput>;

/// A feed's answer as rules see it. A failed feed silences its own rules only.
template <class T>
struct InputReading {
  std::shared_ptr<T const> value;         ///< null: not asked, or nothing known
  std::optional<ServiceFailure> failure;  ///< why it is not fresh
  std::string service = {};               ///< whose failure: "nws"; empty where the feed says it

  static InputReading of(T held) { return {std::make_shared<T const>(std::move(held)), {}}; }
  /// What was never sent is no value; an older one keeps its failure beside it.
  static InputReading of(FeedReading<T> reading) {
    InputReading input;
    if (reading.checkedAt) input.value = std::make_shared<T const>(std::move(reading.data));
    if (!reading.isCurrent()) input.failure = std::move(reading.failure);
    return input;
  }
  explicit operator bool() const { return value != nullptr; }
  T const& operator*() const { return *value; }
  T const* operator->() const { return value.get(); }
};

/// Why something that rules read is not fresh.
struct InputFailure {
  RuleInput input = RuleInput::govAlerts;
  std::string service;  ///< the source of warnings: "nws"; empty of other feeds
  ServiceFailure failure;

  bool operator==(InputFailure const&) const = default;
};

template <>
inline constexpr auto jsonFields<InputFailure> =
    FieldList{field("input", &InputFailure::input), fieldOr("service", &InputFailure::service),
              field("failure", &InputFailure::failure)};

/// "the list of wildfires could not be fetched: the service returned status 503": English, without a
/// full stop.
std::string sentenceOf(InputFailure const& failure);

/// The place as notifications name and tag it.
struct NotifiedPlace {
  std::string tag;   ///< stable key of the location
  std::string name;  ///< `resolvedLocationName` in texts
  std::string countryCode;
  Coordinate coordinate;
  bool isSelected = true;
  std::optional<PlaceChoice> choice = std::nullopt;  ///< what somebody chose for it
  std::optional<Uuid> id = std::nullopt;             ///< of a saved place

  bool operator==(NotifiedPlace const&) const = default;
};

/// What was sent of a tropical storm last: changes are measured from there.
struct KnownStorm {
  StormCategory category = StormCategory::depression;
  double windKmh = 0;

  bool operator==(KnownStorm const&) const = default;
};

template <>
inline constexpr auto jsonFields<KnownStorm> =
    FieldList{field("category", &KnownStorm::category), field("windKmh", &KnownStorm::windKmh)};

/// Where a part of a fire was seen last, as a circle.
struct SeenFire {
  double latitude = 0;
  double longitude = 0;
  double reachKm = 0;
  Instant seen;  ///< by a satellite

  bool operator==(SeenFire const&) const = default;
};

template <>
inline constexpr auto jsonFields<SeenFire> =
    FieldList{field("latitude", &SeenFire::latitude), field("longitude", &SeenFire::longitude),
              field("reachKm", &SeenFire::reachKm), field("seen", &SeenFire::seen)};

/// The parts of fires, by the identifier under which they were sent.
using KnownFires = std::map<std::string, std::vector<SeenFire>, std::less<>>;

/// A storm as a notification tells it.
struct ToldStorm {
  std::string id;
  KnownStorm as;

  bool operator==(ToldStorm const&) const = default;
};

struct RuleInputs {
  Instant now;
  Calendar calendar = Calendar::utc();  ///< the place's
  Units units;
  Texts const* texts = nullptr;
  NotifiedPlace place;

  std::shared_ptr<WeatherData const> weather;  ///< null: no forecast
  std::span<HourlyForecast const> hours;       ///< of it: the entry that contains `now` and all later ones
  std::optional<Present> present;              ///< what it says of `now`

  InputReading<std::vector<WeatherAlert>> generatedAlerts;
  InputReading<std::vector<WeatherAlert>> govAlerts;  ///< live official events, most severe first
  bool isUncovered = false;                  ///< nobody is known who issues official warnings for the place
  std::vector<WeatherAlert> unplacedAlerts;  ///< like these, in parts of the country of unknown place
  std::vector<WeatherAlert> calledOff;       ///< official events that their issuer ended early: not live
  InputReading<std::vector<NWSAlert>>
      nwsAlerts;  ///< live messages of the NWS; of no place that is not its own
  InputReading<std::vector<EarthquakeEvent>> earthquakes;
  InputReading<double> kp;
  InputReading<AirQualityForecast> airQuality;
  InputReading<std::vector<TropicalStorm>> storms;    ///< of the Atlantic and the Pacific east of 180°
  InputReading<std::vector<TropicalStorm>> typhoons;  ///< of the western Pacific: another centre's
  std::map<std::string, KnownStorm, std::less<>> knownStorms;  ///< of earlier passes, by identifier
  InputReading<std::vector<FireDetection>> fires;              ///< within the radius of the settings
  KnownFires knownFires;                                       ///< of earlier passes
  InputReading<std::vector<TravelAdvisory>> advisories;
  InputReading<std::vector<LightningStrike>> lightning;  ///< of the last half hour within the radius

  InputReading<Nowcast> nowcast;         ///< of the kind none where nobody offers one
  InputReading<StationReading> station;  ///< the user's own, wherever it stands; nothing where none is linked

  /// Fills `hours` and `present` from `weather`.
  void readWeather();
  /// The entries that begin before `now` + `span`, the present one among them.
  std::span<HourlyForecast const> hoursWithin(std::chrono::hours span) const;
  /// Why one of these inputs is not fresh.
  std::optional<InputFailure> failureOf(RuleInputSet inputs) const;
  std::string text(std::string_view key) const { return std::string(texts->text(key)); }
};

/// "3 PM" in the place's time.
std::string hourText(RuleInputs const& inputs, Instant instant);
/// The number of a temperature in the user's unit, unrounded, and the unit's symbol.
double shownTemperature(RuleInputs const& inputs, double celsius);
std::string_view temperatureSymbol(RuleInputs const& inputs);
/// "3 °C" rounded, in the user's unit.
std::string temperatureText(RuleInputs const& inputs, double celsius);
/// The user's family of wind units.
DistanceUnit distanceUnit(RuleInputs const& inputs);
/// "120 km" or "75 miles", in that family.
std::string distanceText(RuleInputs const& inputs, double km);
/// "85 km/h" rounded, in the user's unit.
std::string windText(RuleInputs const& inputs, double kmh);

}  // namespace nimbara

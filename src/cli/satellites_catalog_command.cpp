#include "base/display_text.h"
#include "base/number.h"
#include "base/text.h"
#include "cli/run_context.h"
#include "cli/satellite_map.h"
#include "cli/satellites_commands.h"
#include "cli/terminal.h"
#include "globe/satellite_feed.h"
#include "globe/satellite_info.h"
#include "globe/satellite_passes.h"
#include "globe/sgp4_batch.h"
#include "model/process.h"

#include <algorithm>

namespace nimbara {

namespace {

using Action = SatellitesOptions::Action;
using Kind = SatelliteCatalog::Kind;

template <class T>
using Outcome = Result<T, Failure>;

constexpr std::string_view kDefaultSatellite = "ISS";

struct ListedSatellite {
  int noradID = 0;
  std::string name;
  std::string group;
  Kind kind = Kind::generic;
  Instant epoch;
};

struct SatellitePosition {
  int noradID = 0;
  std::string name;
  double latitude = 0;
  double longitude = 0;
  double altitudeKm = 0;
  bool isSunlit = false;
};

struct ListedPass {
  std::string name;
  PassMoment rise, culmination, set;
  bool sunlit = false;
  bool skyDark = false;
  std::optional<int> cloudCover;  ///< % in the hour of the culmination; absent without a forecast
};

}  // namespace

template <>
inline constexpr auto jsonFields<ListedSatellite> =
    std::tuple{field("noradID", &ListedSatellite::noradID), field("name", &ListedSatellite::name),
               field("group", &ListedSatellite::group), field("kind", &ListedSatellite::kind),
               field("epoch", &ListedSatellite::epoch)};

template <>
inline constexpr auto jsonFields<SatellitePosition> = std::tuple{
    field("noradID", &SatellitePosition::noradID),       field("name", &SatellitePosition::name),
    field("latitude", &SatellitePosition::latitude),     field("longitude", &SatellitePosition::longitude),
    field("altitudeKm", &SatellitePosition::altitudeKm), field("isSunlit", &SatellitePosition::isSunlit)};

namespace {

/// Seconds are enough for people and keep the document short.
PassMoment rounded(PassMoment moment) {
  moment.time = std::chrono::round<std::chrono::seconds>(moment.time);
  return moment;
}

std::string json(std::vector<ListedPass> const& passes) {
  JsonWriter writer;
  writer.beginList();
  for (ListedPass const& pass : passes) {
    writer.separate();
    writer.beginObject();
    writer.member("name", pass.name);
    writer.member("rise", pass.rise);
    writer.member("culmination", pass.culmination);
    writer.member("set", pass.set);
    writer.member("sunlit", pass.sunlit);
    writer.member("skyDark", pass.skyDark);
    writer.memberOrNull("cloudCover", pass.cloudCover);
    writer.endObject();
  }
  writer.endList();
  return writer.take() + "\n";
}

std::string angle(double degrees, int decimals) {
  return fixedDecimal(degrees, decimals) + "°";
}

/// "2026-11-21 18:03:20" by the calendar.
std::string clockText(Instant instant, Calendar const& calendar) {
  std::string text = formatIso8601(Instant(calendar.local(instant).time_since_epoch()));
  text.resize(19);
  text[10] = ' ';
  return text;
}

/// One satellite that a name or a number means, and the group that it came in.
struct Found {
  SatelliteCatalog::Entry entry;
  std::string group;
};

bool isMeant(SatelliteCatalog::Entry const& entry, std::string_view wanted, std::string_view lowered) {
  std::string const name = asciiLowered(entry.name);
  return std::to_string(entry.satrec.tle.satnum) == wanted || name.find(lowered) != std::string::npos;
}

/// Numbers and whole names before names' beginnings, those before their parts.
int rankOf(SatelliteCatalog::Entry const& entry, std::string_view wanted, std::string_view lowered) {
  std::string const name = asciiLowered(entry.name);
  if (std::to_string(entry.satrec.tle.satnum) == wanted || name == lowered) return 0;
  return name.starts_with(lowered) ? 1 : 2;
}

class CatalogRun {
 public:
  CatalogRun(CommandLine const& line, Session const& session)
      : options_(line.satellites),
        session_(session),
        clock_(makeClock(line.common)),
        context_(line.common, session, *clock_, ownServices(line.common, line.forecast.provider)),
        feed_(context_.app().http(), *clock_, context_.app().services().address(Service::feedServer).baseUrl,
              folder(line.common)) {}

  int run() {
    auto const out = answer();
    if (session_.stop.stop_requested()) return session_.fail(exitCode::kInterrupted, "interrupted");
    if (!out) return session_.fail(out.error().exitCode, out.error().sentence);
    session_.console.out(*out);
    return exitCode::kComplete;
  }

 private:
  /// What a stand-in of the services made up is kept apart.
  std::filesystem::path folder(CommonOptions const& common) const {
    auto const& cache = session_.environment.cacheDirectory;
    if (cache.empty()) return {};
    return cache / (common.services.empty() ? "satellites" : "satellites.stand-in");
  }

  Outcome<std::string> answer() {
    switch (options_.action) {
      case Action::list:
        return list();
      case Action::positions:
        return positions();
      case Action::map:
        return map();
      case Action::info:
        return info();
      case Action::orbit:
        return orbit();
      default:
        return passes();
    }
  }

  Outcome<SatelliteGroupLoad> load(SatelliteCatalog::Group const& group) {
    auto loaded = feed_.load(group, session_.stop);
    if (!loaded)
      return std::unexpected(Failure{exitCode::kUnavailable, loaded.error() + "; try again later", {}});
    if (loaded->source == SatelliteGroupLoad::Source::staleFile) {
      context_.tell(loaded->failure + "; the elements of " + formatIso8601(loaded->fetched) + " are used");
    }
    if (loaded->parsed.dropped > 0) {
      context_.tell(std::to_string(loaded->parsed.dropped) + " records of the group " +
                    std::string(group.id) + " cannot be used");
    }
    return std::move(*loaded);
  }

  Outcome<std::vector<SatelliteCatalog::Group>> wantedGroups() const {
    std::vector<SatelliteCatalog::Group> groups;
    for (std::string const& id : options_.groups) {
      auto const* const group = SatelliteCatalog::group(id);
      if (group == nullptr) {
        std::string known;
        for (auto const& each : SatelliteCatalog::groups())
          known += (known.empty() ? "" : ", ") + std::string(each.id);
        return std::unexpected(
            Failure{exitCode::kUsage, "'" + oneLine(id) + "' is no group; choose from " + known, {}});
      }
      groups.push_back(*group);
    }
    if (groups.empty()) groups.assign(SatelliteCatalog::groups().begin(), SatelliteCatalog::groups().end());
    return groups;
  }

  /// Groups that cannot be had are told of; only when none can be had there is no answer.
  Outcome<std::vector<SatelliteGroupLoad>> loadWanted() {
    auto const groups = wantedGroups();
    if (!groups) return std::unexpected(groups.error());
    std::vector<SatelliteGroupLoad> loads;
    std::optional<Failure> failure;
    for (auto const& group : *groups) {
      auto loaded = load(group);
      if (loaded) {
        loads.push_back(std::move(*loaded));
      } else {
        failure = loaded.error();
        if (session_.stop.stop_requested()) break;
        if (groups->size() > 1) context_.tell(failure->sentence);
      }
    }
    if (loads.empty() && failure) return std::unexpected(*failure);
    return loads;
  }

  Outcome<std::string> list() {
    auto const loads = loadWanted();
    if (!loads) return std::unexpected(loads.error());
    std::vector<ListedSatellite> listed;
    for (auto const& load : *loads) {
      for (auto const& entry : load.parsed.entries) {
        listed.push_back({entry.satrec.tle.satnum, entry.name, std::string(load.group.id), entry.kind,
                          entry.satrec.tle.epoch});
      }
    }
    if (options_.json) return encodeJson(listed) + "\n";
    std::string out;
    for (auto const& satellite : listed) {
      out += fitted(std::to_string(satellite.noradID), 6, Align::right) + "  " + fitted(satellite.name, 24) +
             "  " + fitted(satellite.group, 18) + "  " + fitted(enumName(satellite.kind), 8) + "  " +
             formatIso8601(satellite.epoch).substr(0, 16) + "\n";
    }
    return out;
  }

  Outcome<std::vector<SatellitePosition>> currentPositions() {
    auto const loads = loadWanted();
    if (!loads) return std::unexpected(loads.error());
    SGP4::Moment const moment = SGP4::momentOf(clock_->now());
    auto const rotation = EarthRotation::at(moment);
    Vector3 const sun = sunDirection(moment);
    std::vector<SatellitePosition> positions;
    for (auto const& load : *loads) {
      std::vector<SGP4::SatRec const*> records;
      records.reserve(load.parsed.entries.size());
      for (auto const& entry : load.parsed.entries) records.push_back(&entry.satrec);
      SGP4::SatelliteBatch batch(records);
      batch.propagate(moment);
      for (std::size_t i = 0; i < records.size(); ++i) {
        auto const state = batch.state(i);
        if (state.error != SGP4::errorCode::kNone) continue;
        auto const ground = groundPosition(rotation.toEarthFixed(state.position));
        positions.push_back({records[i]->tle.satnum, records[i]->tle.name, ground.latitude, ground.longitude,
                             ground.altitudeKm, isSunlit(state.position, sun)});
      }
    }
    return positions;
  }

  Outcome<std::string> positions() {
    auto const positions = currentPositions();
    if (!positions) return std::unexpected(positions.error());
    if (options_.json) return encodeJson(*positions) + "\n";
    std::string out;
    for (auto const& each : *positions) {
      out += fitted(std::to_string(each.noradID), 6, Align::right) + "  " + fitted(each.name, 24) + "  " +
             fitted(angle(each.latitude, 2), 8, Align::right) +
             fitted(angle(each.longitude, 2), 10, Align::right) +
             fitted(roundedText(each.altitudeKm), 8, Align::right) + " km  " +
             (each.isSunlit ? "sunlit" : "in shadow") + "\n";
    }
    return out;
  }

  Outcome<std::string> map() {
    auto const positions = currentPositions();
    if (!positions) return std::unexpected(positions.error());
    std::vector<Coordinate> places;
    places.reserve(positions->size());
    for (auto const& each : *positions) places.push_back({each.latitude, each.longitude});
    return satelliteMap(places, clock_->now(), widthOf(session_), styleOf(session_));
  }

  /// Asks group after group, and no further once a satellite is found.
  Outcome<Found> find(std::string_view wanted) {
    std::string const lowered = asciiLowered(trimmed(wanted));
    std::optional<Failure> failure;
    for (auto const& group : SatelliteCatalog::groups()) {
      auto loaded = load(group);
      if (!loaded) {
        failure = loaded.error();
        continue;
      }
      auto& entries = loaded->parsed.entries;
      SatelliteCatalog::Entry* best = nullptr;
      for (auto& entry : entries) {
        bool const meant = !lowered.empty() && isMeant(entry, wanted, lowered);
        if (meant && (best == nullptr || rankOf(entry, wanted, lowered) < rankOf(*best, wanted, lowered)))
          best = &entry;
      }
      if (best != nullptr) return Found{std::move(*best), std::string(group.id)};
    }
    if (failure) return std::unexpected(*failure);
    return std::unexpected(
        Failure{exitCode::kUnavailable,
                "no satellite is called '" + oneLine(wanted) + "'; see nimbara satellites list",
                {}});
  }

  Outcome<std::string> info() {
    auto const found = find(options_.satellite);
    if (!found) return std::unexpected(found.error());
    auto const info = satelliteInfo(found->entry, found->group, clock_->now());
    if (!info) {
      return std::unexpected(Failure{
          exitCode::kUnavailable, found->entry.name + " has no position now: its orbit has decayed", {}});
    }
    if (options_.json) return encodeJson(*info) + "\n";
    auto const days =
        std::chrono::duration<double, std::ratio<86400>>(clock_->now() - found->entry.satrec.tle.epoch);
    return info->name + " (" + info->id + ")\n" + "  " + std::string(context_.texts().text(info->kind)) +
           "\n" + "  " + roundedText(info->altitudeKm) + " km high, " + roundedText(info->speedKmh) +
           " km/h, " + fixedDecimal(info->periodMinutes, 1) + " min around\n" + "  above " +
           angle(info->latitude, 2) + ", " + angle(info->longitude, 2) +
           (info->isSunlit ? ", sunlit" : ", in the earth's shadow") + "\n" + "  elements " +
           fixedDecimal(days.count(), 1) + " days old\n";
  }

  Outcome<std::string> orbit() {
    auto const found = find(options_.satellite);
    if (!found) return std::unexpected(found.error());
    auto const path = orbitPath(found->entry.satrec, clock_->now());
    if (options_.json) return encodeJson(path) + "\n";
    std::string out = found->entry.name + "\n";
    for (auto const& point : path) {
      out += "  " + formatIso8601(std::chrono::round<std::chrono::seconds>(point.time)) +
             fitted(angle(point.latitude, 2), 10, Align::right) +
             fitted(angle(point.longitude, 2), 10, Align::right) +
             fitted(roundedText(point.altitudeKm), 8, Align::right) + " km\n";
    }
    return out;
  }

  /// Per cent in the hour that holds the moment.
  static std::optional<int> cloudCoverAt(WeatherData const* data, Instant instant) {
    if (data == nullptr) return std::nullopt;
    for (auto const& hour : data->allHourly) {
      bool const holds = hour.date <= instant && instant < hour.date + std::chrono::hours(1);
      if (holds && hour.has(WeatherDetailField::cloudCover)) return hour.cloudCover;
    }
    return std::nullopt;
  }

  Outcome<std::string> passes() {
    auto const place = context_.place(options_.place);
    if (!place) return std::unexpected(place.error());
    auto const found =
        find(options_.satellite.empty() ? kDefaultSatellite : std::string_view(options_.satellite));
    if (!found) return std::unexpected(found.error());
    auto const forecast =
        context_.app().forecasts().get(*place, WeatherProviderOption::automatic, session_.stop);
    if (!forecast) context_.tell("without cloud cover: " + context_.sentenceOf(forecast.error()));
    WeatherData const* const data = forecast ? &forecast->data : nullptr;
    Instant const now = clock_->now();
    std::vector<ListedPass> listed;
    for (auto const& pass : satellitePasses(found->entry.satrec, place->coordinate, now,
                                            now + std::chrono::days(options_.days))) {
      if (options_.visible && !(pass.sunlit && pass.skyDark)) continue;
      listed.push_back({found->entry.name, rounded(pass.rise), rounded(pass.culmination), rounded(pass.set),
                        pass.sunlit, pass.skyDark, cloudCoverAt(data, pass.culmination.time)});
    }
    if (options_.json) return json(listed);
    return table(listed, data != nullptr ? calendarOf(*data, session_.environment.machineCalendar)
                                         : session_.environment.machineCalendar);
  }

  static std::string table(std::vector<ListedPass> const& passes, Calendar const& calendar) {
    if (passes.empty()) return "no passes\n";
    std::string out = passes.front().name + "\n";
    for (ListedPass const& pass : passes) {
      out += "  " + clockText(pass.rise.time, calendar) +
             fitted(angle(pass.rise.azimuth, 0), 6, Align::right) + "  up " +
             clockText(pass.culmination.time, calendar).substr(11) +
             fitted(angle(pass.culmination.elevation, 0), 5, Align::right) + " high  " +
             clockText(pass.set.time, calendar).substr(11) +
             fitted(angle(pass.set.azimuth, 0), 6, Align::right) + " down  " +
             (pass.sunlit ? "sunlit" : "in shadow") + (pass.skyDark ? ", dark sky" : ", bright sky") +
             (pass.cloudCover ? ", clouds " + std::to_string(*pass.cloudCover) + " %" : "") + "\n";
    }
    return out;
  }

  SatellitesOptions const& options_;
  Session const& session_;
  std::unique_ptr<Clock> clock_;
  RunContext context_;
  SatelliteFeed feed_;
};

}  // namespace

int runSatelliteCatalog(CommandLine const& line, Session const& session) {
  return CatalogRun(line, session).run();
}

}  // namespace nimbara

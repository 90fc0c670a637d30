#include "base/text/display_text.h"
#include "cli/commands/satellites/satellite_source.h"
#include "cli/commands/satellites/satellites_commands.h"
#include "cli/pages/satellite_map.h"
#include "cli/terminal.h"
#include "globe/propagation/sgp4_batch.h"
#include "globe/satellite_info.h"

namespace nimbara {

namespace {

using Action = SatellitesOptions::Action;
using Kind = SatelliteCatalog::Kind;

template <class T>
using Outcome = Result<T, Failure>;

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

}  // namespace

template <>
inline constexpr auto jsonFields<ListedSatellite> =
    FieldList{field("noradID", &ListedSatellite::noradID), field("name", &ListedSatellite::name),
              field("group", &ListedSatellite::group), field("kind", &ListedSatellite::kind),
              field("epoch", &ListedSatellite::epoch)};

template <>
inline constexpr auto jsonFields<SatellitePosition> = FieldList{
    field("noradID", &SatellitePosition::noradID),       field("name", &SatellitePosition::name),
    field("latitude", &SatellitePosition::latitude),     field("longitude", &SatellitePosition::longitude),
    field("altitudeKm", &SatellitePosition::altitudeKm), field("isSunlit", &SatellitePosition::isSunlit)};

namespace {

Outcome<std::string> list(SatelliteSource& source, SatellitesOptions const& options) {
  auto const loads = source.load(options.groups);
  if (!loads) return std::unexpected(loads.error());
  std::vector<ListedSatellite> listed;
  for (auto const& load : *loads) {
    for (auto const& entry : load.parsed.entries) {
      listed.push_back({entry.satrec.tle.satnum, entry.name, std::string(load.group.id), entry.kind,
                        entry.satrec.tle.epoch});
    }
  }
  if (options.json) return encodeJson(listed) + "\n";
  std::string out;
  for (auto const& satellite : listed) {
    out += fitted(std::to_string(satellite.noradID), 6, Align::right) + "  " + fitted(satellite.name, 24) +
           "  " + fitted(satellite.group, 18) + "  " + fitted(enumName(satellite.kind), 8) + "  " +
           formatIso8601(satellite.epoch).substr(0, 16) + "\n";
  }
  return out;
}

Outcome<std::vector<SatellitePosition>> currentPositions(SatelliteSource& source,
                                                         std::vector<std::string> const& groups) {
  auto const loads = source.load(groups);
  if (!loads) return std::unexpected(loads.error());
  SGP4::Moment const moment = SGP4::momentOf(source.now());
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

/// "23.50°N 146.88°E".
constexpr int kCoordinateWidth = 18;

std::string distanceText(double km, SatelliteSource& source) {
  DistanceUnit const unit = source.context().wording().units.distance;
  return display(km, unit) + " " + std::string(symbol(unit));
}

std::string speedText(double kmh, SatelliteSource& source) {
  WindUnit const unit = source.context().wording().units.wind;
  return display(kmh, unit) + " " + std::string(symbol(unit));
}

std::string lightText(bool isSunlit, SatelliteSource& source) {
  return std::string(
      source.context().texts().text(isSunlit ? "desktop.globe.sunlit" : "desktop.globe.shadow"));
}

Outcome<std::string> positions(SatelliteSource& source, SatellitesOptions const& options) {
  auto const positions = currentPositions(source, options.groups);
  if (!positions) return std::unexpected(positions.error());
  if (options.json) return encodeJson(*positions) + "\n";
  std::string out;
  for (auto const& each : *positions) {
    out += fitted(std::to_string(each.noradID), 6, Align::right) + "  " + fitted(each.name, 24) + "  " +
           fitted(formatCoordinate({each.latitude, each.longitude}), kCoordinateWidth, Align::right) +
           fitted(distanceText(each.altitudeKm, source), 10, Align::right) + "  " +
           lightText(each.isSunlit, source) + "\n";
  }
  return out;
}

Outcome<std::string> map(SatelliteSource& source, SatellitesOptions const& options) {
  auto const positions = currentPositions(source, options.groups);
  if (!positions) return std::unexpected(positions.error());
  std::vector<Coordinate> places;
  places.reserve(positions->size());
  for (auto const& each : *positions) places.push_back({each.latitude, each.longitude});
  return satelliteMap(places, source.now(), widthOf(source.session()), styleOf(source.session()));
}

Failure decayed(std::string const& name) {
  return {exitCode::kUnavailable, name + " no longer has a position: its orbit has decayed", {}};
}

/// The card of a satellite: a row for each fact, its name in a column of its own.
std::string infoText(SatelliteInfo const& info, Instant epoch, SatelliteSource& source) {
  RunContext const& context = source.context();
  Texts const& texts = context.texts();
  struct Fact {
    std::string_view name;
    std::string text;
  };
  Fact const facts[] = {
      {"number", info.id},
      {"altitude", distanceText(info.altitudeKm, source)},
      {"speed", speedText(info.speedKmh, source)},
      {"above", formatCoordinate({info.latitude, info.longitude})},
      {"period", texts.format("desktop.globe.minutes", info.periodMinutes)},
      {"light", lightText(info.isSunlit, source)},
  };
  auto const title = [&](Fact const& fact) {
    return std::string(texts.text("desktop.globe." + std::string(fact.name)));
  };
  int width = 0;
  for (Fact const& fact : facts) width = std::max(width, displayWidth(title(fact)));
  std::string out = info.name + ", " + std::string(texts.text(info.kind)) + "\n";
  for (Fact const& fact : facts) out += "  " + fitted(title(fact), width + 2) + fact.text + "\n";
  return out + "  " + texts.format("desktop.globe.stale", context.moment(epoch)) + "\n";
}

Outcome<std::string> info(SatelliteSource& source, SatellitesOptions const& options) {
  auto const found = source.find(options.satellite);
  if (!found) return std::unexpected(found.error());
  auto const info = satelliteInfo(found->entry, found->group, source.now());
  if (!info) {
    return std::unexpected(decayed(found->entry.name));
  }
  if (options.json) return encodeJson(*info) + "\n";
  return infoText(*info, found->entry.satrec.tle.epoch, source);
}

Outcome<std::string> orbit(SatelliteSource& source, SatellitesOptions const& options) {
  auto const found = source.find(options.satellite);
  if (!found) return std::unexpected(found.error());
  auto const path = orbitPath(found->entry.satrec, source.now());
  if (options.json) return encodeJson(path) + "\n";
  if (path.empty()) return std::unexpected(decayed(found->entry.name));
  std::string out = found->entry.name + "\n";
  for (auto const& point : path) {
    out += "  " + formatIso8601(std::chrono::round<std::chrono::seconds>(point.time)) +
           fitted(formatCoordinate({point.latitude, point.longitude}), kCoordinateWidth + 2, Align::right) +
           fitted(distanceText(point.altitudeKm, source), 12, Align::right) + "\n";
  }
  return out;
}

Outcome<std::string> answer(SatelliteSource& source, SatellitesOptions const& options) {
  switch (options.action) {
    case Action::list:
      return list(source, options);
    case Action::positions:
      return positions(source, options);
    case Action::map:
      return map(source, options);
    case Action::info:
      return info(source, options);
    case Action::orbit:
      return orbit(source, options);
    default:
      return satellitePassesAnswer(source, options);
  }
}

}  // namespace

int runSatelliteCatalog(CommandLine const& line, Session const& session) {
  SatelliteSource source(line, session);
  auto const out = answer(source, line.satellites);
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  if (!out) return session.fail(out.error().exitCode, out.error().sentence);
  session.console.out(*out);
  return exitCode::kComplete;
}

}  // namespace nimbara

#include "base/text/display_text.h"
#include "base/text/number.h"
#include "cli/commands/satellites/satellite_source.h"
#include "cli/commands/satellites/satellites_commands.h"
#include "cli/pages/satellite_map.h"
#include "cli/pages/satellites_text.h"
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

Outcome<std::string> positions(SatelliteSource& source, SatellitesOptions const& options) {
  auto const positions = currentPositions(source, options.groups);
  if (!positions) return std::unexpected(positions.error());
  if (options.json) return encodeJson(*positions) + "\n";
  std::string out;
  for (auto const& each : *positions) {
    out += fitted(std::to_string(each.noradID), 6, Align::right) + "  " + fitted(each.name, 24) + "  " +
           fitted(angleText(each.latitude, 2), 8, Align::right) +
           fitted(angleText(each.longitude, 2), 10, Align::right) +
           fitted(roundedText(each.altitudeKm), 8, Align::right) + " km  " +
           (each.isSunlit ? "sunlit" : "in shadow") + "\n";
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

Outcome<std::string> info(SatelliteSource& source, SatellitesOptions const& options) {
  auto const found = source.find(options.satellite);
  if (!found) return std::unexpected(found.error());
  auto const info = satelliteInfo(found->entry, found->group, source.now());
  if (!info) {
    return std::unexpected(Failure{
        exitCode::kUnavailable, found->entry.name + " no longer has a position: its orbit has decayed", {}});
  }
  if (options.json) return encodeJson(*info) + "\n";
  auto const days =
      std::chrono::duration<double, std::ratio<86400>>(source.now() - found->entry.satrec.tle.epoch);
  return info->name + " (" + info->id + ")\n" + "  " +
         std::string(source.context().texts().text(info->kind)) + "\n" + "  " +
         roundedText(info->altitudeKm) + " km high, " + roundedText(info->speedKmh) + " km/h, " +
         fixedDecimal(info->periodMinutes, 1) + " min around\n" + "  above " + angleText(info->latitude, 2) +
         ", " + angleText(info->longitude, 2) + (info->isSunlit ? ", sunlit" : ", in Earth's shadow") + "\n" +
         "  elements " + fixedDecimal(days.count(), 1) + " days old\n";
}

Outcome<std::string> orbit(SatelliteSource& source, SatellitesOptions const& options) {
  auto const found = source.find(options.satellite);
  if (!found) return std::unexpected(found.error());
  auto const path = orbitPath(found->entry.satrec, source.now());
  if (options.json) return encodeJson(path) + "\n";
  std::string out = found->entry.name + "\n";
  for (auto const& point : path) {
    out += "  " + formatIso8601(std::chrono::round<std::chrono::seconds>(point.time)) +
           fitted(angleText(point.latitude, 2), 10, Align::right) +
           fitted(angleText(point.longitude, 2), 10, Align::right) +
           fitted(roundedText(point.altitudeKm), 8, Align::right) + " km\n";
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

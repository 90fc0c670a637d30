#include "globe/satellite_catalog.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using Group = SatelliteCatalog::Group;
using Kind = SatelliteCatalog::Kind;

constexpr std::string_view kWeather = "weather";

constexpr auto kGroups = std::to_array<Group>({
    {"stations", "sat.group.stations", 0},
    {"starlink", "sat.group.starlink", 1},
    {"oneweb", "sat.group.oneweb", 2},
    {kWeather, "sat.group.weather", 3},
    {"galileo", "sat.group.galileo", 4},
    {"glo-ops", "sat.group.glo-ops", 5},
    {"cosmos-2251-debris", "sat.group.debris", 6},
    {"iridium-33-debris", "sat.group.debris", 6},
    {"fengyun-1c-debris", "sat.group.debris", 6},
});

constexpr auto kColors = std::to_array<SatelliteCatalog::Color>({
    {1.00F, 0.84F, 0.30F},
    {0.55F, 0.80F, 1.00F},
    {0.60F, 0.95F, 0.75F},
    {1.00F, 0.60F, 0.45F},
    {0.80F, 0.70F, 1.00F},
    {1.00F, 0.65F, 0.85F},
    {0.65F, 0.65F, 0.65F},
});
static_assert(std::ranges::max(kGroups, {}, &Group::colorIndex).colorIndex + 1 ==
              static_cast<int>(kColors.size()));

/// What the beginning of a name tells.
struct NamedKind {
  std::string_view beginning;
  Kind kind;
};

constexpr auto kNamedKinds = std::to_array<NamedKind>({
    {"ISS (", Kind::iss},
    {"HST", Kind::hubble},
    {"HUBBLE", Kind::hubble},
    {"CSS (", Kind::tiangong},
    {"TIANGONG", Kind::tiangong},
    {"STARLINK-", Kind::starlink},
    {"ONEWEB-", Kind::oneweb},
    {"NAVSTAR", Kind::gps},
    {"GPS ", Kind::gps},
    {"GSAT0", Kind::gps},
});

constexpr auto kLabels =
    std::to_array<std::string_view>({"ISS (ZARYA)", "CSS (TIANHE)", "CSS (TIANHE-1)", "HST"});

bool isDebris(std::string_view name) {
  return name.ends_with(" DEB") || name.find(" DEB ") != std::string_view::npos;
}

/// Once around with the earth, on a circle: within a degree and a half a day.
bool isGeosynchronous(SGP4::SatRec const& record) {
  constexpr double kSiderealDayMinutes = 1436.07;
  constexpr double kRoundEnough = 0.05;
  return std::abs(record.periodMinutes() - kSiderealDayMinutes) < 6 && record.ecco < kRoundEnough;
}

}  // namespace

std::span<Group const> SatelliteCatalog::groups() {
  return kGroups;
}

Group const* SatelliteCatalog::group(std::string_view id) {
  auto const found = std::ranges::find(kGroups, id, &Group::id);
  return found == kGroups.end() ? nullptr : &*found;
}

std::span<SatelliteCatalog::Color const> SatelliteCatalog::colors() {
  return kColors;
}

Kind SatelliteCatalog::kindOf(SGP4::SatRec const& record, std::string_view groupID) {
  std::string_view const name = record.tle.name;
  if (isDebris(name)) return Kind::generic;
  for (auto const& [beginning, kind] : kNamedKinds) {
    if (name.starts_with(beginning)) return kind;
  }
  if (groupID == "galileo" || groupID == "glo-ops") return Kind::gps;
  return isGeosynchronous(record) ? Kind::geo : Kind::generic;
}

std::string SatelliteCatalog::kindKey(Kind kind, std::string_view groupID) {
  bool const ofWeather = groupID == kWeather && (kind == Kind::generic || kind == Kind::geo);
  return "sat.kind." + std::string(ofWeather ? kWeather : enumName(kind));
}

std::string_view SatelliteCatalog::systemImage(Kind kind) {
  switch (kind) {
    case Kind::starlink:
    case Kind::oneweb:
      return "dot.radiowaves.left.and.right";
    case Kind::gps:
      return "location.north.line";
    case Kind::geo:
      return "antenna.radiowaves.left.and.right";
    default:
      return "smallcircle.filled.circle";
  }
}

bool SatelliteCatalog::isNamed(std::string_view name) {
  return std::ranges::find(kLabels, name) != kLabels.end();
}

SatelliteCatalog::Parsed SatelliteCatalog::parse(std::string_view text, Group const& group) {
  SGP4::TLEDocument const document = SGP4::readElements(text);
  Parsed parsed;
  parsed.dropped = document.problems.size();
  parsed.entries.reserve(document.elements.size());
  for (SGP4::TLE const& tle : document.elements) {
    Entry entry{SGP4::initialise(tle), tle.name, group.colorIndex, isNamed(tle.name), Kind::generic};
    if (entry.satrec.error != SGP4::errorCode::kNone) {
      ++parsed.dropped;
      continue;
    }
    entry.kind = kindOf(entry.satrec, group.id);
    parsed.entries.push_back(std::move(entry));
  }
  return parsed;
}

}  // namespace nimbara

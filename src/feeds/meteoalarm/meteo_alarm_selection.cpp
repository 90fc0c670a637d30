#include "feeds/meteoalarm/meteo_alarm_selection.h"

#include "base/text/text.h"
#include "feeds/awareness/meteo_alarm_classes.h"
#include "feeds/meteoalarm/areas/area_names.h"
#include "feeds/regions/region_names.h"
#include "regions/region_map.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <unordered_map>

namespace nimbara {

namespace {

bool hasGeometry(RawEntry const& entry) {
  return !entry.circles.empty() || !entry.polygons.empty();
}

template <class Predicate>
bool anyCode(RawEntry const& entry, Predicate const& predicate) {
  return std::ranges::any_of(entry.nuts3Codes,
                             [&](auto const& code) { return predicate(kNuts3Registry, code); }) ||
         std::ranges::any_of(entry.otherCodes,
                             [&](auto const& code) { return predicate(code.registry, code.code); });
}

/// The corners of a polygon near a place. The difference of latitude alone rules most of them out.
class Neighbourhood {
 public:
  Neighbourhood(Coordinate place, double radiusKm)
      : place_(place),
        radiusKm_(radiusKm),
        degrees_(radiusKm * 180 / (std::numbers::pi * kEarthRadiusKm) + 1e-6) {}

  /// Nothing for a corner further away than the radius.
  std::optional<double> kmTo(Coordinate corner) const {
    if (std::abs(corner.latitude - place_.latitude) > degrees_) return std::nullopt;
    double const km = haversineKm(place_, corner);
    return km <= radiusKm_ ? std::optional(km) : std::nullopt;
  }

 private:
  Coordinate place_;
  double radiusKm_;
  double degrees_;
};

/// One place's view of the entries.
class Selector {
 public:
  Selector(Coordinate place, PlaceRegions const& regions, double radiusKm)
      : place_(place), regions_(regions), radiusKm_(radiusKm), near_(place, radiusKm) {
    for (std::string const& name : regions.names) {
      if (std::string folded = comparableName(name); !folded.empty())
        foldedNames_.push_back(std::move(folded));
    }
  }

  /// Nothing for an entry that does not concern the place.
  std::optional<SelectedEntry> select(RawEntry const& entry, std::string_view foldedArea) const {
    if (hasCode(entry)) return SelectedEntry{&entry, {}};
    if (auto const km = kmTo(entry)) return SelectedEntry{&entry, *km > 0 ? km : std::nullopt};
    return isNamed(entry, foldedArea) ? std::optional(SelectedEntry{&entry, {}}) : std::nullopt;
  }

 private:
  bool hasCode(RawEntry const& entry) const {
    return anyCode(entry, [this](std::string_view registry, std::string const& code) {
      return std::ranges::any_of(regions_.codes, [&](RegionCode const& own) {
        return own.code == code && (own.registry == registry || mayBeMislabelled(registry, code));
      });
    });
  }

  /// Registries have the same codes for other regions: DE273 of NUTS3 is Berlin, that of EMMA_ID is not. Only
  /// a code that its registry does not have may be of another, as one that the user states.
  bool mayBeMislabelled(std::string_view registry, std::string const& code) const {
    return !regions_.outlines || !regions_.outlines->knows({std::string(registry), code});
  }

  /// To the nearest of the shapes within reach, 0 in one of them.
  std::optional<double> kmTo(RawEntry const& entry) const {
    std::optional<double> nearest;
    for (WarningCircle const& circle : entry.circles) nearest = smaller(nearest, kmTo(circle));
    for (WarningPolygon const& polygon : entry.polygons) {
      if (nearest == 0.0) break;
      nearest = smaller(nearest, kmTo(polygon));
    }
    return nearest;
  }

  std::optional<double> kmTo(WarningCircle const& circle) const {
    double const km = haversineKm(place_, circle.center);
    if (km > circle.radiusKm + radiusKm_) return std::nullopt;
    return std::max(0.0, km - circle.radiusKm);
  }

  std::optional<double> kmTo(WarningPolygon const& polygon) const {
    if (isInside(polygon, place_)) return 0;
    std::optional<double> nearest;
    for (Coordinate const corner : polygon) nearest = smaller(nearest, near_.kmTo(corner));
    return nearest;
  }

  static std::optional<double> smaller(std::optional<double> a, std::optional<double> b) {
    return a && b ? std::min(*a, *b) : a ? a : b;
  }

  /// Whether the place's own code is known among those of which the entry has one. The code of a region at
  /// sea says nothing of the land that the entry may mean, nor does a land code where the entry's is one that
  /// the outlines do not know: of a newer division of the country.
  bool isPlacedByCode(RawEntry const& entry) const {
    return anyCode(entry, [this](std::string_view registry, std::string const& code) {
      if (!hasLandCodeOf(regions_, registry)) return false;
      return !regions_.outlines || regions_.outlines->knows({std::string(registry), code});
    });
  }

  bool isNamed(RawEntry const& entry, std::string_view area) const {
    if (area.empty() || hasGeometry(entry) || isPlacedByCode(entry)) return false;
    auto const isOthersName = [this](std::string_view name) { return isNameOfAnother(name); };
    return std::ranges::any_of(foldedNames_, [&](std::string const& name) {
      return isNamedIn(name, area, isOthersName) ||
             (!isLongerName(name) && !isOthersName(area) && isNamedIn(area, name, isOthersName));
    });
  }

  /// The place's own names are bare ones: "rijeka", of which "rijeka region" is no other's.
  bool isNameOfAnother(std::string_view name) const {
    auto const isOwn = [this](std::string_view own) {
      return std::ranges::find(foldedNames_, own) != foldedNames_.end();
    };
    if (isOwn(name) || isOwn(comparableName(bareRegionName(name)))) return false;
    return isLongerName(name) || (regions_.outlines && regions_.outlines->hasName(name));
  }

  Coordinate place_;
  PlaceRegions const& regions_;
  double radiusKm_;
  Neighbourhood near_;
  std::vector<std::string> foldedNames_;
};

}  // namespace

MeteoAlarmFeed feedOf(std::vector<RawEntry> entries) {
  // A country has far fewer areas than entries.
  std::unordered_map<std::string_view, std::string> folded;
  MeteoAlarmFeed feed{std::move(entries), {}};
  feed.foldedAreas.resize(feed.entries.size());
  for (std::size_t i = 0; i < feed.entries.size(); ++i) {
    RawEntry const& entry = feed.entries[i];
    if (hasGeometry(entry)) continue;
    auto const [found, isNew] = folded.try_emplace(entry.areaDesc);
    if (isNew) found->second = comparableName(entry.areaDesc);
    feed.foldedAreas[i] = found->second;
  }
  return feed;
}

bool isInside(WarningPolygon const& polygon, Coordinate place) {
  bool inside = false;
  for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
    Coordinate const a = polygon[i];
    Coordinate const b = polygon[j];
    if ((a.latitude > place.latitude) == (b.latitude > place.latitude)) continue;
    double const share = (place.latitude - a.latitude) / (b.latitude - a.latitude);
    if (place.longitude < a.longitude + share * (b.longitude - a.longitude)) inside = !inside;
  }
  return inside;
}

std::vector<SelectedEntry> selectedEntries(MeteoAlarmFeed const& feed, Coordinate place,
                                           PlaceRegions const& regions, double radiusKm) {
  Selector const selector(place, regions, radiusKm);
  std::vector<SelectedEntry> selected;
  for (std::size_t i = 0; i < feed.entries.size(); ++i) {
    if (auto const found = selector.select(feed.entries[i], feed.foldedAreas[i])) selected.push_back(*found);
  }
  return selected;
}

bool isCurrentWarning(RawEntry const& entry, Instant now) {
  bool const isActual = entry.status.empty() || asciiLowered(entry.status) == "actual";
  bool const isCancelled = asciiLowered(entry.messageType) == "cancel";
  bool const hasEnded = entry.expires && *entry.expires <= now;
  bool const isEmpty = entry.expires && entry.onset == entry.expires;
  return isActual && !isCancelled && !hasEnded && !isEmpty && !isGreenTitle(entry.title);
}

AlertSeverity severityOfCap(std::string_view severity) {
  std::string const lowered = asciiLowered(severity);
  if (lowered == "extreme") return AlertSeverity::critical;
  if (lowered == "severe") return AlertSeverity::warning;
  if (lowered == "moderate") return AlertSeverity::advisory;
  return AlertSeverity::info;
}

}  // namespace nimbara

#include "feeds/meteo_alarm_selection.h"

#include "base/search_text.h"
#include "base/text.h"

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

  bool has(Coordinate corner) const {
    return std::abs(corner.latitude - place_.latitude) <= degrees_ &&
           haversineKm(place_, corner) <= radiusKm_;
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
      if (std::string folded = searchFolded(name); !folded.empty()) foldedNames_.push_back(std::move(folded));
    }
  }

  bool concerns(RawEntry const& entry, std::string_view foldedArea) const {
    return hasCode(entry) || isNearCircle(entry) || isNearPolygon(entry) || isNamed(entry, foldedArea);
  }

 private:
  bool hasCode(RawEntry const& entry) const {
    return anyCode(entry, [this](std::string_view, std::string const& code) {
      return std::ranges::find(regions_.codes, code, &RegionCode::code) != regions_.codes.end();
    });
  }

  bool isNearCircle(RawEntry const& entry) const {
    return std::ranges::any_of(entry.circles, [this](WarningCircle const& circle) {
      return haversineKm(place_, circle.center) <= circle.radiusKm + radiusKm_;
    });
  }

  bool isNearPolygon(RawEntry const& entry) const {
    return std::ranges::any_of(entry.polygons, [this](WarningPolygon const& polygon) {
      return isInside(polygon, place_) ||
             std::ranges::any_of(polygon, [this](Coordinate corner) { return near_.has(corner); });
    });
  }

  bool hasKnownRegistry(RawEntry const& entry) const {
    return anyCode(entry, [this](std::string_view registry, std::string const&) {
      return std::ranges::find(regions_.codes, registry, &RegionCode::registry) != regions_.codes.end();
    });
  }

  bool isNamed(RawEntry const& entry, std::string_view area) const {
    if (area.empty() || hasGeometry(entry) || hasKnownRegistry(entry)) return false;
    return std::ranges::any_of(foldedNames_, [area](std::string const& name) {
      return area.find(name) != std::string_view::npos || name.find(area) != std::string::npos;
    });
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
    if (isNew) found->second = searchFolded(entry.areaDesc);
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

std::vector<RawEntry const*> selectedEntries(MeteoAlarmFeed const& feed, Coordinate place,
                                             PlaceRegions const& regions, double radiusKm) {
  Selector const selector(place, regions, radiusKm);
  std::vector<RawEntry const*> selected;
  for (std::size_t i = 0; i < feed.entries.size(); ++i) {
    if (selector.concerns(feed.entries[i], feed.foldedAreas[i])) selected.push_back(&feed.entries[i]);
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

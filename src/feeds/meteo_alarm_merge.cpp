#include "feeds/meteo_alarm_countries.h"
#include "feeds/meteo_alarm_selection.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace nimbara {

namespace {

/// Where the identifiers of these alerts are named; any identifier that nobody else names in will do.
constexpr Uuid kNamespace{
    {0x6b, 0x0f, 0x7c, 0x52, 0x9d, 0x1e, 0x4a, 0x8b, 0xb3, 0x24, 0x5e, 0x0c, 0x71, 0xd6, 0x88, 0x2f}};

struct Group {
  MeteoAlarmType type;
  std::vector<SelectedEntry> entries;
};

std::vector<Group> groupsOf(std::span<SelectedEntry const> entries) {
  std::vector<Group> groups;
  for (SelectedEntry const& selected : entries) {
    MeteoAlarmType const type = meteoAlarmTypeOf(selected.entry->event, selected.entry->title);
    auto const found = std::ranges::find(groups, type, &Group::type);
    Group& group = found == groups.end() ? groups.emplace_back(Group{type, {}}) : *found;
    group.entries.push_back(selected);
  }
  return groups;
}

std::vector<std::string> areasOf(Group const& group) {
  std::vector<std::string> areas;
  for (auto const& [entry, distance] : group.entries) {
    if (!entry->areaDesc.empty() && std::ranges::find(areas, entry->areaDesc) == areas.end())
      areas.push_back(entry->areaDesc);
  }
  return areas;
}

std::string joined(std::vector<std::string> const& parts) {
  std::string text;
  for (std::string const& part : parts) text += (text.empty() ? "" : ", ") + part;
  return text;
}

/// The regions' codes, or the names of areas that have none, in an order that does not depend on the feed's.
std::set<std::string> regionSet(Group const& group) {
  std::set<std::string> regions;
  for (auto const& [entry, distance] : group.entries) {
    if (entry->nuts3Codes.empty() && entry->otherCodes.empty()) regions.insert(entry->areaDesc);
    regions.insert(entry->nuts3Codes.begin(), entry->nuts3Codes.end());
    for (RegionCode const& code : entry->otherCodes) regions.insert(code.registry + ":" + code.code);
  }
  return regions;
}

Uuid identifierOf(Group const& group, std::string_view country, std::optional<Instant> onset) {
  std::string key = "meteoalarm|" + isoCountryCode(country) + "|" + std::string(enumName(group.type));
  key += "|" + (onset ? formatIso8601(*onset) : std::string());
  for (std::string const& region : regionSet(group)) key += "|" + region;
  return Uuid::named(kNamespace, key);
}

void widen(WeatherAlert& alert, RawEntry const& entry) {
  alert.severity = std::max(alert.severity, severityOfCap(entry.severity));
  if (entry.sent) alert.issued = std::max(alert.issued.value_or(*entry.sent), *entry.sent);
  if (entry.onset) alert.onset = std::min(alert.onset.value_or(*entry.onset), *entry.onset);
  if (entry.expires) alert.expires = std::max(alert.expires.value_or(*entry.expires), *entry.expires);
}

/// Nothing as soon as one of the areas has the place in it. In tenths, as good as the outlines are.
std::optional<double> distanceOf(Group const& group) {
  auto const nearest = std::ranges::min_element(group.entries, {}, &SelectedEntry::distanceKm);
  if (!nearest->distanceKm) return std::nullopt;
  return std::ceil(*nearest->distanceKm * 10) / 10;
}

RawEntry const& gravestOf(Group const& group) {
  return *std::ranges::max_element(group.entries, {}, [](SelectedEntry const& selected) {
            return severityOfCap(selected.entry->severity);
          })->entry;
}

WeatherAlert alertOf(Group const& group, std::string_view country, Texts const& texts) {
  WeatherAlert alert;
  alert.title = texts.text("govAlert.event." + std::string(enumName(group.type)));
  alert.icon = iconOf(group.type);
  alert.source = "MeteoAlarm";
  alert.isGovAlert = true;
  for (SelectedEntry const& selected : group.entries) widen(alert, *selected.entry);
  alert.distanceKm = distanceOf(group);
  std::string const& link = gravestOf(group).link;
  if (!link.empty()) alert.link = link;
  alert.id = identifierOf(group, country, alert.onset);
  std::vector<std::string> const areas = areasOf(group);
  alert.areaDesc = joined(areas);
  alert.message = *alert.areaDesc;
  if (areas.size() >= 2) {
    alert.message = texts.format("govAlert.affectingAreas", alert.title, areas.size());
    alert.description = texts.format("govAlert.affectedAreas", *alert.areaDesc);
  }
  return alert;
}

}  // namespace

std::vector<WeatherAlert> mergedAlerts(std::span<SelectedEntry const> entries, std::string_view country,
                                       Texts const& texts) {
  std::vector<WeatherAlert> alerts;
  for (Group const& group : groupsOf(entries)) alerts.push_back(alertOf(group, country, texts));
  return alerts;
}

}  // namespace nimbara

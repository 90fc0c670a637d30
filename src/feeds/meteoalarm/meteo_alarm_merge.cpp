#include "feeds/meteoalarm/meteo_alarm_merge.h"

#include "base/text/text.h"
#include "feeds/alerts/alert_messages.h"
#include "feeds/alerts/events/event_memory.h"
#include "feeds/alerts/gov_alerts.h"
#include "feeds/awareness/meteo_alarm_classes.h"
#include "feeds/meteoalarm/areas/warned_areas.h"
#include "feeds/regions/meteo_alarm_countries.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr std::size_t kMostTexts = 8;

struct Group {
  MeteoAlarmType type;
  std::vector<ToldEntry const*> entries;
  std::vector<ToldEntry const*> deciding;
};

void decide(Group& group) {
  std::ranges::copy_if(group.entries, std::back_inserter(group.deciding),
                       [](ToldEntry const* told) { return !told->isNear(); });
  if (group.deciding.empty()) group.deciding = group.entries;
}

std::vector<Group> groupsOf(std::span<ToldEntry const> entries) {
  std::vector<Group> groups;
  for (ToldEntry const& told : entries) {
    MeteoAlarmType const type = typeOf(told);
    auto const found = std::ranges::find(groups, type, &Group::type);
    Group& group = found == groups.end() ? groups.emplace_back(Group{type, {}, {}}) : *found;
    group.entries.push_back(&told);
  }
  std::ranges::for_each(groups, decide);
  return groups;
}

std::string joined(std::vector<std::string> const& parts, std::string_view separator) {
  std::string text;
  for (std::string const& part : parts) text += (text.empty() ? "" : std::string(separator)) + part;
  return text;
}

/// What the entries say, each once, in the order in which they begin; nothing when they say nothing.
template <class Text>
std::optional<std::string> said(std::vector<ToldEntry const*> entries, std::string_view separator,
                                Text const& textOf) {
  std::ranges::stable_sort(entries, {}, [](ToldEntry const* told) { return told->entry().onset; });
  std::vector<std::string> texts;
  for (ToldEntry const* const told : entries) {
    std::string text = textOf(*told);
    bool const isNew = !text.empty() && std::ranges::find(texts, text) == texts.end();
    if (isNew && texts.size() < kMostTexts) texts.push_back(std::move(text));
  }
  return texts.empty() ? std::nullopt : std::optional(joined(texts, separator));
}

/// A member of the document's details; empty without a document.
auto detail(std::string WarningDetails::* member) {
  return [member](ToldEntry const& told) { return told.details ? (*told.details).*member : std::string(); };
}

std::string colourOf(ToldEntry const& told) {
  bool const isStated = told.details && !told.details->colour.empty();
  return isStated ? told.details->colour : colourOfTitle(told.entry().title);
}

/// The most severe of the colours that are a warning's.
std::optional<std::string> colourOf(Group const& group) {
  constexpr std::string_view kColours[] = {"red", "orange", "yellow"};
  for (std::string_view const colour : kColours) {
    if (std::ranges::any_of(group.deciding, [&](auto const* told) { return colourOf(*told) == colour; }))
      return std::string(colour);
  }
  return std::nullopt;
}

void widen(WeatherAlert& alert, ToldEntry const& told) {
  RawEntry const& entry = told.entry();
  auto const sent = told.details && told.details->sent ? told.details->sent : entry.sent;
  alert.severity = std::max(alert.severity, severityOfCap(entry.severity));
  if (sent) alert.issued = std::max(alert.issued.value_or(*sent), *sent);
  if (entry.onset) alert.onset = std::min(alert.onset.value_or(*entry.onset), *entry.onset);
  if (entry.expires) alert.expires = std::max(alert.expires.value_or(*entry.expires), *entry.expires);
}

WarningMessage warningMessage(ToldEntry const& told) {
  RawEntry const& entry = told.entry();
  WarningMessage made{entry.identifier, {}, entry.sent, entry.status, entry.messageType, {}, {}};
  if (told.details) {
    made.sender = told.details->sender;
    if (told.details->sent) made.sent = told.details->sent;
    for (CapReference const& reference : told.details->references)
      made.references.push_back({reference.sender, reference.identifier, reference.sent});
  }
  for (RegionCode const& code : entry.otherCodes) addCode(made, code.registry, code.code);
  for (std::string const& code : entry.nuts3Codes) addCode(made, kNuts3Registry, code);
  return made;
}

/// In tenths, as good as the outlines are.
double rounded(double km) {
  return std::ceil(km * 10) / 10;
}

ToldEntry const& nearestOf(Group const& group) {
  return **std::ranges::min_element(group.entries, {},
                                    [](ToldEntry const* told) { return told->selected.distanceKm; });
}

RawEntry const& gravestOf(Group const& group) {
  return (*std::ranges::max_element(
              group.deciding, {},
              [](ToldEntry const* told) { return severityOfCap(told->entry().severity); }))
      ->entry();
}

std::string regionKey(RegionCode const& code) {
  return code.registry + ":" + code.code;
}

std::string regionKey(RawEntry const& entry) {
  if (!entry.otherCodes.empty()) return regionKey(entry.otherCodes.front());
  if (!entry.nuts3Codes.empty())
    return regionKey(RegionCode{std::string(kNuts3Registry), entry.nuts3Codes.front()});
  return entry.areaDesc;
}

/// Where the event is: in the place's own region, or in the nearest that has it.
std::string eventKey(Group const& group, MergeContext const& context) {
  ToldEntry const& nearest = nearestOf(group);
  bool const isOwn = !nearest.isNear() && !context.regions.codes.empty();
  return isoCountryCode(context.country) + "|" + std::string(enumName(group.type)) + "|" +
         (isOwn ? regionKey(context.regions.codes.front()) : regionKey(nearest.entry()));
}

void tell(WeatherAlert& alert, Group const& group) {
  auto const& deciding = group.deciding;
  bool const isAllTold =
      std::ranges::all_of(deciding, [](auto const* told) { return told->details.has_value(); });
  bool const isOffered =
      std::ranges::any_of(deciding, [](auto const* told) { return !told->entry().link.empty(); });
  alert.issuer = said(deciding, ", ", detail(&WarningDetails::issuer));
  alert.instruction = said(deciding, "\n\n", detail(&WarningDetails::instruction));
  alert.text = said(deciding, "\n\n", detail(&WarningDetails::text));
  alert.language = said(deciding, ", ", detail(&WarningDetails::language));
  if (isAllTold || isOffered) alert.isFullText = isAllTold;
  if (!alert.text) alert.text = said(deciding, "\n\n", [](auto const& told) { return told.entry().event; });
}

/// What is said of one area, each level and period once.
void addNear(std::vector<NearArea>& near, WarnedArea const& area,
             std::vector<ToldEntry const*> const& entries) {
  auto const first = static_cast<std::ptrdiff_t>(near.size());
  for (ToldEntry const* const told : entries) {
    RawEntry const& entry = told->entry();
    std::string const colour = colourOf(*told);
    NearArea row{area.name,
                 rounded(*area.distanceKm),
                 severityOfCap(entry.severity),
                 colour.empty() ? std::nullopt : std::optional(colour),
                 entry.onset,
                 entry.expires};
    bool const isNew = std::find(near.begin() + first, near.end(), row) == near.end();
    if (isNew) near.push_back(std::move(row));
  }
}

/// The shapes of the entries that decide, each once.
template <class Shape>
std::optional<std::vector<std::string>> drawn(Group const& group, std::vector<Shape> RawEntry::* shapes) {
  std::vector<std::string> texts;
  for (ToldEntry const* const told : group.deciding) {
    for (Shape const& shape : told->entry().*shapes) {
      std::string text = shapeText(shape);
      if (std::ranges::find(texts, text) == texts.end()) texts.push_back(std::move(text));
    }
  }
  return texts.empty() ? std::nullopt : std::optional(std::move(texts));
}

void locate(WeatherAlert& alert, Group const& group, MergeContext const& context) {
  std::vector<std::string> names;
  std::vector<NearArea> near;
  auto const areas = warnedAreas(group.entries, context.language);
  auto const entries = entriesByArea(group.entries);
  for (std::size_t i = 0; i < areas.size(); ++i) {
    names.push_back(areas[i].name);
    if (areas[i].distanceKm) addNear(near, areas[i], entries[i]);
  }
  if (!near.empty()) alert.near = std::move(near);
  if (auto const km = nearestOf(group).selected.distanceKm) alert.distanceKm = rounded(*km);
  alert.polygons = drawn(group, &RawEntry::polygons);
  alert.circles = drawn(group, &RawEntry::circles);
  alert.areaDesc = joined(names, ", ");
  alert.message = *alert.areaDesc;
  if (names.size() < 2) {
    if (alert.isFullText == true) alert.description = alert.text;
    return;
  }
  alert.message = context.texts.format("govAlert.affectingAreas", alert.title, names.size());
  alert.description = context.texts.format("govAlert.affectedAreas", *alert.areaDesc);
}

WeatherAlert alertOf(Group const& group, MergeContext const& context) {
  WeatherAlert alert;
  alert.title = context.texts.text("govAlert.event." + std::string(enumName(group.type)));
  alert.kind = warningKindOf(group.type);
  alert.source = "MeteoAlarm";
  alert.isGovAlert = true;
  for (ToldEntry const* const told : group.deciding) {
    widen(alert, *told);
    addMessage(alert, warningMessage(*told));
  }
  alert.colour = colourOf(group);
  if (std::string const& link = gravestOf(group).link; !link.empty()) alert.link = link;
  alert.event = eventKey(group, context);
  alert.id = govAlertId("meteoalarm|" + *alert.event + "|" +
                        (alert.onset ? formatIso8601(*alert.onset) : std::string()));
  tell(alert, group);
  locate(alert, group, context);
  return alert;
}

std::vector<ToldEntry> withoutDocuments(std::span<SelectedEntry const> entries) {
  std::vector<ToldEntry> told;
  told.reserve(entries.size());
  for (SelectedEntry const& selected : entries) told.push_back({selected, {}, {}});
  return told;
}

}  // namespace

MeteoAlarmType typeOf(ToldEntry const& told) {
  if (told.details && told.details->type) return *told.details->type;
  return meteoAlarmTypeOf(told.entry().event, told.entry().title);
}

std::vector<WeatherAlert> mergedAlerts(std::span<ToldEntry const> entries, MergeContext const& context) {
  std::vector<WeatherAlert> alerts;
  for (Group const& group : groupsOf(entries)) alerts.push_back(alertOf(group, context));
  return alerts;
}

std::vector<WeatherAlert> mergedAlerts(std::span<SelectedEntry const> entries, MergeContext const& context) {
  std::vector<ToldEntry> const told = withoutDocuments(entries);
  return mergedAlerts(std::span<ToldEntry const>(told), context);
}

std::vector<WeatherAlert> unplacedAlerts(std::span<SelectedEntry const> entries,
                                         MergeContext const& context) {
  std::vector<ToldEntry> const told = withoutDocuments(entries);
  std::vector<ToldEntry const*> pointers;
  pointers.reserve(told.size());
  for (ToldEntry const& one : told) pointers.push_back(&one);
  std::vector<WeatherAlert> alerts;
  for (auto const& area : entriesByArea(pointers)) {
    RegionCode const region{std::string(kUnplacedRegistry), regionKey(area.front()->entry())};
    PlaceRegions const here{std::string(context.country), {}, {region}, {}, {}};
    std::vector<ToldEntry> ofArea;
    ofArea.reserve(area.size());
    for (ToldEntry const* const one : area) ofArea.push_back(*one);
    std::ranges::move(mergedAlerts(std::span<ToldEntry const>(ofArea),
                                   {context.country, here, context.language, context.texts}),
                      std::back_inserter(alerts));
  }
  sortMostSevereFirst(alerts);
  return alerts;
}

std::vector<SelectedEntry> decidingEntries(std::span<SelectedEntry const> entries) {
  std::vector<ToldEntry> const told = withoutDocuments(entries);
  std::vector<SelectedEntry> deciding;
  for (Group const& group : groupsOf(told)) {
    for (ToldEntry const* const one : group.deciding) deciding.push_back(one->selected);
  }
  std::ranges::stable_sort(deciding, std::ranges::greater{},
                           [](SelectedEntry const& one) { return severityOfCap(one.entry->severity); });
  return deciding;
}

}  // namespace nimbara

#include "desktop/views/hazards/sources_view.h"

#include "app/words/coverage_text.h"
#include "base/words/time_words.h"
#include "feeds/alerts/official_sources.h"
#include "feeds/alerts/warning_route.h"

#include <algorithm>
#include <optional>

namespace nimbara {

namespace {

constexpr std::string_view kAsking = "asking";

void append(std::string& text, std::string_view part, std::string_view separator) {
  if (part.empty()) return;
  if (!text.empty()) text += separator;
  text += part;
}

/// Who is asked for a place, in this order.
struct Route {
  std::vector<std::string_view> asked;
  std::vector<std::string_view> possible;

  Route(Coordinate coordinate, std::string chosen) {
    GovAlertPlace place = govAlertPlace(coordinate);
    place.chosenSource = std::move(chosen);
    asked = warningRoute(place);
    possible = possibleSources(place);
  }
};

std::string lacksOf(std::string_view source, ViewContext const& context) {
  std::string lines;
  OfficialSource const* const row = officialSource(source);
  if (row == nullptr) return lines;
  for (std::string_view const key : row->lacks) {
    if (!key.empty()) append(lines, context.texts.text(key), "\n");
  }
  return lines;
}

/// Those behind the one that answered, or the sentence of what happens without any.
std::string nextOf(Route const& route, std::string_view serving, ViewContext const& context) {
  std::string names;
  auto const found = std::ranges::find(route.asked, serving);
  auto const first = found == route.asked.end() ? route.asked.begin() : found;
  for (auto one = first; one != route.asked.end(); ++one) {
    if (*one != serving) append(names, warningServiceName(*one), ", ");
  }
  return names.empty() ? context.text("desktop.sources.next.nobody") : names;
}

void fillChoice(SourceView& view, Route const& route, ViewContext const& context) {
  if (view.placeId.empty() || route.possible.size() < 2 || route.asked.empty()) return;
  for (std::string_view const name : route.possible) {
    bool const isUsual = view.values.empty();
    std::string const service = warningServiceName(name);
    view.labels.push_back(isUsual ? context.texts.format("desktop.sources.usual", service) : service);
    view.values.emplace_back(isUsual ? kUsualSource : name);
    if (name == route.asked.front()) view.chosen = view.values.back();
  }
}

std::string checkedText(std::optional<Instant> checkedAt, ViewContext const& context) {
  if (!checkedAt) return context.text("desktop.sources.never");
  std::string const moment = TimeWords(context.texts, context.fallback).moment(*checkedAt, context.now);
  return moment + "  ·  " + ageText(*checkedAt, context.now, context.texts);
}

void fillCheck(SourceView& view, SourceCoverage const& coverage, ViewContext const& context) {
  bool const isFirst = coverage.state == CoverageState::unchecked && !coverage.since && !coverage.reason;
  view.state = isFirst ? kAsking : enumName(coverage.state);
  view.detail = coverageText(coverage, context.texts, context.fallback, context.now);
  view.checked = checkedText(coverage.checkedAt, context);
}

SourceView viewOf(SourceView view, Route const& route, std::optional<SourceCoverage> const& coverage,
                  ViewContext const& context) {
  std::string_view serving = route.asked.empty() ? std::string_view() : route.asked.front();
  view.state = kAsking;
  view.checked = context.text("desktop.sources.never");
  if (coverage) {
    fillCheck(view, *coverage, context);
    if (coverage->source) serving = *coverage->source;
  }
  view.stateText = context.text("desktop.sources.state." + view.state);
  view.service = serving.empty() ? std::string() : warningServiceName(serving);
  view.lacks = lacksOf(serving, context);
  view.next = nextOf(route, serving, context);
  fillChoice(view, route, context);
  view.sentence = view.place;
  for (std::string const* const part : {&view.stateText, &view.service, &view.detail})
    append(view.sentence, *part, ", ");
  return view;
}

/// Of the selected place the check that its pages show, else what is kept of it.
std::optional<SourceCoverage> coverageAt(Coordinate coordinate, HazardsState const& hazards, Instant now) {
  OfficialCheck const& shown = hazards.official;
  bool const isShown = shown.place && shown.place->coordinate == coordinate && !shown.coverage.empty();
  auto const kept = std::ranges::find(hazards.places, coordinate, &PlaceCoverage::coordinate);
  bool const isKept = kept != hazards.places.end() && !kept->coverage.empty();
  if (!isShown && !isKept) return std::nullopt;
  return mostPressing(agedCoverage(isShown ? shown.coverage : kept->coverage, now));
}

}  // namespace

std::vector<SourceView> sourceViews(EngineSnapshot const& snapshot, ViewContext const& context) {
  std::vector<SourceView> views;
  HazardsState const& hazards = *snapshot.hazards;
  auto const add = [&](std::string id, std::string name, Coordinate coordinate, std::string chosen) {
    SourceView view;
    view.placeId = std::move(id);
    view.place = std::move(name);
    views.push_back(viewOf(std::move(view), Route(coordinate, std::move(chosen)),
                           coverageAt(coordinate, hazards, context.now), context));
  };
  if (snapshot.place && snapshot.places.selected == kCurrentLocation) {
    std::string const& name = snapshot.place->name;
    add({}, name.empty() ? context.text("desktop.here") : name, snapshot.place->coordinate, {});
  }
  for (SavedPlace const& place : snapshot.places.places)
    add(place.id.text(), place.name, place.coordinate, place.warningSource.value_or(""));
  return views;
}

}  // namespace nimbara

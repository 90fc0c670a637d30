#include "desktop/views/hazards/sources_view.h"

#include "app/words/coverage_text.h"
#include "app/words/source_words.h"
#include "base/words/list_text.h"
#include "base/words/time_words.h"
#include "feeds/alerts/routing/warning_route.h"

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

std::string linesOf(std::vector<std::string> const& texts) {
  std::string lines;
  for (std::string const& text : texts) append(lines, text, "\n");
  return lines;
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

/// What only time has made unknown is known again soon.
bool isUnasked(SourceCoverage const& coverage) {
  if (coverage.state != CoverageState::unchecked) return false;
  return !coverage.reason || coverage.reason->kind == ServiceFailure::Kind::notAskedLately;
}

std::string stateOf(SourceCoverage const& coverage, bool isAsking) {
  bool const isFirst = coverage.state == CoverageState::unchecked && !coverage.since && !coverage.reason;
  if (isAsking && isUnasked(coverage)) return "checking";
  if (coverage.state == CoverageState::unplaced && coverage.areas.empty()) return "countryWide";
  return isFirst ? std::string(kAsking) : std::string(enumName(coverage.state));
}

void fillCheck(SourceView& view, SourceCoverage const& coverage, ViewContext const& context) {
  view.state = stateOf(coverage, view.state == "checking");
  if (view.state != "checking")
    view.detail = coverageText(coverage, context.texts, context.fallback, context.now);
  view.checked = checkedText(coverage.checkedAt, context);
}

SourceView viewOf(SourceView view, Route const& route, std::optional<SourceCoverage> const& coverage,
                  bool isAsking, ViewContext const& context) {
  SourceWords const words = sourceWords(route.asked, coverage ? &*coverage : nullptr, context.texts);
  view.state = isAsking ? "checking" : kAsking;
  view.checked = context.text("desktop.sources.never");
  if (coverage) fillCheck(view, *coverage, context);
  view.stateText = context.text("desktop.sources.state." + view.state);
  view.service = words.service;
  view.lacks = linesOf(words.lacks);
  view.next = words.next;
  fillChoice(view, route, context);
  view.sentence = view.place;
  for (std::string const* const part : {&view.stateText, &view.service, &view.detail})
    appendClause(view.sentence, *part, context.texts);
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
    bool const isShown = hazards.official.place && hazards.official.place->coordinate == coordinate;
    bool const isAsking = hazards.isCheckingPlaces || (isShown && hazards.official.isAsking);
    views.push_back(viewOf(std::move(view), Route(coordinate, std::move(chosen)),
                           coverageAt(coordinate, hazards, context.now), isAsking, context));
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

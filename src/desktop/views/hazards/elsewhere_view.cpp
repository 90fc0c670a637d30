#include "desktop/views/hazards/elsewhere_view.h"

#include "base/text/text.h"
#include "base/words/list_text.h"
#include "feeds/alerts/gov_alerts.h"
#include "feeds/alerts/warning_words.h"

#include <algorithm>

namespace nimbara {

namespace {

struct Elsewhere {
  ElsewhereView view;
  AlertSeverity severity = AlertSeverity::info;
};

std::optional<Elsewhere> elsewhere(SavedPlace const& place, std::vector<WeatherAlert> alerts,
                                   ViewContext const& context) {
  std::erase_if(alerts, [&](WeatherAlert const& alert) { return hasEnded(alert, context.now); });
  if (alerts.empty()) return std::nullopt;
  WeatherAlert const& first = alerts.front();
  std::string const title = oneLine(first.title, 100);
  Elsewhere found;
  found.severity = first.severity;
  found.view.placeId = place.id.text();
  found.view.level = enumName(first.severity);
  found.view.text = alerts.size() == 1
                        ? context.texts.format("desktop.also.place", place.name, title)
                        : context.texts.format("desktop.also.more", place.name, title, alerts.size() - 1);
  found.view.sentence = found.view.text;
  appendClause(found.view.sentence, gradeText(gradeOf(first), context.texts), context.texts);
  return found;
}

}  // namespace

std::vector<ElsewhereView> elsewhereViews(PlaceList const& list, std::vector<PlaceCoverage> const& all,
                                          std::optional<Place> const& shown, ViewContext const& context) {
  std::vector<Elsewhere> found;
  for (SavedPlace const& place : list.places) {
    if (place.id == list.selected || (shown && shown->coordinate == place.coordinate)) continue;
    auto const known = std::ranges::find(all, place.coordinate, &PlaceCoverage::coordinate);
    if (known == all.end()) continue;
    if (auto one = elsewhere(place, known->alerts, context)) found.push_back(std::move(*one));
  }
  std::ranges::stable_sort(found, std::ranges::greater{}, &Elsewhere::severity);
  std::vector<ElsewhereView> views;
  views.reserve(found.size());
  for (Elsewhere& one : found) views.push_back(std::move(one.view));
  return views;
}

}  // namespace nimbara

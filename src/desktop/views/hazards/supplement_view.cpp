#include "desktop/views/hazards/supplement_view.h"

#include "app/state/supplement_state.h"
#include "app/words/hazards/air_text.h"
#include "app/words/hazards/climate_text.h"
#include "app/words/hazards/storm_text.h"
#include "feeds/storms/storm_merge.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <utility>

namespace nimbara {

namespace {

constexpr std::size_t kMostLines = 8;

void addLine(std::string& body, std::string const& line) {
  if (line.empty()) return;
  body += (body.empty() ? "" : "\n") + line;
}

void addLine(std::string& body, HazardLine const& line) {
  addLine(body, line.detail.empty() ? line.title : line.title + "  ·  " + line.detail);
}

/// The nearest first; how many more there are is told by the headline.
template <class T, class LineOf>
std::string bodyOf(std::vector<T> const& items, LineOf const& lineOf) {
  std::string body;
  for (std::size_t i = 0; i < std::min(items.size(), kMostLines); ++i) addLine(body, lineOf(items[i]));
  return body;
}

SupplementCard cardOf(std::string_view name, HazardCheck const& check, std::string headline,
                      ViewContext const& context) {
  SupplementCard card;
  card.name = name;
  card.title = context.text("desktop.hazard." + std::string(name));
  card.headline = std::move(headline);
  card.isUnchecked = check.state == HazardState::unchecked;
  return card;
}

/// The index alone, and what is unusual about today: the rest has a page of its own.
SupplementCard airCard(SupplementState const& state, ViewContext const& context, HazardWords const& words) {
  auto const& reading = state.airQuality;
  HazardCheck const check = hazardCheck(reading, true);
  SupplementCard card = cardOf("air", check, uncheckedText("air", check, words), context);
  if (reading.checkedAt) {
    AirText const text = airText(reading.data, state.place.coordinate, reading.checkedAt, words);
    addLine(card.body, std::exchange(card.headline, text.index));
    card.source = text.source;
  }
  if (state.climate.isCurrent()) addLine(card.body, climateText(state.climate.data, words).sentence);
  card.page = "air";
  return card;
}

SupplementCard stormCard(SupplementState const& state, ViewContext const& context, HazardWords const& words) {
  auto storms = state.activeStorms.data.storms;
  sortByDistance(storms, state.place.coordinate);
  HazardCheck const check = hazardCheck(state.activeStorms, !storms.empty());
  SupplementCard card = cardOf("storms", check, stormStateText(check, storms.size(), words), context);
  card.body = bodyOf(
      storms, [&](TropicalStorm const& storm) { return stormLine(storm, state.place.coordinate, words); });
  for (std::string const& miss : stormMissLines(state.activeStorms.data.misses, words))
    addLine(card.source, miss);
  card.lane = 1;
  return card;
}

SupplementCard fireCard(SupplementState const& state, ViewContext const& context, HazardWords const& words) {
  auto const& fires = state.activeFires;
  HazardCheck const check = hazardCheck(fires, !fires.data.empty());
  SupplementCard card =
      cardOf("fires", check, fireStateText(check, fires.data.size(), SupplementState::kFireRadiusKm, words),
             context);
  card.body = bodyOf(
      fires.data, [&](FireDetection const& fire) { return fireLine(fire, state.place.coordinate, words); });
  if (!fires.data.empty()) card.source = context.text("fires.note");
  card.lane = 1;
  return card;
}

SupplementCard lightningCard(SupplementState const& state, ViewContext const& context,
                             HazardWords const& words) {
  auto strikes = state.lightning.data;
  std::ranges::stable_sort(strikes, {}, [&](LightningStrike const& strike) {
    return haversineKm(state.place.coordinate, strike.coordinate);
  });
  HazardCheck const check = hazardCheck(state.lightning, !strikes.empty());
  SupplementCard card =
      cardOf("lightning", check,
             lightningStateText(check, strikes.size(), SupplementState::kLightningRadiusKm, words), context);
  card.body = bodyOf(strikes, [&](LightningStrike const& strike) {
    return strikeLine(strike, state.place.coordinate, words);
  });
  return card;
}

SupplementCard advisoryCard(SupplementState const& state, ViewContext const& context,
                            HazardWords const& words) {
  auto const& advisories = state.advisories;
  HazardCheck check = hazardCheck(advisories, !advisories.data.empty());
  if (check.state == HazardState::none) check.state = HazardState::uncovered;
  SupplementCard card = cardOf(
      "advisories", check, advisoryStateText(check, advisories.data.size(), state.country, words), context);
  card.body =
      bodyOf(advisories.data, [&](TravelAdvisory const& entry) { return advisoryLine(entry, words); });
  card.source = advisorySourceText(state.advisorySource, context.texts);
  return card;
}

}  // namespace

std::vector<SupplementCard> supplementCards(SupplementState const* state, ViewContext const& context) {
  if (state == nullptr) return {};
  Calendar const calendar =
      Calendar::forZone(std::string(timeZoneAt(state->place.coordinate))).value_or(context.fallback);
  HazardWords const words{context.texts, context.units, calendar, context.now};
  std::vector<SupplementCard> cards;
  if (state->airQuality.isSettled()) cards.push_back(airCard(*state, context, words));
  if (state->activeStorms.isSettled()) cards.push_back(stormCard(*state, context, words));
  if (state->lightning.isSettled()) cards.push_back(lightningCard(*state, context, words));
  if (state->activeFires.isSettled()) cards.push_back(fireCard(*state, context, words));
  if (state->advisories.isSettled()) cards.push_back(advisoryCard(*state, context, words));
  return cards;
}

}  // namespace nimbara

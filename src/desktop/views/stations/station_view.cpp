#include "desktop/views/stations/station_view.h"

#include "app/words/station_text.h"
#include "base/bearing.h"
#include "base/text/number.h"
#include "base/words/compass_point.h"
#include "feeds/fetching/failure_words.h"
#include "feeds/stations/station_shown.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

constexpr std::size_t kMostPublic = 25;
constexpr int kLowBattery = 15;

/// What a module's line has; the rest is the measuring of the same in another way.
constexpr StationQuantity kShown[] = {StationQuantity::temperature,  StationQuantity::humidity,
                                      StationQuantity::pressure,     StationQuantity::windSpeed,
                                      StationQuantity::rainLastHour, StationQuantity::carbonDioxide,
                                      StationQuantity::noise};

std::string joined(std::vector<std::string> const& parts, std::string_view between) {
  std::string all;
  for (std::string const& part : parts) {
    if (!part.empty()) all += (all.empty() ? "" : std::string(between)) + part;
  }
  return all;
}

/// The engine's clocks may have asked since the page did.
StationsReading const& newerOf(StationDesk const& desk, EngineSnapshot const& snapshot) {
  auto const& shown = snapshot.weather->station;
  bool const isSame =
      shown && shown->reading.kind == desk.reading.kind && shown->reading.chosen == desk.reading.chosen;
  return isSame && shown->reading.checkedAt > desk.reading.checkedAt ? shown->reading : desk.reading;
}

/// How the forecast of the selected place judges it; null for another station.
StationShown const* judgementOf(StationsReading const& reading, EngineSnapshot const& snapshot) {
  auto const& shown = snapshot.weather->station;
  if (!shown || reading.station() == nullptr) return nullptr;
  StationReading const* const judged = shown->reading.station();
  bool const isSame =
      judged != nullptr && judged->id == reading.station()->id && shown->reading.kind == reading.kind;
  return isSame ? shown.get() : nullptr;
}

std::string nameOf(StationReading const& station, ViewContext const& context) {
  return station.name.empty() ? context.text("station.unnamed") : station.name;
}

std::string sourceOf(StationsReading const& reading, ViewContext const& context) {
  StationReading const* const station = reading.station();
  switch (reading.kind) {
    case StationLinkKind::account:
      return context.text("desktop.station.source.account");
    case StationLinkKind::around:
      return context.texts.format(
          reading.chosen.empty() ? "desktop.station.source.around" : "desktop.station.source.public",
          reading.around.empty() ? context.text("desktop.station.around") : reading.around);
    case StationLinkKind::address:
      return context.texts.format("desktop.station.source.address", station != nullptr ? station->id : "–");
    case StationLinkKind::none:
      break;
  }
  return {};
}

std::string endText(LinkEnd const& end, ViewContext const& context) {
  using Outcome = LinkEnd::Outcome;
  if (end.outcome == Outcome::tooMany) return context.text("station.state.tooMany");
  std::string const key = "desktop.station.end." + std::string(enumName(end.outcome));
  if (end.outcome == Outcome::failed)
    return context.texts.format(key, failureText(end.failure, context.texts));
  bool const hasReason = end.outcome == Outcome::refused || end.outcome == Outcome::portTaken;
  return hasReason ? context.texts.format(key, end.reason) : context.text(key);
}

std::string busyText(StationTask task, ViewContext const& context) {
  if (task == StationTask::linking) return context.text("desktop.station.linking");
  bool const isAsking = task == StationTask::reading || task == StationTask::around;
  return isAsking ? context.text("desktop.sources.state.checking") : std::string();
}

std::string distanceText(double km, ViewContext const& context) {
  return measured(fixedDecimal(convert(km, context.units.distance), 1), symbol(context.units.distance));
}

std::string problemText(StationProblem const& problem, ViewContext const& context) {
  using Kind = StationProblem::Kind;
  if (problem.kind == Kind::tooMany) return context.text("station.state.tooMany");
  if (problem.kind == Kind::locked) return context.text("station.state.locked");
  if (problem.kind == Kind::signInAgain) return context.text("desktop.station.signInAgain");
  if (problem.kind == Kind::notLinked) return context.text("desktop.station.around.needs");
  return context.texts.format("station.state.failed", failureText(problem.failure, context.texts));
}

std::string valuesOf(StationModule const& module, ViewContext const& context) {
  std::vector<std::string> values;
  for (StationQuantity const quantity : kShown) {
    if (auto const value = module.value(quantity))
      values.push_back(valueText(quantity, *value, context.units));
  }
  return joined(values, "  ·  ");
}

std::string batteryText(StationModule const& module, ViewContext const& context) {
  if (!module.battery) return {};
  return context.texts.format(*module.battery <= kLowBattery ? "station.batteryLow" : "station.battery",
                              *module.battery);
}

bool isSilent(StationModule const& module, ViewContext const& context) {
  return !module.isReachable || !module.observedAt || context.now - *module.observedAt > kStationLife;
}

std::string ageOf(std::optional<Instant> at, ViewContext const& context) {
  return at ? ageText(*at, context.now, context.texts) : context.text("station.silent");
}

StationRowView moduleView(StationModule const& module, ViewContext const& context) {
  StationRowView view;
  view.id = module.id;
  view.name = moduleText(module.name, module.kind, context.texts);
  view.values = valuesOf(module, context);
  view.detail = joined({ageOf(module.observedAt, context), batteryText(module, context)}, ", ");
  view.isTroubled = isSilent(module, context) || module.battery.value_or(100) <= kLowBattery;
  view.sentence = joined({view.name, view.values, view.detail}, ", ");
  return view;
}

/// What it measures out of doors now.
std::string outdoorsOf(StationReading const& station, ViewContext const& context) {
  std::vector<std::string> values;
  for (StationQuantity const quantity : kShown) {
    if (auto const value = measuredNow(station, quantity, context.now))
      values.push_back(valueText(quantity, value->value, context.units));
  }
  return joined(values, "  ·  ");
}

StationRowView choiceView(StationReading const& station, std::string name, ViewContext const& context) {
  StationRowView view;
  view.id = station.id;
  view.name = std::move(name);
  view.values = outdoorsOf(station, context);
  auto const last = station.lastUpload();
  view.detail = ageOf(last, context);
  view.isTroubled = view.values.empty();
  view.sentence = joined({view.name, view.values, view.detail}, ", ");
  return view;
}

std::string wayText(Coordinate from, Coordinate to, std::string const& place, ViewContext const& context) {
  constexpr std::array<std::string_view, 8> kPoints{"N", "NE", "E", "SE", "S", "SW", "W", "NW"};
  constexpr double kWidth = 45;
  auto const at = static_cast<std::size_t>(std::lround(bearingDegrees(from, to) / kWidth)) % kPoints.size();
  return context.texts.format("desktop.station.around.away", distanceText(haversineKm(from, to), context),
                              compassPoint(kPoints[at], context.texts), place);
}

}  // namespace

StationView stationView(StationDesk const& desk, EngineSnapshot const& snapshot, ViewContext const& context) {
  StationsReading const& reading = newerOf(desk, snapshot);
  StationReading const* const station = reading.station();
  StationView view;
  view.isLinked = reading.kind != StationLinkKind::none;
  view.isWaiting = desk.task == StationTask::consent;
  view.isBusy = desk.task != StationTask::none;
  view.needsFields = context.standIn.empty();
  view.source = sourceOf(reading, context);
  if (station != nullptr) view.name = nameOf(*station, context);
  bool const mustSignIn = reading.state == StationState::signInAgain;
  view.problem =
      mustSignIn ? context.text("desktop.station.signInAgain") : stationProblemText(reading, context.texts);
  if (StationShown const* const judged = judgementOf(reading, snapshot)) {
    view.live = liveText(*judged, context.units, context.texts, context.now);
    if (judged->isElsewhere && snapshot.place)
      view.elsewhere = context.texts.format("desktop.station.elsewhere", snapshot.place->name);
    for (DoubtedValue const& doubted : judged->doubts)
      view.doubts.push_back(doubtText(doubted, context.units, context.texts, context.now));
  }
  view.busy = busyText(desk.task, context);
  if (desk.end) view.note = endText(*desk.end, context);
  view.isTroubled = (desk.end && !desk.end->isLinked()) || !desk.problem.empty();
  if (!desk.problem.empty()) view.note = context.texts.format("desktop.station.notKept", desk.problem);
  view.consentUrl = desk.consentUrl;
  view.redirect = kConsentRedirect;
  if (desk.hasAccount && snapshot.place)
    view.lookAround = context.texts.format("desktop.station.around.look", snapshot.place->name);
  view.around = publicStationsText(desk, context);
  view.hasMedian = desk.around && desk.around->stations.used >= kFewestPublic;
  view.isAround = reading.kind == StationLinkKind::around && desk.hasAccount;
  view.isMedian = reading.kind == StationLinkKind::around && reading.chosen.empty();
  return view;
}

std::vector<StationRowView> stationModuleViews(StationDesk const& desk, EngineSnapshot const& snapshot,
                                               ViewContext const& context) {
  std::vector<StationRowView> views;
  StationReading const* const station = newerOf(desk, snapshot).station();
  if (station == nullptr) return views;
  views.reserve(station->modules.size());
  for (StationModule const& module : station->modules) views.push_back(moduleView(module, context));
  return views;
}

std::vector<StationRowView> stationChoiceViews(StationDesk const& desk, ViewContext const& context) {
  std::vector<StationRowView> views;
  StationsReading const& reading = desk.reading;
  if (reading.kind != StationLinkKind::account) return views;
  views.reserve(reading.stations.size());
  for (StationReading const& station : reading.stations) {
    views.push_back(choiceView(station, nameOf(station, context), context));
    views.back().isChosen = reading.station() == &station;
  }
  return views;
}

std::vector<StationRowView> publicStationViews(StationDesk const& desk, ViewContext const& context) {
  std::vector<StationRowView> views;
  if (!desk.around) return views;
  for (StationReading const& station : desk.around->stations.nearest) {
    if (views.size() == kMostPublic) break;
    auto const stands = station.place();
    if (!stands) continue;
    views.push_back(publicStationView(desk, station, *stands, context));
  }
  return views;
}

StationRowView publicStationView(StationDesk const& desk, StationReading const& station, Coordinate stands,
                                 ViewContext const& context) {
  StationRowView view =
      choiceView(station, wayText(desk.around->at, stands, desk.around->place, context), context);
  view.isChosen = desk.reading.kind == StationLinkKind::around && desk.reading.chosen == station.id;
  return view;
}

std::string publicStationsText(StationDesk const& desk, ViewContext const& context) {
  if (!desk.hasAccount) return context.text("desktop.station.around.needs");
  if (!desk.around) return {};
  StationsAround const& around = *desk.around;
  if (around.problem) return problemText(*around.problem, context);
  std::string const reach = distanceText(kPublicReachKm, context);
  if (around.stations.nearest.empty())
    return context.texts.format("desktop.station.around.none", reach, around.place);
  return context.texts.format("desktop.station.around.found", reach, around.place, around.stations.used,
                              around.stations.leftOut);
}

}  // namespace nimbara

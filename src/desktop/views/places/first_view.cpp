#include "desktop/views/places/first_view.h"

#include "app/settings/settings_registry.h"
#include "platform/service.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

/// What is asked for from the beginning on, in the words of the credits.
constexpr std::array<std::string_view, 5> kAskedAtOnce{"forecast", "warnings", "earthquakes", "geomagnetic",
                                                       "advisories"};

bool isAsked(ServiceRow const& row, bool isAppleWeatherConfigured) {
  bool const wantsContract = row.service == Service::appleWeather && !isAppleWeatherConfigured;
  bool const isOption = row.service == Service::brightSky;
  return !row.source.name.empty() && !row.host.empty() && !row.needsKey && !wantsContract && !isOption;
}

std::string joinedNames(std::vector<std::string> const& names, ViewContext const& context) {
  std::string line = names.front();
  for (std::size_t i = 1; i < names.size(); ++i) {
    line = context.texts.format(i + 1 == names.size() ? "desktop.list.last" : "desktop.list.more", line,
                                names[i]);
  }
  return line;
}

/// Places whose forecasts are there without a network.
std::vector<std::string> keptNames(EngineSnapshot const& snapshot) {
  std::vector<std::string> names;
  for (SavedPlace const& place : snapshot.places.places) {
    auto const kept = snapshot.kept.find(place.id);
    if (kept != snapshot.kept.end() && kept->second) names.push_back(place.name);
  }
  constexpr std::size_t kMostNamed = 4;
  if (names.size() > kMostNamed) names.resize(kMostNamed);
  return names;
}

std::string offlineText(EngineSnapshot const& snapshot, ViewContext const& context) {
  auto const kept = keptNames(snapshot);
  std::string text = context.text("desktop.arrival.offline.text");
  if (!kept.empty()) {
    text += " " + context.texts.format("desktop.arrival.offline.kept", joinedNames(kept, context));
  }
  return text;
}

}  // namespace

WelcomeView welcomeView(EngineSnapshot const& snapshot, ViewContext const& context) {
  using Phase = LocationState::Phase;
  WelcomeView view;
  if (snapshot.isOffline) view.notice = context.text("desktop.welcome.offline");
  Phase const phase = snapshot.location.phase;
  view.isLocating = phase == Phase::asking;
  view.isTroubled = phase == Phase::denied || phase == Phase::unavailable;
  if (view.isLocating) view.locating = context.text("desktop.here.asking");
  if (phase == Phase::denied) view.locating = context.text("desktop.here.denied");
  if (phase == Phase::unavailable) view.locating = context.text("desktop.here.unavailable");
  for (char const* const key : {"city", "spelling", "coordinates"}) {
    view.examples.push_back(context.text(std::string("desktop.welcome.example.") + key));
  }
  return view;
}

std::vector<WelcomeSource> welcomeSources(bool isAppleWeatherConfigured, ViewContext const& context) {
  std::vector<WelcomeSource> sources;
  for (std::string_view const purpose : kAskedAtOnce) {
    std::vector<std::string> names;
    for (ServiceRow const& row : kServices) {
      if (row.source.purpose == purpose && isAsked(row, isAppleWeatherConfigured)) {
        names.emplace_back(row.source.name);
      }
    }
    std::string const title = context.text("desktop.welcome.source." + std::string(purpose));
    std::string const line = joinedNames(names, context);
    sources.push_back({title, line, title + ": " + line});
  }
  return sources;
}

ArrivalView arrivalView(EngineSnapshot const& snapshot, ViewContext const& context) {
  WeatherState const& weather = *snapshot.weather;
  if (!snapshot.place || weather.weatherData) return {};
  bool const isOffline = weather.error && weather.error->kind == AppError::Case::offline;
  if (isOffline) {
    return {"offline", context.text("desktop.arrival.offline"), offlineText(snapshot, context)};
  }
  if (weather.error && weather.error->kind != AppError::Case::noLocation) {
    return {"failed", context.text("desktop.noWeather"), weather.error->text(context.texts)};
  }
  return {"loading", context.text("desktop.loading"), {}};
}

BackgroundView backgroundView(EngineSnapshot const& snapshot, bool isAnswered, ViewContext const& context) {
  if (!snapshot.settings || !snapshot.weather->weatherData || !context.standIn.empty()) return {};
  SettingsState const& settings = *snapshot.settings;
  auto const view = [&](std::string_view phase, std::string text) {
    std::string const key = "desktop.background." + std::string(phase);
    return BackgroundView{std::string(phase), context.text(key), std::move(text)};
  };
  bool const isInstalled =
      settings.watch == WatchStart::atLogin || settings.watch == WatchStart::fromNextLogin;
  if (isAnswered) {
    if (settings.isWatchChanging) return view("working", {});
    if (!settings.watchProblem.empty()) {
      return view("failed",
                  context.texts.format("desktop.settings.startAtLogin.failed", settings.watchProblem));
    }
    if (!isInstalled) return view("working", {});
    return view("done", context.text("desktop.background.done." + std::string(enumName(settings.watch))));
  }
  bool const wasAsked = settings.settings.boolean(kAskedBackgroundSetting);
  bool const isOpen = settings.watch == WatchStart::byHand && settings.canChangeWatch;
  if (wasAsked || !isOpen) return {};
  return view("question", context.text("desktop.background.question.text"));
}

}  // namespace nimbara

#include "app/engine/clocks/refresh_clocks.h"
#include "app/places/place_resolver.h"
#include "app/places/places.h"
#include "app/services/feed_services.h"
#include "app/settings/keyed_settings_store.h"
#include "app/settings/service_directory.h"
#include "app/settings/settings_registry.h"
#include "app/words/coverage_text.h"
#include "base/json/json.h"
#include "base/text/display_text.h"
#include "base/words/time_words.h"
#include "cli/cli.h"
#include "cli/pages/forecast/line_text.h"
#include "cli/pages/warnings/source_report.h"
#include "cli/run_context.h"
#include "cli/terminal.h"
#include "feeds/alerts/gov_alert_service.h"
#include "feeds/regions/regions.h"
#include "feeds/stations/station_service.h"
#include "gazetteer/gazetteer.h"
#include "model/weather_cache.h"
#include "platform/linux/desktop_services.h"
#include "platform/linux/speech_output.h"
#include "providers/provider_history.h"

#include <unistd.h>

namespace nimbara {

namespace {

struct ServiceState {
  std::string service;
  std::string address;
  bool configured = true;
  std::optional<KeyPlace> key;            ///< where the user's key lies; absent: there is none
  std::optional<std::string> keyProblem;  ///< why it cannot be used now
  std::optional<Instant> lastSuccess;
  std::optional<std::string> lastError;
  std::optional<Instant> lastErrorAt;
  bool coolingDown = false;
};

struct CachedPlace {
  std::string name;
  std::optional<Instant> answeredAt;  ///< absent: nothing is kept of it
  std::optional<WeatherProviderOption> provider;
};

struct PlaceWarnings {
  std::string name;
  std::vector<SourceCoverage> coverage;
};

struct FolderState {
  std::string purpose;
  std::string path;
  bool exists = false;
  bool writable = false;
};

struct DesktopState {
  std::string name;
  std::string purpose;
  DesktopServiceState::Presence presence = DesktopServiceState::Presence::unknown;
  std::string details;
};

/// The outlines of warning regions in use.
struct RegionState {
  std::string edition;
  bool isUpdated = false;  ///< from the folder of data, not the program's own
  std::optional<std::string> problem;
};

/// How often something is refreshed, and as far as files tell, when it was and when it may be again.
struct ClockState {
  std::string clock;
  std::int64_t seconds = 0;
  std::string of;
  std::optional<Instant> last;
  std::optional<Instant> next;
};

/// Of the user's weather station.
struct StationLinkState {
  StationLinkKind kind = StationLinkKind::none;
  StationState state = StationState::notLinked;
  std::optional<StationTokensIn> tokens;  ///< absent: there are none
};

struct Diagnosis {
  std::vector<ServiceState> services;
  std::vector<CachedPlace> cache;
  std::vector<PlaceWarnings> warnings;
  std::vector<FolderState> folders;
  std::vector<DesktopState> desktop;
  RegionState regions;
  std::vector<ClockState> clocks;
  StationLinkState station;
};

}  // namespace

template <>
inline constexpr auto jsonFields<ServiceState> = FieldList{
    field("service", &ServiceState::service),         field("address", &ServiceState::address),
    field("configured", &ServiceState::configured),   field("key", &ServiceState::key),
    field("keyProblem", &ServiceState::keyProblem),   field("lastSuccess", &ServiceState::lastSuccess),
    field("lastError", &ServiceState::lastError),     field("lastErrorAt", &ServiceState::lastErrorAt),
    field("coolingDown", &ServiceState::coolingDown),
};
template <>
inline constexpr auto jsonFields<CachedPlace> =
    FieldList{field("place", &CachedPlace::name), field("answeredAt", &CachedPlace::answeredAt),
              field("provider", &CachedPlace::provider)};
template <>
inline constexpr auto jsonFields<PlaceWarnings> =
    FieldList{field("place", &PlaceWarnings::name), field("coverage", &PlaceWarnings::coverage)};
template <>
inline constexpr auto jsonFields<FolderState> =
    FieldList{field("purpose", &FolderState::purpose), field("path", &FolderState::path),
              field("exists", &FolderState::exists), field("writable", &FolderState::writable)};
template <>
inline constexpr auto jsonFields<DesktopState> =
    FieldList{field("name", &DesktopState::name), field("purpose", &DesktopState::purpose),
              field("presence", &DesktopState::presence), field("details", &DesktopState::details)};
template <>
inline constexpr auto jsonFields<RegionState> =
    FieldList{field("edition", &RegionState::edition), field("updated", &RegionState::isUpdated),
              field("problem", &RegionState::problem)};
template <>
inline constexpr auto jsonFields<ClockState> = FieldList{
    field("clock", &ClockState::clock), field("seconds", &ClockState::seconds), field("of", &ClockState::of),
    field("last", &ClockState::last), field("next", &ClockState::next)};
template <>
inline constexpr auto jsonFields<StationLinkState> =
    FieldList{field("kind", &StationLinkState::kind), field("state", &StationLinkState::state),
              field("tokens", &StationLinkState::tokens)};
template <>
inline constexpr auto jsonFields<Diagnosis> = FieldList{field("services", &Diagnosis::services),
                                                        field("cache", &Diagnosis::cache),
                                                        field("officialWarnings", &Diagnosis::warnings),
                                                        field("directories", &Diagnosis::folders),
                                                        field("desktopServices", &Diagnosis::desktop),
                                                        field("warningRegions", &Diagnosis::regions),
                                                        field("clocks", &Diagnosis::clocks),
                                                        field("station", &Diagnosis::station)};

namespace {

bool isConfigured(RunContext& context, Service service) {
  ServiceDirectory const& services = context.app().services();
  ServiceAddress const address = services.address(service);
  if (service == Service::appleWeather) return context.app().isAppleWeatherConfigured();
  if (service == Service::netatmo) {
    auto const kind = context.app().feeds().stations().read(StationNeed::kept).kind;
    return kind == StationLinkKind::account || kind == StationLinkKind::around;
  }
  if (rowOf(service).needsKey) return !address.apiKey.empty() || !services.standIn().empty();
  return !address.baseUrl.empty();
}

void lookForKey(ServiceState& state, Service service, Session const& session) {
  std::string const kept = session.settings->text(apiKeySetting(service));
  if (kept.empty()) return;
  ServiceKeys const& keys = session.keyed->keys();
  state.key = keys.place(kept);
  if (auto const key = keys.find(kept); !key) state.keyProblem = key.error();
}

std::vector<ServiceState> servicesOf(RunContext& context, Session const& session) {
  auto const records = context.app().history().records();
  std::vector<ServiceState> states;
  for (ServiceRow const& row : kServices) {
    Service const service = row.service;
    ServiceState state;
    state.service = row.name;
    state.address = context.app().services().address(service).baseUrl;
    state.configured = isConfigured(context, service);
    lookForKey(state, service, session);
    if (auto const found = records.find(state.service); found != records.end()) {
      ProviderRecord const& record = found->second;
      state.lastSuccess = record.lastSuccessAt;
      state.lastError = record.lastError;
      state.lastErrorAt = record.lastErrorAt;
      state.coolingDown = isCoolingDown(record, context.clock().now());
    }
    states.push_back(std::move(state));
  }
  return states;
}

std::vector<CachedPlace> cacheOf(RunContext& context, Session const& session) {
  std::vector<CachedPlace> cached;
  auto const places = Places(*session.store).list();
  for (SavedPlace const& place : places.value_or(PlaceList{}).places) {
    CachedPlace state{place.name, {}, {}};
    if (auto const entry = context.app().cache().load(cacheKey(place.coordinate))) {
      state.answeredAt = entry->responseTimestamp;
      state.provider = entry->provider;
    }
    cached.push_back(std::move(state));
  }
  return cached;
}

/// As somebody found them last; nobody is asked.
std::vector<PlaceWarnings> warningsOf(RunContext& context, Session const& session) {
  std::vector<PlaceWarnings> warnings;
  auto const places = Places(*session.store).list();
  for (SavedPlace const& place : places.value_or(PlaceList{}).places) {
    GovAlertPlace const asked = govAlertPlace(place.coordinate);
    GovAlerts const kept = context.app().feeds().govAlerts().keptAlerts(asked);
    warnings.push_back(
        {place.name, agedCoverage(coverageOf(kept, asked.countryCode), context.clock().now())});
  }
  return warnings;
}

/// What the long-lived programs keep to. Only what lies in files has a last time.
std::vector<ClockState> clocksOf(RunContext& context, Session const& session) {
  RefreshIntervals const intervals;
  auto const list = Places(*session.store).list().value_or(PlaceList{});
  auto const wanted = resolvePlace("", list);
  Place const* const selected = wanted ? std::get_if<Place>(&*wanted) : nullptr;
  auto const kept = selected ? context.app().cache().load(cacheKey(selected->coordinate)) : std::nullopt;
  auto const clock = [](std::string name, std::string of, std::chrono::seconds interval,
                        std::optional<Instant> last = {}) {
    auto const next = last ? std::optional<Instant>(*last + interval) : std::nullopt;
    return ClockState{std::move(name), interval.count(), std::move(of), last, next};
  };
  bool const isHere = list.selected == kCurrentLocation && list.lastFix;
  std::string const device =
      isHere ? "the current location (follows this device)" : "the current location (not the selected place)";
  return {clock("refresh", "the selected place", intervals.refreshInterval,
                kept ? std::optional(kept->responseTimestamp) : std::nullopt),
          clock("fastRefresh", "a place, on demand", intervals.fastRefreshInterval),
          clock("supplementalRefresh", "warnings and other feeds for a place",
                intervals.supplementalRefreshInterval),
          clock("otherPlacesInFront", "the other places, while the window is active",
                intervals.nonActiveNotificationRefreshIntervalForeground),
          clock("otherPlaces", "the other places", intervals.nonActiveNotificationRefreshIntervalBackground),
          clock("locationChange", device, intervals.slcRefreshMinInterval,
                list.lastFix ? std::optional(list.lastFix->time) : std::nullopt)};
}

StationLinkState stationOf(RunContext& context) {
  StationsReading const reading = context.app().feeds().stations().read(StationNeed::kept);
  bool const hasTokens = reading.tokens != StationTokensIn::nowhere;
  return {reading.kind, reading.state, hasTokens ? std::optional(reading.tokens) : std::nullopt};
}

FolderState folderOf(std::string purpose, std::filesystem::path const& path) {
  std::error_code ignored;
  return {std::move(purpose), path.string(), std::filesystem::is_directory(path, ignored),
          access(path.c_str(), W_OK) == 0};
}

Diagnosis diagnose(RunContext& context, Session const& session) {
  Diagnosis diagnosis;
  diagnosis.services = servicesOf(context, session);
  diagnosis.cache = cacheOf(context, session);
  diagnosis.warnings = warningsOf(context, session);
  diagnosis.folders = {folderOf("settings and places", session.environment.dataDirectory),
                       folderOf("cache", session.environment.cacheDirectory)};
  diagnosis.clocks = clocksOf(context, session);
  diagnosis.station = stationOf(context);
  for (DesktopServiceState const& state : desktopServiceStates({session.environment.program, {}, {}})) {
    diagnosis.desktop.push_back({state.name, state.purpose, state.presence, state.details});
  }
  std::string const silent = whySilent(session.environment.program);
  using Presence = DesktopServiceState::Presence;
  diagnosis.desktop.push_back({"speech-dispatcher", "reading the brief out",
                               silent.empty() ? Presence::running : Presence::absent, silent});
  Regions const& regions = context.app().feeds().regions();
  diagnosis.regions = {std::string(regions.outlines()->edition()), regions.isUpdated(), regions.problem()};
  return diagnosis;
}

/// Rows of a label and a text.
class Page {
 public:
  explicit Page(RunContext const& context) : context_(context) {}

  std::string str(Diagnosis const& diagnosis) {
    heading("Services");
    for (ServiceState const& state : diagnosis.services) row(state.service, lineOf(state));
    heading("Cached forecasts");
    for (CachedPlace const& place : diagnosis.cache) row(place.name, lineOf(place));
    if (diagnosis.cache.empty()) row("", "no saved places");
    heading("Official warnings");
    for (PlaceWarnings const& place : diagnosis.warnings) row(place.name, linesOf(place));
    if (diagnosis.warnings.empty()) row("", "no saved places");
    heading("Clocks");
    for (ClockState const& state : diagnosis.clocks) row(state.clock, lineOf(state));
    heading("Weather station");
    row(std::string(enumName(diagnosis.station.kind)), lineOf(diagnosis.station));
    heading("Folders");
    for (FolderState const& folder : diagnosis.folders) row(folder.purpose, lineOf(folder));
    heading("Warning regions");
    row("outlines", lineOf(diagnosis.regions));
    heading("Desktop services");
    for (DesktopState const& state : diagnosis.desktop) {
      std::string const details = state.details.empty() ? "" : ": " + state.details;
      row(state.name, std::string(enumName(state.presence)) + " (" + state.purpose + ")" + details);
    }
    if (diagnosis.desktop.empty()) row("", "the component for desktop services is not installed");
    return std::move(out_);
  }

 private:
  void heading(std::string_view text) { out_ += (out_.empty() ? "" : "\n") + std::string(text) + "\n"; }
  void row(std::string_view label, std::string const& text) {
    out_ += "  " + fitted(label, 30) + " " + text + "\n";
  }
  static std::string lineOf(RegionState const& regions) {
    std::string const edition =
        regions.edition.empty() ? "from your own files" : "edition " + regions.edition;
    std::string const line = edition + (regions.isUpdated ? ", updated" : ", included with the program");
    return regions.problem ? line + "; " + *regions.problem : line;
  }
  static std::string lineOf(StationLinkState const& station) {
    constexpr std::string_view kTokens[] = {"", ", sign-in in a file that only you can read",
                                            ", sign-in in the desktop's keyring"};
    auto const tokens = static_cast<std::size_t>(station.tokens.value_or(StationTokensIn::nowhere));
    return std::string(enumName(station.state)) + std::string(kTokens[tokens]);
  }
  std::string age(Instant then) const { return ageText(then, context_.clock().now(), context_.texts()); }

  static std::string keyText(ServiceState const& state) {
    constexpr std::string_view kPlaces[] = {", key in the settings", ", key in a file that only you can read",
                                            ", key in the desktop's keyring", ""};
    std::string const place(kPlaces[static_cast<std::size_t>(*state.key)]);
    return state.keyProblem ? ", " + *state.keyProblem : place;
  }

  std::string lineOf(ServiceState const& state) const {
    std::string line = state.address;
    if (!state.configured) return line + (line.empty() ? "" : ", ") + "not configured";
    if (state.key) line += keyText(state);
    if (state.lastSuccess) line += ", last response " + age(*state.lastSuccess);
    if (state.lastError && state.lastErrorAt) {
      line += ", last error " + age(*state.lastErrorAt) + ": " + *state.lastError;
    }
    return state.coolingDown ? line + " (paused for five minutes)" : line;
  }
  std::string lineOf(ClockState const& state) const {
    std::string line = "at most every " + std::to_string(state.seconds / 60) + " min: " + state.of;
    if (state.last) line += ", last " + age(*state.last);
    if (state.next && *state.next > context_.clock().now())
      line += ", next from " + formatIso8601(*state.next);
    return line;
  }
  std::string lineOf(CachedPlace const& place) const {
    if (!place.answeredAt) return "none";
    return age(*place.answeredAt) + (place.provider ? " from " + std::string(enumName(*place.provider)) : "");
  }
  std::string linesOf(PlaceWarnings const& place) const {
    std::string text;
    for (std::string const& line :
         coverageLines(place.coverage, context_.texts(), context_.calendar(), context_.clock().now())) {
      text += (text.empty() ? "" : "; ") + line;
    }
    return text;
  }
  static std::string lineOf(FolderState const& folder) {
    if (!folder.exists) return folder.path + " (not created yet)";
    return folder.path + (folder.writable ? "" : " (cannot be written)");
  }

  RunContext const& context_;
  std::string out_;
};

/// As somebody found them last; nobody is asked but where the command line wants it.
int tellSources(CommandLine const& line, RunContext& context, Session const& session) {
  auto const list = Places(*session.store).list();
  if (!list) return session.fail(exitCode::kUnavailable, list.error().message);
  std::vector<PlaceSources> places;
  GovAlertService& service = context.app().feeds().govAlerts();
  for (SavedPlace const& saved : list->places) {
    if (line.doctor.check) service.fetchAlerts(askedPlace(saved), {}, session.stop);
    places.push_back(placeSources(saved, service, context.clock().now()));
  }
  if (line.doctor.json) {
    session.console.out(sourceReportJson(places, context.texts()));
  } else if (places.empty()) {
    session.console.err("nimbara: no saved places; add one with: nimbara places add NAME\n");
  } else {
    session.console.out(
        sourceReport(places, {context.texts(), context.calendar(), context.clock().now(), widthOf(session)}));
  }
  return exitCode::kComplete;
}

}  // namespace

int runDoctor(CommandLine const& line, Session const& session) {
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock, ownServices(line.common, line.forecast.provider));
  if (line.doctor.sources) return tellSources(line, context, session);
  Diagnosis const diagnosis = diagnose(context, session);
  session.console.out(line.doctor.json ? encodeJson(diagnosis) + "\n" : Page(context).str(diagnosis));
  return exitCode::kComplete;
}

}  // namespace nimbara

#include "demo/demo_server.h"

#include "demo/connection_threads.h"
#include "demo/feeds/feed_server_stand_in.h"
#include "demo/feeds/firms_stand_in.h"
#include "demo/feeds/imagery/cloud_stand_in.h"
#include "demo/feeds/imagery/radar_stand_in.h"
#include "demo/feeds/imagery/street_stand_in.h"
#include "demo/feeds/jtwc_stand_in.h"
#include "demo/feeds/language_model_stand_in.h"
#include "demo/feeds/lightning_stand_in.h"
#include "demo/feeds/netatmo_stand_in.h"
#include "demo/feeds/nhc_stand_in.h"
#include "demo/feeds/satellites_stand_in.h"
#include "demo/feeds/swpc_stand_in.h"
#include "demo/feeds/travel_stand_in.h"
#include "demo/feeds/usgs_stand_in.h"
#include "demo/feeds/warnings/bright_sky_stand_in.h"
#include "demo/feeds/warnings/eccc_stand_in.h"
#include "demo/feeds/warnings/fpas_stand_in.h"
#include "demo/feeds/warnings/met_alerts_stand_in.h"
#include "demo/feeds/warnings/meteo_alarm_stand_in.h"
#include "demo/feeds/warnings/nws_stand_in.h"
#include "demo/feeds/warnings/wmo_stand_in.h"
#include "demo/forecasts/air_quality_stand_in.h"
#include "demo/forecasts/apple_weather_stand_in.h"
#include "demo/forecasts/climate_stand_in.h"
#include "demo/forecasts/nowcast_stand_in.h"
#include "demo/forecasts/open_meteo_stand_in.h"
#include "demo/forecasts/wttr_stand_in.h"
#include "demo/forecasts/yr_no_stand_in.h"

#include <httplib.h>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace nimbara {

namespace {

constexpr std::size_t kLongestQuery = 64 << 10;

/// `pattern` is a regular expression for the whole path.
struct Route {
  Service service;
  std::string_view pattern;
  DemoStandIn answer;
};

constexpr std::array kRoutes = std::to_array<Route>({
    {Service::openMeteo, "/v1/forecast", openMeteoForecast},
    {Service::openMeteoArchive, "/v1/archive", openMeteoArchive},
    {Service::openMeteoGeocoding, "/v1/search", openMeteoSearch},
    {Service::appleWeather, "/api/v1/weather/[^/]+/[^/]+/[^/]+", appleWeatherForecast},
    {Service::yrNo, R"(/weatherapi/locationforecast/2\.0/(complete|compact))", yrNoForecast},
    {Service::yrNo, R"(/weatherapi/nowcast/2\.0/complete)", metNorwayNowcast},
    {Service::nws, "/alerts/active", nwsActiveAlerts},
    {Service::swpc, R"(/products/noaa-planetary-k-index\.json)", planetaryKIndex},
    {Service::swpc, R"(/products/noaa-planetary-k-index-forecast\.json)", planetaryKForecast},
    {Service::usgs, R"(/earthquakes/feed/v1\.0/summary/all_day\.geojson)", usgsDayFeed},
    {Service::emsc, "/fdsnws/event/1/query", emscQuery},
    {Service::celestrak, R"(/NORAD/elements/gp\.php)", celestrakElements},
    {Service::feedServer, R"(/api/feed\.php)", feedServerFeed},
    {Service::wttrIn, "/[^/,]+,[^/,]+", wttrForecast},
    {Service::meteoAlarm, "/feeds/meteoalarm-legacy-atom-[a-z-]+", meteoAlarmFeed},
    {Service::meteoAlarm, "/api/v1/warnings/feeds-[a-z-]+", meteoAlarmList},
    {Service::meteoAlarm, "/api/v1/warnings/feeds-[a-z-]+/[0-9a-f]{32}", meteoAlarmDocument},
    {Service::meteoAlarmRegions, "/api/v4/projects/meteoalarm-pm-group/documents/repository/tree",
     meteoAlarmOutlineList},
    {Service::meteoAlarmRegions, "/meteoalarm-pm-group/documents/-/raw/master/[^/]+", meteoAlarmOutlines},
    {Service::airQuality, "/v1/air-quality", airQualityForecast},
    {Service::nhc, R"(/CurrentStorms\.json)", currentStorms},
    {Service::nhcMaps, "/tropical/rest/services/tropical/NHC_tropical_weather/MapServer", stormMapLayers},
    {Service::nhcMaps, "/tropical/rest/services/tropical/NHC_tropical_weather/MapServer/[0-9]{1,6}/query",
     stormMapQuery},
    {Service::firms, "/api/area/csv/[^/]+/[^/]+/[^/]+/[^/]+", fireTable},
    {Service::travelAdvisories, "/api/TravelAdvisories", travelAdvisories},
    {Service::advisoriesCanada, R"(/travel-voyage/index-alpha-eng\.json)", canadianAdvisories},
    {Service::advisoriesBritain, "/api/content/foreign-travel-advice(/[a-z-]+)?", britishAdvisories},
    {Service::advisoriesGermany, "/opendata/travelwarning", germanAdvisories},
    {Service::lightning, "/lightning/strikes", lightningStrikes},
    {Service::jtwc, R"(/jtwc/rss/jtwc\.rss)", jtwcList},
    {Service::jtwc, R"(/jtwc/products/[a-z]{2}[0-9]{4}\.tcw)", jtwcWarning},
    {Service::gdacs, "/gdacsapi/api/events/geteventlist/MAP", gdacsEvents},
    {Service::wmoWarnings, "/f/wfs", wmoPointQuery},
    {Service::wmoWarnings, "/g/wfs", wmoWarningList},
    {Service::wmoWarnings, R"(/json/wmo_member\.json)", wmoMembers},
    {Service::wmoWarnings, R"((/v2)?/json/sources\.json)", wmoSources},
    {Service::wmoWarnings, R"(/v2/cap-alerts/[a-z-]+/[0-9/]+-[0-9a-f]{32}\.xml)", wmoMessage},
    {Service::fpas, "/alert/area", fpasArea},
    {Service::fpas, "/alert/[0-9a-fA-F-]{36}", fpasAlert},
    {Service::fpas, R"(/cap/[0-9a-f-]{36}\.xml)", fpasMessage},
    {Service::fpas, "/sources/area_status", fpasAreaStatus},
    {Service::eccc, "/collections/weather-alerts/items", ecccAlerts},
    {Service::metAlerts, R"(/weatherapi/metalerts/2\.0/current\.json)", metAlertsCurrent},
    {Service::brightSky, "/alerts", brightSkyAlerts},
    {Service::brightSky, "/radar", brightSkyRadar},
    {Service::noaaRadar, "/geoserver/conus/conus_bref_qcd/ows", noaaRadar},
    {Service::dwdMaps, "/geoserver/dwd/(Niederschlagsradar/ows|wms)", dwdRadar},
    {Service::iowaMesonet, R"(/cache/tile\.py/1\.0\.0/nexrad-n0q-900913[-m0-9]*/[0-9]+/[0-9]+/[0-9]+\.png)",
     mesonetTile},
    {Service::jmaRadar, R"(/bosai/jmatile/data/nowc/targetTimes_N[12]\.json)", jmaTimes},
    {Service::jmaRadar, R"(/bosai/jmatile/data/nowc/[0-9]+/none/[0-9]+/surf/hrpns/[0-9]+/[0-9]+/[0-9]+\.png)",
     jmaTile},
    {Service::libreWxr, R"(/libreWxr/public/weather-maps\.json)", radarMaps},
    {Service::libreWxr, "/libreWxr/v2/radar/.+", radarMapTile},
    {Service::libreWxr, "/libreWxr/v2/coverage/.+", radarCoverage},
    {Service::rainViewer, R"(/rainViewer/public/weather-maps\.json)", radarMaps},
    {Service::rainViewer, "/rainViewer/v2/radar/.+", radarMapTile},
    {Service::rainViewer, "/rainViewer/v2/coverage/.+", radarCoverage},
    // Of no service: an address that the user may enter.
    {Service::libreWxr, R"(/streets/[0-9]+/[0-9]+/[0-9]+\.png)", streetTile},
    {Service::nowCoast, "/geoserver/satellite/ows", nowCoastClouds},
    {Service::eumetView, "/geoserver/mumi/ows", eumetViewTimes},
    {Service::eumetView, "/geoserver/wms", eumetViewClouds},
    {Service::netatmo, "/oauth2/authorize", netatmoConsent},
    {Service::netatmo, "/oauth2/token", netatmoToken},
    {Service::netatmo, "/api/getstationsdata", netatmoStations},
    {Service::netatmo, "/api/getpublicdata", netatmoPublic},
    {Service::netatmo, "/get_livedata_info", ecowittLiveData},
    {Service::languageModel, "/v1/chat/completions", chatCompletion},
});

constexpr std::string_view kErrorPage = "<html><body><h1>500 Internal Server Error</h1></body></html>";
constexpr std::string_view kForbidden = "<html><body><h1>403 Forbidden</h1></body></html>";
constexpr std::string_view kGarbage =
    "<!doctype html><title>Welcome</title><p>Please log in to use this network.";

DemoRequest demoRequest(httplib::Request const& request, std::optional<DemoFault::Kind> fault) {
  return {request.path, [&request](std::string_view name) { return request.get_param_value(name.data()); },
          [&request](std::string_view name) {
            return name == kPostedBody ? request.body : request.get_header_value(name.data());
          },
          fault == DemoFault::Kind::elsewhere, fault};
}

/// A client that plays through time says what time it is.
constexpr char kSimulatedTime[] = "Nimbara-Simulated-Time";

Instant momentOf(httplib::Request const& request, Clock const& clock) {
  return parseIso8601(request.get_header_value(kSimulatedTime)).value_or(clock.now());
}

/// Announces the whole body and closes the connection in its middle.
void sendHalf(std::string const& body, httplib::Response& response) {
  response.set_content_provider(
      body.size(), "application/json",
      [half = body.substr(0, body.size() / 2)](std::size_t offset, std::size_t, httplib::DataSink& sink) {
        if (offset == 0) sink.write(half.data(), half.size());
        return false;
      });
}

void sendWhole(DemoAnswer const& answer, httplib::Response& response) {
  response.status = answer.status;
  std::string type = "application/json; charset=utf-8";
  for (auto const& [name, value] : answer.headers) {
    if (name == "Content-Type") type = value;
    response.set_header(name, value);
  }
  if (!answer.body.empty()) response.set_content(answer.body, type);
}

}  // namespace

/// The server, its thread and what holds back answers that are never to come.
struct DemoServer::Running {
  Running(Clock const& clockToUse, std::vector<DemoFault> faultsToShow, DemoScene const* sceneToPlay)
      : clock(clockToUse), faults(std::move(faultsToShow)), scene(sceneToPlay) {
    server.new_task_queue = [] { return new ConnectionThreads; };
    // Without this a second server would share the port.
    server.set_socket_options([](socket_t socket) {
      int const yes = 1;
      setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    server.set_tcp_nodelay(true);
    server.set_payload_max_length(kLongestQuery);
    server.set_default_headers({{"Server", "nimbara-demo"}});
    for (Route const& route : kRoutes) {
      auto const answer = [this, &route](httplib::Request const& request, httplib::Response& response) {
        serve(route, request, response);
      };
      server.Get(std::string(route.pattern), answer);
      if (route.answer == netatmoToken || route.answer == chatCompletion)
        server.Post(std::string(route.pattern), answer);
    }
  }

  std::optional<DemoFault::Kind> faultOf(Service service) const {
    auto const found = std::ranges::find(faults, service, &DemoFault::service);
    return found == faults.end() ? std::nullopt : std::optional(found->kind);
  }

  void serve(Route const& route, httplib::Request const& request, httplib::Response& response) {
    auto const fault = faultOf(route.service);
    DemoRequest const asked = demoRequest(request, fault);
    Instant const now = momentOf(request, clock);
    auto const played = scene == nullptr ? std::nullopt : sceneAnswer(*scene, asked, now);
    if (played && played->hangs) return waitForStop();
    DemoAnswer const answer = played ? played->answer : route.answer(asked, now);
    fault ? misbehave(*fault, request, answer, response) : sendWhole(answer, response);
  }

  void misbehave(DemoFault::Kind fault, httplib::Request const& request, DemoAnswer const& answer,
                 httplib::Response& response) {
    switch (fault) {
      case DemoFault::Kind::status500:
        response.status = 500;
        return response.set_content(std::string(kErrorPage), "text/html");
      case DemoFault::Kind::timeout:
        return waitForStop();
      case DemoFault::Kind::garbage:
        return response.set_content(std::string(kGarbage), "text/html");
      case DemoFault::Kind::drop:
        return sendHalf(answer.body, response);
      case DemoFault::Kind::drip:
        return sendDrops(answer.body, response);
      case DemoFault::Kind::loop:
        return response.set_redirect(request.target);
      case DemoFault::Kind::status403:
        response.status = 403;
        return response.set_content(std::string(kForbidden), "text/html");
      case DemoFault::Kind::elsewhere:
      case DemoFault::Kind::status429:
      case DemoFault::Kind::emptyList:
      case DemoFault::Kind::writing:
      case DemoFault::Kind::transparent:
      case DemoFault::Kind::invents:
        return sendWhole(answer, response);
      case DemoFault::Kind::empty:
        return sendWhole({}, response);
      case DemoFault::Kind::exception:
        return response.set_content(kWmoException, "application/xml");
    }
  }

  /// One byte a second.
  void sendDrops(std::string const& body, httplib::Response& response) {
    response.set_content_provider(body.size(), "application/json",
                                  [this, body](std::size_t offset, std::size_t, httplib::DataSink& sink) {
                                    return !waitForStop(std::chrono::seconds(1)) &&
                                           sink.write(body.data() + offset, 1);
                                  });
  }

  void waitForStop() {
    std::unique_lock lock(mutex);
    stopping.wait(lock, [this] { return stopped; });
  }

  /// Whether the stop came within `span`.
  bool waitForStop(std::chrono::milliseconds span) {
    std::unique_lock lock(mutex);
    return stopping.wait_for(lock, span, [this] { return stopped; });
  }

  void stop() {
    {
      std::lock_guard const lock(mutex);
      stopped = true;
    }
    stopping.notify_all();
    server.stop();
    shutDownConnections(port);
  }

  Clock const& clock;
  std::vector<DemoFault> faults;
  DemoScene const* scene;
  httplib::Server server;
  std::mutex mutex;
  std::condition_variable stopping;
  bool stopped = false;
  int port = 0;
  std::jthread thread;
};

DemoServer::DemoServer(std::unique_ptr<Running> running)
    : running_(std::move(running)), baseUrl_("http://127.0.0.1:" + std::to_string(running_->port)) {}

Result<std::unique_ptr<DemoServer>, std::string> DemoServer::start(Clock const& clock,
                                                                   std::vector<DemoFault> faults, int port,
                                                                   DemoScene const* scene) {
  constexpr char kLoopback[] = "127.0.0.1";
  auto running = std::make_unique<Running>(clock, std::move(faults), scene);
  httplib::Server& server = running->server;
  running->port = port == 0                              ? server.bind_to_any_port(kLoopback)
                  : server.bind_to_port(kLoopback, port) ? port
                                                         : -1;
  if (running->port < 0) {
    return std::unexpected("the demo cannot listen on port " + std::to_string(port) +
                           " of 127.0.0.1; choose another");
  }
  running->thread = std::jthread([&server] { server.listen_after_bind(); });
  // A stop before the server has begun to listen would be lost.
  while (!server.is_running()) std::this_thread::yield();
  return std::unique_ptr<DemoServer>(new DemoServer(std::move(running)));
}

DemoServer::~DemoServer() {
  running_->stop();
}

}  // namespace nimbara

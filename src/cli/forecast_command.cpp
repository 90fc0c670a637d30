#include "app/configuration.h"
#include "app/forecast_service.h"
#include "base/json.h"
#include "cli/cli.h"
#include "cli/forecast_report.h"
#include "model/process.h"
#include "platform/linux/curl_http_client.h"

#include <variant>

namespace nimbara {

namespace {

constexpr int kPlainWidth = 80;

/// What to do about an error, as the end of its sentence.
std::string_view adviceFor(APIError const& error) {
  switch (error.kind) {
    case APIError::Case::networkError:
      return "check the connection, or try again later";
    case APIError::Case::httpError:
      return error.statusCode == 429   ? "the service's limit is reached, try again later"
             : error.statusCode >= 500 ? "the service has a fault, try again later"
                                       : "check the place and the configuration";
    case APIError::Case::decodingError:
      return "the answer is no forecast; is this network behind a log-in page?";
    case APIError::Case::invalidURL:
      return "check the configured address of the service";
    case APIError::Case::noData:
      return "try again later";
    case APIError::Case::noResults:
      return "try another spelling or a coordinate like 52.52,13.41";
  }
  return {};
}

std::string sentenceOf(APIError const& error) {
  std::string text = error.text();
  if (text.ends_with('.')) text.pop_back();
  return text + "; " + std::string(adviceFor(error));
}

bool isOffline(APIError const& error) {
  using Kind = HttpError::Kind;
  return error.transport == Kind::unresolvedHost || error.transport == Kind::connectionFailed ||
         error.transport == Kind::timedOut;
}

/// Everything that one forecast needs, alive as long as it is asked for.
class ForecastRun {
 public:
  ForecastRun(CommandLine const& line, Session const& session, Configuration configuration)
      : options_(line.forecast),
        common_(line.common),
        session_(session),
        configuration_(std::move(configuration)),
        clock_(makeClock(line.common)),
        http_({userAgent(configuration_), {}}) {}

  int run(std::variant<Coordinate, PlaceName> const& wanted) {
    auto answer = ask(wanted, common_.services);
    if (!answer && options_.demoIfOffline && common_.services.empty() && isOffline(answer.error())) {
      answer = askDemo(wanted, answer.error());
    }
    if (session_.stop.stop_requested()) return session_.fail(exitCode::kInterrupted, "interrupted");
    if (!answer) return session_.fail(exitCode::kUnavailable, sentenceOf(answer.error()));
    session_.console.out(rendered(*answer));
    return exitCode::kComplete;
  }

 private:
  using Answer = Result<ForecastAnswer, APIError>;

  Answer ask(std::variant<Coordinate, PlaceName> const& wanted, std::string const& servicesBase) {
    if (common_.verbose) {
      session_.console.err("nimbara: asking " + (servicesBase.empty() ? "the services" : servicesBase) +
                           "\n");
    }
    standIn_ = servicesBase;
    ServiceDirectory const services(configuration_, servicesBase);
    ForecastService service(http_, *clock_, services, session_.environment.machineCalendar);
    Place place;
    if (auto const* const name = std::get_if<PlaceName>(&wanted)) {
      auto const found = service.find(name->name, Texts::load(common_.language).language(), session_.stop);
      if (!found) return std::unexpected(found.error());
      place = *found;
    } else {
      place.coordinate = std::get<Coordinate>(wanted);
    }
    return service.fetch(place, session_.stop);
  }

  Answer askDemo(std::variant<Coordinate, PlaceName> const& wanted, APIError const& offline) {
    auto const demo = DemoProcess::start(session_.environment, common_.now, {});
    if (!demo) return std::unexpected(offline);
    session_.console.err("nimbara: the live services cannot be reached (" + offline.detail +
                         "); this is generated demo weather, not a forecast\n");
    return ask(wanted, demo->baseUrl());
  }

  std::string rendered(ForecastAnswer const& answer) const {
    if (options_.raw) return encodeJson(answer.response) + "\n";
    if (options_.json) return json(answer);
    Texts const texts = Texts::load(common_.language);
    ReportOptions report;
    report.width = width();
    report.style = {session_.console.terminalWidth() > 0 && !session_.environment.noColor,
                    options_.ascii || !session_.environment.utf8};
    report.units = common_.units;
    report.now = clock_->now();
    report.standIn = standIn_;
    return forecastReport(answer, report, texts,
                          calendarOf(answer.data, session_.environment.machineCalendar));
  }

  int width() const {
    if (options_.width > 0) return options_.width;
    if (session_.console.terminalWidth() > 0) return session_.console.terminalWidth();
    return session_.environment.columns > 0 ? session_.environment.columns : kPlainWidth;
  }

  static std::string json(ForecastAnswer const& answer) {
    JsonWriter writer;
    writer.beginObject();
    writer.member("provider", answer.provider);
    writer.member("fromCache", answer.fromCache);
    writer.member("stale", answer.stale);
    writer.member("data", answer.data);
    writer.member("alerts", answer.alerts);
    writer.endObject();
    return writer.take() + "\n";
  }

  ForecastOptions const& options_;
  CommonOptions const& common_;
  Session const& session_;
  Configuration configuration_;
  std::unique_ptr<Clock> clock_;
  CurlHttpClient http_;
  std::string standIn_;
};

bool isBuilt(WeatherProviderOption provider) {
  return provider == WeatherProviderOption::automatic || provider == WeatherProviderOption::openMeteo;
}

}  // namespace

int runForecast(CommandLine const& line, Session const& session) {
  ForecastOptions const& options = line.forecast;
  if (options.place.empty()) {
    return session.fail(exitCode::kUnavailable,
                        "no place is selected; name one, for example: nimbara forecast 52.52,13.41");
  }
  auto const place = parsePlace(options.place);
  if (!place) return session.fail(exitCode::kUsage, place.error());
  if (!isBuilt(options.provider)) {
    return session.fail(exitCode::kUnavailable, "the provider " + std::string(enumName(options.provider)) +
                                                    " is not available in this version; choose openMeteo");
  }
  return ForecastRun(line, session, configurationOf(*session.settings)).run(*place);
}

}  // namespace nimbara

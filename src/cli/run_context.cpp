#include "cli/run_context.h"

#include "app/engine/engine_options.h"
#include "app/places/place_resolver.h"
#include "app/places/place_search.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/services/http/limited_http_client.h"
#include "app/settings/service_directory.h"
#include "base/text/text.h"
#include "base/words/time_words.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <utility>
#include <variant>

namespace nimbara {

namespace {

std::string adviceForRefusal(APIError const& error) {
  if (!error.retryAfter) return "try again in a few minutes";
  auto const minutes = std::chrono::ceil<std::chrono::minutes>(*error.retryAfter).count();
  return "try again in " + (minutes == 1 ? std::string("a minute") : std::to_string(minutes) + " minutes");
}

/// What to do about an error, as the end of its sentence.
std::string adviceFor(APIError const& error) {
  switch (error.kind) {
    case APIError::Case::networkError:
      return error.isRefusal() ? adviceForRefusal(error) : "check the connection, or try again later";
    case APIError::Case::httpError:
      return error.statusCode == 429   ? "the service's rate limit was reached; try again later"
             : error.statusCode >= 500 ? "the service has a problem; try again later"
                                       : "check the place and the settings";
    case APIError::Case::decodingError:
      return "the response is not a forecast; does this network need you to log in?";
    case APIError::Case::invalidURL:
      return "check the service's address in the settings";
    case APIError::Case::noData:
      return "try again later";
    case APIError::Case::noResults:
      return "try another spelling or a coordinate like 52.52,13.41";
  }
  return {};
}

DecorateHttp limited(RunContext::Departure const& departure, Clock const& clock) {
  if (!departure.limit) return departure.aroundNetwork;
  return [inner = departure.aroundNetwork, limit = *departure.limit, &clock](HttpClient& network) {
    return inner ? std::make_unique<LimitedHttpClient>(inner(network), clock, limit)
                 : std::make_unique<LimitedHttpClient>(network, clock, limit);
  };
}

EngineOptions optionsOf(CommonOptions const& common, Session const& session, Clock const& clock,
                        RunContext::Departure const& departure) {
  EngineOptions options;
  options.services = departure.servicesBase;
  options.overrides = {common.units, common.language, departure.provider};
  options.keepsNothing = departure.keepsNothing;
  options.aroundNetwork = limited(departure, clock);
  options.store = session.store;
  options.keyed = session.keyed;
  options.settings = session.settings;
  options.clock = &clock;
  return options;
}

/// Leaves out a parser's words, and takes the moment of the next attempt out.
std::optional<Instant> withoutDetails(ServiceFailure& failure) {
  if (failure.kind == ServiceFailure::Kind::unreadable) failure.detail = "the response could not be read";
  return std::exchange(failure.nextTry, std::nullopt);
}

}  // namespace

RunContext::Departure ownServices(CommonOptions const& common, WeatherProviderOption provider) {
  return {common.services, false, provider, {}, {}};
}

RunContext::Departure ownServicesWithin(std::chrono::milliseconds limit, CommonOptions const& common,
                                        WeatherProviderOption provider) {
  RunContext::Departure departure = ownServices(common, provider);
  departure.limit = limit;
  return departure;
}

RunContext::RunContext(CommonOptions const& common, Session const& session, Clock const& clock,
                       Departure const& departure)
    : common_(common),
      session_(session),
      clock_(clock),
      engine_(session.environment, optionsOf(common, session, clock, departure)),
      wording_(engine_.wording()),
      calendar_(wording_->fallback) {}

Composition& RunContext::app() {
  std::call_once(asked_, [this] {
    app_ = engine_.services();
    app_->providers().setOnFailure(
        [this](auto provider, APIError const& error) { failures_.emplace_back(enumName(provider), error); });
  });
  return *app_;
}

/// Without a full stop.
std::string RunContext::textOf(APIError const& error) const {
  std::string text = error.text();
  if (text.ends_with('.')) text.pop_back();
  if (error.statusCode == 0 || !error.retryAfter) return text;
  return text + "; next attempt: " + moment(clock_.now() + *error.retryAfter);
}

/// Each once, for however many places it failed.
std::string RunContext::failedProviders() const {
  std::vector<std::string> parts;
  std::string list;
  for (auto const& [provider, error] : failures_) {
    std::string part = provider + " (" + textOf(error) + ")";
    if (std::ranges::find(parts, part) != parts.end()) continue;
    list += (list.empty() ? "" : ", ") + part;
    parts.push_back(std::move(part));
  }
  return list;
}

std::string RunContext::note(ForecastAnswer const& answer) const {
  if (answer.failure) {
    std::string const why = failures_.empty() ? textOf(*answer.failure) : failedProviders();
    return "could not fetch a newer forecast: " + why + "; showing the one from " + moment(answer.answeredAt);
  }
  if (failures_.empty() || !answer.provider) return {};
  return "no forecast from " + failedProviders() + "; this one is from " +
         std::string(enumName(*answer.provider));
}

void RunContext::tell(std::string_view sentence) const {
  if (!sentence.empty()) session_.console.err("nimbara: " + oneLine(sentence, 1000) + "\n");
}

std::string RunContext::plain(ServiceFailure failure) const {
  if (common_.verbose) return nimbara::sentenceOf(failure);
  auto const next = withoutDetails(failure);
  std::string const text = nimbara::sentenceOf(failure);
  return next ? text + "; next attempt: " + moment(*next) : text;
}

std::string RunContext::plain(InputFailure failure) const {
  if (common_.verbose) return nimbara::sentenceOf(failure);
  auto const next = withoutDetails(failure.failure);
  std::string const text = nimbara::sentenceOf(failure);
  return next ? text + "; next attempt: " + moment(*next) : text;
}

std::string RunContext::advised(std::optional<ServiceFailure> const& failure) const {
  if (!failure) return "try again later";
  return plain(*failure) + (failure->nextTry ? "" : "; try again later");
}

std::string RunContext::moment(Instant when) const {
  return TimeWords(texts(), calendar_).moment(when, clock_.now());
}

std::string RunContext::sentenceOf(APIError const& error) const {
  if (failures_.size() < 2) return textOf(error) + "; " + adviceFor(error);
  return "could not fetch a forecast: " + failedProviders() + "; " + adviceFor(error);
}

Result<Place, Failure> RunContext::place(std::string const& text) {
  auto found = findPlace(text);
  if (found) {
    calendar_ = Calendar::forZone(std::string(timeZoneAt(found->coordinate))).value_or(wording_->fallback);
  }
  return found;
}

Result<Place, Failure> RunContext::findPlace(std::string const& text) {
  auto const places = Places(*session_.store).list();
  auto const wanted = resolvePlace(text, places.value_or(PlaceList{}));
  if (!wanted) {
    PlaceProblem const& problem = wanted.error();
    return std::unexpected(
        Failure{problem.isMistake ? exitCode::kUsage : exitCode::kUnavailable, problem.sentence, {}});
  }
  if (auto const* const place = std::get_if<Place>(&*wanted)) {
    return place->name.empty() ? describedPlace(place->coordinate, texts().language()) : *place;
  }
  PlaceSearch search(app().http(), app().services());
  std::string const& name = std::get<PlaceName>(*wanted).name;
  auto const found = search.search(name, texts().language(), false, session_.stop);
  if (!found) {
    std::string const sentence = notFoundSentence(name, found.error(), texts().language());
    return std::unexpected(Failure{exitCode::kUnavailable, sentence, found.error()});
  }
  return placeOf(savedPlaceOf(found->front()));
}

}  // namespace nimbara

#include "feeds/nowcast/nowcast_service.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/watched_feed.h"
#include "feeds/nowcast/bright_sky_radar.h"
#include "feeds/nowcast/met_nowcast.h"
#include "feeds/nowcast/open_meteo_quarters.h"
#include "platform/http_expiry.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::chrono::seconds kTimeout{10};
constexpr std::chrono::seconds kLongestSilence{6};
constexpr std::size_t kLargestBody = std::size_t{1} << 20;
constexpr std::chrono::hours kReach{2};
constexpr int kOutside = 422;

constexpr NowcastParser kParsers[] = {parseMetNowcast, parseBrightSkyRadar, parseOpenMeteoQuarters};

bool isRefusedAsOutside(NowcastSource source, HttpResponse const& refusal) {
  if (source == NowcastSource::metNorway) return refusal.status == kOutside;
  constexpr int kServerError = 500;
  return source == NowcastSource::brightSky && refusal.status < kServerError &&
         isOutsideBrightSkyRadar(refusal.body);
}

std::chrono::milliseconds restOf(NowcastReply const& reply, Instant now) {
  if (reply.state == NowcastReply::State::uncovered) return NowcastService::kUncoveredRest;
  bool const isWetSoon = std::ranges::any_of(reply.nowcast.steps, [now](NowcastStep const& step) {
    return isWet(step) && step.to > now && step.from < now + kReach;
  });
  bool const isShort = isWetSoon || reply.state == NowcastReply::State::radarDown;
  return isShort ? NowcastService::kWetRest : NowcastService::kDryRest;
}

bool isOver(Nowcast const& nowcast, Instant now) {
  return std::ranges::none_of(nowcast.steps, [now](NowcastStep const& step) { return step.to > now; });
}

ServiceFailure overFailure() {
  return ServiceFailure::of(ServiceFailure::Kind::unreadable, "the nowcast ends before the present moment");
}

}  // namespace

std::string sentenceOf(NowcastMiss const& miss) {
  return miss.isRadarDown ? "its radar is temporarily unavailable" : sentenceOf(miss.failure);
}

NowcastService::NowcastService(HttpClient& http, Clock const& clock, Options options)
    : http_(http), clock_(clock), options_(std::move(options)) {}

NowcastReading NowcastService::fetch(Coordinate place, std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  NowcastReading reading;
  for (NowcastSource const source : nowcastSourcesAt(place)) {
    Kept const& kept = ask(source, place, stop);
    if (kept.failure) {
      reading.misses.push_back({source, false, *kept.failure});
    } else if (kept.reply->state == NowcastReply::State::radarDown) {
      reading.misses.push_back({source, true, {}});
    } else if (kept.reply->state == NowcastReply::State::steps && isOver(kept.reply->nowcast, clock_.now())) {
      reading.misses.push_back({source, false, overFailure()});
    } else if (kept.reply->state == NowcastReply::State::steps) {
      reading.state = NowcastReading::State::current;
      reading.nowcast = kept.reply->nowcast;
      reading.checkedAt = kept.checkedAt;
      return reading;
    }
  }
  if (!reading.misses.empty()) reading.state = NowcastReading::State::failed;
  return reading;
}

/// What is kept of the source, asked anew where that is due: a reply, or a failure.
NowcastService::Kept const& NowcastService::ask(NowcastSource source, Coordinate place,
                                                std::stop_token const& stop) {
  constexpr int kDecimals = 4;
  Kept& kept = keep(std::string(enumName(source)) + " " + fixedDecimal(place.latitude, kDecimals) + "," +
                    fixedDecimal(place.longitude, kDecimals));
  Instant const now = clock_.now();
  bool const isFresh = kept.reply && kept.checkedAt <= now && now < kept.until;
  bool const isPaused = kept.failure && kept.pausedUntil && clock_.steadyNow() < *kept.pausedUntil;
  if (isFresh) {
    kept.failure.reset();
  } else if (!isPaused) {
    exchangeFor(kept, source, place, stop);
  }
  return kept;
}

void NowcastService::exchangeFor(Kept& kept, NowcastSource source, Coordinate place,
                                 std::stop_token const& stop) {
  HttpRequest request;
  request.url = urlOf(source, place);
  request.headers = {{"Accept", "application/json"}};
  request.timeout = kTimeout;
  request.longestSilence = kLongestSilence;
  request.maxBodyBytes = kLargestBody;
  bool const isSame = kept.reply && kept.url == request.url;
  kept.url = request.url;
  HttpResponse other;
  auto const answer = exchange(http_, std::move(request),
                               isSame ? std::optional(kept.validators) : std::nullopt, stop, &other);
  if (!answer) {
    bool const isOutside = isRefusedAsOutside(source, other);
    return isOutside ? settle(kept, {NowcastReply::State::uncovered, {}}, other)
                     : fail(kept, answer.error(), other);
  }
  if (*answer) return take(kept, source, **answer);
  auto const validators = kept.validators;
  settle(kept, NowcastReply(*kept.reply), other);
  kept.validators = validators;
}

void NowcastService::take(Kept& kept, NowcastSource source, HttpResponse const& answer) {
  auto reply = kParsers[static_cast<std::size_t>(source)](answer.body);
  if (reply) return settle(kept, std::move(*reply), answer);
  fail(kept,
       ServiceFailure::of(ServiceFailure::Kind::unreadable,
                          "the response is not a valid nowcast (" + reply.error().text() + ")"),
       answer);
}

/// A service that says that its answer holds longer is not asked before, within the longer rest.
void NowcastService::settle(Kept& kept, NowcastReply reply, HttpResponse const& answer) {
  Instant const now = clock_.now();
  auto const rest = restOf(reply, now);
  kept.until = std::max(now + rest, std::min(expiryOf(answer, now), now + kDryRest));
  kept.reply = std::move(reply);
  kept.checkedAt = now;
  kept.validators = Validators::of(answer);
  kept.failure.reset();
  kept.failures = 0;
  kept.pausedUntil.reset();
}

void NowcastService::fail(Kept& kept, ServiceFailure failure, HttpResponse const& answer) {
  kept.failure = std::move(failure);
  kept.pausedUntil = clock_.steadyNow() + pauseAfterFailure(answer.status, ++kept.failures,
                                                            answer.header("Retry-After"), clock_.now());
}

/// Of what was asked for last.
NowcastService::Kept& NowcastService::keep(std::string const& key) {
  if (!kept_.contains(key) && kept_.size() >= kMostAnswers) {
    kept_.erase(std::ranges::min_element(kept_, {}, [](auto const& entry) { return entry.second.asked; }));
  }
  Kept& kept = kept_[key];
  kept.asked = ++questions_;
  return kept;
}

std::string NowcastService::urlOf(NowcastSource source, Coordinate place) const {
  switch (source) {
    case NowcastSource::metNorway:
      return options_.metBase + metNowcastPath(place);
    case NowcastSource::brightSky:
      return options_.brightSkyBase + brightSkyRadarPath(place, clock_.now());
    case NowcastSource::openMeteo:
      break;
  }
  std::string const key =
      options_.openMeteoKey.empty() ? "" : "&apikey=" + percentEncoded(options_.openMeteoKey);
  return options_.openMeteoBase + openMeteoQuartersPath(place) + key;
}

}  // namespace nimbara

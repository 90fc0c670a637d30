#include "feeds/nowcast/nowcast_service.h"

#include "base/json/json_codec.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/kept_record.h"
#include "feeds/fetching/watched_feed.h"
#include "feeds/nowcast/bright_sky_radar.h"
#include "feeds/nowcast/met_nowcast.h"
#include "feeds/nowcast/open_meteo_quarters.h"
#include "platform/http/http_expiry.h"

#include <algorithm>
#include <utility>

namespace nimbara {

namespace {

/// What the programs of the user share of a source and a place.
struct NowcastRecord {
  std::optional<NowcastReply> reply;
  Instant checkedAt;
  Instant until;
  std::string etag, lastModified;
  std::optional<ServiceFailure> failure;
  std::optional<Instant> failedAt, pausedUntil;
  int failures = 0;
};

}  // namespace

template <>
inline constexpr auto enumNames<NowcastReply::State> =
    std::to_array<std::string_view>({"steps", "uncovered", "radarDown"});
static_assert(enumNamesComplete(NowcastReply::State::radarDown));

template <>
inline constexpr auto jsonFields<NowcastStep> =
    FieldList{field("from", &NowcastStep::from), field("to", &NowcastStep::to),
              field("mmPerHour", &NowcastStep::mmPerHour), fieldOr("fall", &NowcastStep::fall)};
template <>
inline constexpr auto jsonFields<Nowcast> =
    FieldList{field("source", &Nowcast::source), field("kind", &Nowcast::kind),
              field("issued", &Nowcast::issued), field("steps", &Nowcast::steps)};
template <>
inline constexpr auto jsonFields<NowcastReply> =
    FieldList{field("state", &NowcastReply::state), field("nowcast", &NowcastReply::nowcast)};
template <>
inline constexpr auto jsonFields<NowcastRecord> =
    FieldList{field("reply", &NowcastRecord::reply),
              field("checkedAt", &NowcastRecord::checkedAt),
              field("until", &NowcastRecord::until),
              fieldOr("etag", &NowcastRecord::etag),
              fieldOr("lastModified", &NowcastRecord::lastModified),
              field("failure", &NowcastRecord::failure),
              field("failedAt", &NowcastRecord::failedAt),
              field("pausedUntil", &NowcastRecord::pausedUntil),
              fieldOr("failures", &NowcastRecord::failures)};

namespace {

constexpr std::size_t kLargestAnswer = std::size_t{1} << 20;
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

constexpr std::chrono::minutes kLongestPause{60};

/// Of a source and a place; a file's as well.
std::string nameOf(NowcastSource source, Coordinate place) {
  constexpr int kDecimals = 4;
  return std::string(enumName(source)) + "_" + fixedDecimal(place.latitude, kDecimals) + "," +
         fixedDecimal(place.longitude, kDecimals);
}

/// A device that moves leaves answers behind.
void removeOldest(std::filesystem::path const& folder) {
  std::error_code error;
  std::vector<std::pair<std::filesystem::file_time_type, std::filesystem::path>> files;
  for (auto const& entry : std::filesystem::directory_iterator(folder, error))
    files.emplace_back(entry.last_write_time(error), entry.path());
  if (files.size() <= NowcastService::kMostAnswers) return;
  std::ranges::sort(files);
  files.resize(files.size() - NowcastService::kMostAnswers);
  for (auto const& [time, file] : files) std::filesystem::remove(file, error);
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
  return *read(place, [&](NowcastSource source) { return &ask(source, place, stop); });
}

std::optional<NowcastReading> NowcastService::kept(Coordinate place) {
  std::lock_guard const turn(turn_);
  return read(place, [&](NowcastSource source) -> Kept const* {
    Kept& kept = keep(source, place);
    if (!isFresh(kept)) load(kept, source, place);
    Instant const now = clock_.now();
    bool const isKnown = kept.failure
                             ? kept.failedAt && isYounger(*kept.failedAt, kKeptLife, now)
                             : kept.reply && (isFresh(kept) || isYounger(kept.checkedAt, kKeptLife, now));
    return isKnown ? &kept : nullptr;
  });
}

template <class Reply>
std::optional<NowcastReading> NowcastService::read(Coordinate place, Reply reply) const {
  NowcastReading reading;
  for (NowcastSource const source : nowcastSourcesAt(place)) {
    Kept const* const kept = reply(source);
    if (kept == nullptr) return std::nullopt;
    if (kept->failure) {
      reading.misses.push_back({source, false, *kept->failure});
    } else if (kept->reply->state == NowcastReply::State::radarDown) {
      reading.misses.push_back({source, true, {}});
    } else if (kept->reply->state == NowcastReply::State::steps &&
               isOver(kept->reply->nowcast, clock_.now())) {
      reading.misses.push_back({source, false, overFailure()});
    } else if (kept->reply->state == NowcastReply::State::steps) {
      reading.state = NowcastReading::State::current;
      reading.nowcast = kept->reply->nowcast;
      reading.checkedAt = kept->checkedAt;
      return reading;
    }
  }
  if (!reading.misses.empty()) reading.state = NowcastReading::State::failed;
  return reading;
}

/// A source that failed has the longer rest at least.
Instant NowcastService::nextAsk(Coordinate place) {
  std::lock_guard const turn(turn_);
  Instant const now = clock_.now();
  Instant next = now + kUncoveredRest;
  for (NowcastSource const source : nowcastSourcesAt(place)) {
    Kept const& kept = keep(source, place);
    if (isFresh(kept)) {
      next = std::min(next, kept.until);
      if (kept.reply->state == NowcastReply::State::steps) return next;
    } else {
      auto const pause = isPaused(kept) ? *kept.pausedUntil - clock_.steadyNow() : kDryRest;
      next = std::min(next, now + std::max(std::chrono::ceil<std::chrono::milliseconds>(pause),
                                           std::chrono::milliseconds(kDryRest)));
    }
  }
  return next;
}

bool NowcastService::isFresh(Kept const& kept) const {
  Instant const now = clock_.now();
  return kept.reply && kept.checkedAt <= now && now < kept.until;
}

bool NowcastService::isPaused(Kept const& kept) const {
  return kept.failure && kept.pausedUntil && clock_.steadyNow() < *kept.pausedUntil;
}

/// What is kept of the source, asked anew where that is due and no other program has: a reply, or a failure.
NowcastService::Kept const& NowcastService::ask(NowcastSource source, Coordinate place,
                                                std::stop_token const& stop) {
  Kept& kept = keep(source, place);
  if (!isFresh(kept) && !isPaused(kept)) load(kept, source, place);
  if (isFresh(kept)) {
    kept.failure.reset();
  } else if (!isPaused(kept)) {
    exchangeFor(kept, source, place, stop);
    if (!stop.stop_requested()) save(kept, source, place);
  }
  return kept;
}

void NowcastService::exchangeFor(Kept& kept, NowcastSource source, Coordinate place,
                                 std::stop_token const& stop) {
  constexpr std::chrono::seconds kLongestSilence{6};
  constexpr std::chrono::seconds kTimeout{10};
  HttpRequest request;
  request.url = urlOf(source, place);
  request.headers = {{"Accept", "application/json"}};
  request.timeout = kTimeout;
  request.longestSilence = kLongestSilence;
  request.maxBodyBytes = kLargestAnswer;
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
  kept.failedAt = clock_.now();
  kept.pausedUntil = clock_.steadyNow() + pauseAfterFailure(answer.status, ++kept.failures,
                                                            answer.header("Retry-After"), clock_.now());
}

/// Of what was asked for last.
NowcastService::Kept& NowcastService::keep(NowcastSource source, Coordinate place) {
  std::string const key = nameOf(source, place);
  if (!kept_.contains(key) && kept_.size() >= kMostAnswers) {
    kept_.erase(std::ranges::min_element(kept_, {}, [](auto const& entry) { return entry.second.asked; }));
  }
  Kept& kept = kept_[key];
  kept.asked = ++questions_;
  return kept;
}

std::filesystem::path NowcastService::fileOf(NowcastSource source, Coordinate place) const {
  return options_.cacheDirectory / (nameOf(source, place) + ".json");
}

/// What another program has had of the source since.
void NowcastService::load(Kept& kept, NowcastSource source, Coordinate place) const {
  if (options_.cacheDirectory.empty()) return;
  auto record = keptRecord<NowcastRecord>(fileOf(source, place), kLargestAnswer);
  Instant const now = clock_.now();
  auto const lastTried = [](auto const& one) {
    return std::max(one.checkedAt, one.failedAt.value_or(Instant()));
  };
  if (!record || lastTried(*record) > now || lastTried(*record) <= lastTried(kept)) return;
  kept.reply = std::move(record->reply);
  kept.checkedAt = record->checkedAt;
  kept.until = record->until;
  kept.failure = std::move(record->failure);
  kept.failedAt = record->failedAt;
  kept.failures = record->failures;
  kept.validators = {std::move(record->etag), std::move(record->lastModified)};
  kept.url = urlOf(source, place);
  kept.pausedUntil.reset();
  if (kept.failure && record->pausedUntil && *record->pausedUntil > now)
    kept.pausedUntil =
        clock_.steadyNow() + std::min<std::chrono::milliseconds>(*record->pausedUntil - now, kLongestPause);
}

/// A disk that cannot be written to costs no more than another question.
void NowcastService::save(Kept const& kept, NowcastSource source, Coordinate place) const {
  if (options_.cacheDirectory.empty()) return;
  NowcastRecord record{
      kept.reply,   kept.checkedAt, kept.until, kept.validators.etag, kept.validators.lastModified,
      kept.failure, kept.failedAt,  {},         kept.failures};
  if (isPaused(kept)) {
    record.pausedUntil =
        clock_.now() + std::chrono::ceil<std::chrono::milliseconds>(*kept.pausedUntil - clock_.steadyNow());
  }
  std::ignore = writeFileAtomically(fileOf(source, place), encodeJson(record));
  removeOldest(options_.cacheDirectory);
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

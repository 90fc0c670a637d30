#include "feeds/storms/lightning_source.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>

namespace nimbara {

namespace {

/// A strike that the source's clock dates a little ahead of ours has happened all the same.
constexpr std::chrono::minutes kStrikesAhead{5};
constexpr int kDecimals = 4;

struct StrikeEntry {
  std::optional<Instant> time;
  std::optional<double> latitude, longitude;
};

struct StrikeList {
  std::vector<Lenient<StrikeEntry>> strikes;
};

std::string placeQuery(Coordinate place, double radiusKm) {
  return "latitude=" + fixedDecimal(place.latitude, kDecimals) +
         "&longitude=" + fixedDecimal(place.longitude, kDecimals) + "&radius=" + fixedDecimal(radiusKm, 1);
}

FeedQuestion questionFor(std::string const& baseUrl, std::string const& placeQuery, Instant since) {
  constexpr std::size_t kLargestBody = std::size_t{4} << 20;
  constexpr std::chrono::seconds kTimeout{10};
  FeedQuestion question;
  question.request.url = baseUrl + "/lightning/strikes?" + placeQuery + "&since=" +
                         percentEncoded(formatIso8601(std::chrono::floor<std::chrono::seconds>(since)));
  question.request.headers = {{"Accept", "application/json"}};
  question.request.timeout = kTimeout;
  question.request.maxBodyBytes = kLargestBody;
  question.expected = "list of strikes";
  question.life = HttpLightningSource::kLife;
  return question;
}

}  // namespace

template <>
inline constexpr auto jsonFields<StrikeEntry> =
    FieldList{field("time", &StrikeEntry::time), field("latitude", &StrikeEntry::latitude),
              field("longitude", &StrikeEntry::longitude)};
template <>
inline constexpr auto jsonFields<StrikeList> = FieldList{field("strikes", &StrikeList::strikes)};

Result<std::vector<LightningStrike>, DecodeError> parseLightningStrikes(std::string_view body) {
  auto const list = decodeJson<StrikeList>(body);
  if (!list) return std::unexpected(list.error());
  std::vector<LightningStrike> strikes;
  strikes.reserve(list->strikes.size());
  for (auto const& entry : list->strikes) {
    if (!entry.value || !entry.value->time || !entry.value->latitude || !entry.value->longitude) continue;
    Coordinate const place{*entry.value->latitude, *entry.value->longitude};
    if (isValid(place)) strikes.push_back({*entry.value->time, place});
  }
  return strikes;
}

HttpLightningSource::HttpLightningSource(HttpClient& http, Clock const& clock, std::string baseUrl)
    : http_(http), clock_(clock), baseUrl_(std::move(baseUrl)) {}

FeedReading<std::vector<LightningStrike>> HttpLightningSource::fetchStrikes(Coordinate place, double radiusKm,
                                                                            Instant since,
                                                                            std::stop_token const& stop) {
  if (baseUrl_.empty()) {
    return notConfiguredReading<std::vector<LightningStrike>>("no lightning source is set");
  }
  if (!isValid(place) || !(radiusKm > 0)) return placelessReading<std::vector<LightningStrike>>();
  double const radius = std::min(radiusKm, kLargestRadiusKm);
  std::string const key = placeQuery(place, radius);
  std::lock_guard const turn(turn_);
  Instant const now = clock_.now();
  Instant const begin = std::max(since, now - kLongestSpan);
  // Always the whole span is asked for, so that the answer serves whoever asks next with another moment.
  auto reading = places_.of(key).read(http_, clock_, questionFor(baseUrl_, key, now - kLongestSpan),
                                      parseLightningStrikes, stop);
  std::erase_if(reading.data, [&](LightningStrike const& strike) {
    return strike.time < begin || strike.time > now + kStrikesAhead ||
           haversineKm(strike.coordinate, place) > radius;
  });
  std::ranges::stable_sort(reading.data, std::ranges::greater{}, &LightningStrike::time);
  return reading;
}

}  // namespace nimbara

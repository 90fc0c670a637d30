#include "app/words/nowcast_text.h"

#include "analysis/precip_kind.h"
#include "analysis/precip_predictor.h"

namespace nimbara {

namespace {

/// The first source should have had it.
std::string failureOf(NowcastReading const& reading, Texts const& texts) {
  NowcastMiss const& miss = reading.misses.front();
  return texts.format(miss.isRadarDown ? "nowcast.radarDown" : "nowcast.failed", properNameOf(miss.source));
}

}  // namespace

NowcastReading withFall(NowcastReading reading, std::span<HourlyForecast const> hours) {
  nameFall(reading.nowcast, hours);
  return reading;
}

NowcastNow nowcastNow(NowcastReading const& reading, Instant now) {
  using enum PrecipOutlook::State;
  if (reading.state != NowcastReading::State::current) return {};
  PrecipOutlook const outlook = PrecipPredictor(reading.nowcast).outlook(now);
  NowcastNow out;
  out.isWet = outlook.state == falls;
  out.isWetAhead = out.isWet || outlook.state == starts;
  out.isKnown = out.isWetAhead || outlook.state == dry;
  out.fall = outlook.fall;
  out.dryUntil = now + outlook.dryFor;
  return out;
}

std::string nowcastSource(NowcastReading const& reading, Instant now, Texts const& texts) {
  auto const source = enumFromName<NowcastSource>(reading.nowcast.source);
  bool const isCurrent = reading.state == NowcastReading::State::current && source;
  if (!isCurrent || !reading.checkedAt) return {};
  std::string const age = ageText(reading.nowcast.issued.value_or(*reading.checkedAt), now, texts);
  return texts.format("nowcast.source." + std::string(enumName(reading.nowcast.kind)), properNameOf(*source),
                      age);
}

NowcastText nowcastText(NowcastReading const& reading, Instant now, Texts const& texts,
                        TimeWords const& words) {
  bool const isFailed = reading.state == NowcastReading::State::failed && !reading.misses.empty();
  if (isFailed) return {failureOf(reading, texts), {}};
  return {sentenceOf(PrecipPredictor(reading.nowcast).outlook(now), texts, words),
          nowcastSource(reading, now, texts)};
}

}  // namespace nimbara

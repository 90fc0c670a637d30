#include "app/words/hazards/air_text.h"

#include "base/text/number.h"
#include "base/words/time_words.h"

#include <cmath>

namespace nimbara {

namespace {

std::string tenths(double value, Texts const& texts) {
  std::string text = fixedDecimal(value, 1);
  return text.replace(text.find('.'), 1, texts.decimalPoint());
}

std::string indexText(std::optional<AirIndex> const& index, AirScale scale, Texts const& texts) {
  if (!index) return std::string(texts.text("air.index.unknown"));
  return texts.format("air.index." + std::string(enumName(scale)), static_cast<int>(index->value),
                      bandText(index->band, texts));
}

/// Only where the air gets worse than it is.
std::string peakText(AirQualityForecast const& forecast, std::optional<AirIndex> const& present,
                     AirScale scale, HazardWords const& words) {
  std::optional<AirIndex> worst = present;
  Instant when;
  for (AirQualityHour const& hour : airHoursAhead(forecast, words.now)) {
    auto const index = airIndexOf(hour.levels, scale);
    if (!index || (worst && index->value <= worst->value)) continue;
    worst = index;
    when = hour.time;
  }
  if (!worst || worst == present) return {};
  return words.texts.format("air.peak", static_cast<int>(worst->value), bandText(worst->band, words.texts),
                            words.moment(when));
}

void addUv(AirText& text, UvOutlook const& uv, HazardWords const& words) {
  Texts const& texts = words.texts;
  if (!uv.highest) {
    text.uv = texts.text("air.uv.unknown");
    return;
  }
  text.uv = uv.now ? texts.format("air.uv.now", uvShown(*uv.now), uvShown(*uv.highest))
                   : texts.format("air.uv.highest", uvShown(*uv.highest));
  TimeWords const time(texts, words.calendar);
  for (UvHours const& span : uv.protection) {
    text.protection.push_back(texts.format("air.uv.protect", words.moment(span.begin), time.clock(span.end),
                                           uvShown(span.highest)));
  }
  if (uv.protection.empty()) text.protection.emplace_back(texts.text("air.uv.none"));
}

void addPollen(AirText& text, PollenOutlook const& pollen, Texts const& texts) {
  if (pollen.state != PollenState::values) {
    text.pollenState = texts.text("air.pollen." + std::string(enumName(pollen.state)));
    return;
  }
  for (std::size_t i = 0; i < pollen.highest.size(); ++i) {
    auto const& highest = pollen.highest[i];
    if (!highest || *highest > 0)
      text.pollen.push_back(pollenLine(static_cast<PollenKind>(i), pollen, texts));
  }
}

}  // namespace

std::string bandText(AirBand band, Texts const& texts) {
  return std::string(texts.text("air.band." + std::string(enumName(band))));
}

std::string pollutantText(Pollutant pollutant, Texts const& texts) {
  return std::string(texts.text("air.pollutant." + std::string(enumName(pollutant))));
}

int uvShown(double uv) {
  return static_cast<int>(std::floor(uv + 0.5));
}

std::vector<HazardLine> pollutantLines(AirLevels const& levels, Texts const& texts) {
  std::vector<HazardLine> lines;
  for (std::size_t i = 0; i < levels.pollutants.size(); ++i) {
    auto const value = levels.pollutants[i];
    lines.push_back({pollutantText(static_cast<Pollutant>(i), texts),
                     value ? tenths(*value, texts) + " µg/m³" : std::string(texts.text("air.notKnown"))});
  }
  return lines;
}

HazardLine pollenLine(PollenKind kind, PollenOutlook const& pollen, Texts const& texts) {
  auto const at = static_cast<std::size_t>(kind);
  std::string name(texts.text("air.pollen." + std::string(enumName(kind))));
  auto const highest = pollen.highest[at];
  if (!highest) return {std::move(name), std::string(texts.text("air.notKnown"))};
  return {std::move(name),
          texts.format("air.pollen.value", roundedText(pollen.now[at].value_or(0)), roundedText(*highest))};
}

AirText airText(AirQualityForecast const& forecast, Coordinate place, std::optional<Instant> checkedAt,
                HazardWords const& words) {
  Texts const& texts = words.texts;
  AirScale const scale = airScaleAt(place);
  auto const index = airIndexOf(forecast.now, scale);
  AirText text;
  text.index = indexText(index, scale, texts);
  if (index && index->leading) {
    text.leading = texts.format("air.leading", pollutantText(*index->leading, texts));
  }
  text.pollutants = pollutantLines(forecast.now, texts);
  text.peak = peakText(forecast, index, scale, words);
  addUv(text, uvOutlook(forecast, words.now), words);
  addPollen(text, pollenOutlook(forecast, place, words.now), texts);
  text.source = texts.format("air.source", words.moment(checkedAt.value_or(words.now)));
  return text;
}

}  // namespace nimbara

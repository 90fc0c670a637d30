#include "feeds/nowcast/met_nowcast.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>

namespace nimbara {

namespace {

struct WireDetails {
  Lenient<double> temperature, rate;
};

struct WireInstant {
  Lenient<WireDetails> details;
};

struct WireSummary {
  Lenient<std::string> symbol;
};

struct WireHour {
  Lenient<WireSummary> summary;
};

struct WireData {
  Lenient<WireInstant> instant;
  Lenient<WireHour> nextHour;
};

struct WireStep {
  Instant time;
  Lenient<WireData> data;
};

struct WireMeta {
  Lenient<Instant> updated;
  std::string coverage;
};

struct WireProperties {
  WireMeta meta;
  std::vector<Lenient<WireStep>> steps;
};

struct WireNowcast {
  WireProperties properties;
};

}  // namespace

template <>
inline constexpr auto jsonFields<WireDetails> = FieldList{
    fieldOr("air_temperature", &WireDetails::temperature), fieldOr("precipitation_rate", &WireDetails::rate)};
template <>
inline constexpr auto jsonFields<WireInstant> = FieldList{fieldOr("details", &WireInstant::details)};
template <>
inline constexpr auto jsonFields<WireSummary> = FieldList{fieldOr("symbol_code", &WireSummary::symbol)};
template <>
inline constexpr auto jsonFields<WireHour> = FieldList{fieldOr("summary", &WireHour::summary)};
template <>
inline constexpr auto jsonFields<WireData> =
    FieldList{fieldOr("instant", &WireData::instant), fieldOr("next_1_hours", &WireData::nextHour)};
template <>
inline constexpr auto jsonFields<WireStep> =
    FieldList{field("time", &WireStep::time), fieldOr("data", &WireStep::data)};
template <>
inline constexpr auto jsonFields<WireMeta> =
    FieldList{fieldOr("updated_at", &WireMeta::updated), field("radar_coverage", &WireMeta::coverage)};
template <>
inline constexpr auto jsonFields<WireProperties> =
    FieldList{field("meta", &WireProperties::meta), fieldOr("timeseries", &WireProperties::steps)};
template <>
inline constexpr auto jsonFields<WireNowcast> = FieldList{field("properties", &WireNowcast::properties)};

namespace {

WireDetails detailsOf(WireStep const& step) {
  auto const& data = step.data.value;
  if (!data || !data->instant.value) return {};
  return data->instant.value->details.value.value_or(WireDetails());
}

Fall fallOfSymbol(WireStep const& step) {
  auto const& data = step.data.value;
  if (!data || !data->nextHour.value || !data->nextHour.value->summary.value) return Fall::unknown;
  std::string const symbol = data->nextHour.value->summary.value->symbol.value.value_or("");
  if (symbol.contains("sleet")) return Fall::sleet;
  if (symbol.contains("snow")) return Fall::snow;
  return symbol.contains("rain") ? Fall::rain : Fall::unknown;
}

/// Only where the temperature leaves no doubt.
Fall fallOfTemperature(std::optional<double> celsius) {
  constexpr double kRainFrom = 3;
  constexpr double kSnowUpTo = -2;
  if (!celsius) return Fall::unknown;
  return *celsius >= kRainFrom ? Fall::rain : *celsius <= kSnowUpTo ? Fall::snow : Fall::unknown;
}

/// Of all steps: only the first has a symbol and a temperature.
Fall fallOf(std::vector<WireStep> const& steps) {
  for (WireStep const& step : steps) {
    if (Fall const fall = fallOfSymbol(step); fall != Fall::unknown) return fall;
  }
  for (WireStep const& step : steps) {
    if (auto const celsius = detailsOf(step).temperature.value) return fallOfTemperature(celsius);
  }
  return Fall::unknown;
}

std::vector<WireStep> readable(std::vector<Lenient<WireStep>> const& listed) {
  std::vector<WireStep> steps;
  for (auto const& entry : listed) {
    if (entry.value) steps.push_back(*entry.value);
  }
  std::ranges::stable_sort(steps, {}, &WireStep::time);
  return steps;
}

}  // namespace

std::string metNowcastPath(Coordinate place) {
  constexpr int kDecimals = 4;
  return "/weatherapi/nowcast/2.0/complete?lat=" + fixedDecimal(place.latitude, kDecimals) +
         "&lon=" + fixedDecimal(place.longitude, kDecimals);
}

Result<NowcastReply, DecodeError> parseMetNowcast(std::string_view body) {
  constexpr std::chrono::minutes kStep{5};
  auto const wire = decodeJson<WireNowcast>(body);
  if (!wire) return std::unexpected(wire.error());
  auto const& [meta, listed] = wire->properties;
  if (meta.coverage == "no coverage") return NowcastReply{NowcastReply::State::uncovered, {}};
  if (meta.coverage == "temporarily unavailable") return NowcastReply{NowcastReply::State::radarDown, {}};
  if (meta.coverage != "ok") {
    return std::unexpected(
        DecodeError{"/properties/meta/radar_coverage", "it is unknown: " + oneLine(meta.coverage, 40)});
  }
  auto const steps = readable(listed);
  Fall const fall = fallOf(steps);
  NowcastReply reply;
  reply.nowcast = {
      std::string(enumName(NowcastSource::metNorway)), NowcastKind::radar, meta.updated.value, {}};
  bool isAnyKnown = false;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    Instant const end = steps[i].time + kStep;
    auto const rate = plausibleRate(detailsOf(steps[i]).rate.value);
    reply.nowcast.steps.push_back(
        {steps[i].time, i + 1 < steps.size() ? std::min(end, steps[i + 1].time) : end, rate, fall});
    isAnyKnown = isAnyKnown || rate;
  }
  if (!isAnyKnown) return std::unexpected(DecodeError{"/properties/timeseries", "there is no rate"});
  return reply;
}

}  // namespace nimbara

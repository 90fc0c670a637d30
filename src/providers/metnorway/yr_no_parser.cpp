#include "providers/metnorway/yr_no_parser.h"

#include "base/json/json_codec.h"
#include "providers/common/measurement_ranges.h"

#include <algorithm>

namespace nimbara {

namespace {

struct PeriodSummary {
  std::optional<std::string> symbolCode;
};

struct PeriodDetails {
  Reading airTemperatureMax;
  Reading airTemperatureMin;
  Reading precipitationAmount;
  Reading probabilityOfPrecipitation;
  Reading probabilityOfThunder;
};

struct PeriodBlock {
  PeriodSummary summary;
  PeriodDetails details;
};

struct InstantBlock {
  YrNoInstant details;
};

struct StepData {
  InstantBlock instant;
  std::optional<PeriodBlock> next1Hours;
  std::optional<PeriodBlock> next6Hours;
};

struct Step {
  Instant time;
  StepData data;
};

struct Properties {
  std::vector<Step> timeseries;
};

struct Document {
  Properties properties;
};

using Quantity = MeasuredQuantity;

struct InstantRow {
  Reading YrNoInstant::* reading;
  Quantity quantity;
  double factor = 1;  ///< into the unit of the range
};

constexpr double kKmhPerMs = 3.6;

constexpr InstantRow kInstantRows[] = {
    {&YrNoInstant::airTemperature, Quantity::temperature},
    {&YrNoInstant::airPressureAtSeaLevel, Quantity::pressure},
    {&YrNoInstant::cloudAreaFraction, Quantity::percentage},
    {&YrNoInstant::dewPointTemperature, Quantity::dewPoint},
    {&YrNoInstant::fogAreaFraction, Quantity::percentage},
    {&YrNoInstant::relativeHumidity, Quantity::humidity},
    {&YrNoInstant::ultravioletIndexClearSky, Quantity::uvIndex},
    {&YrNoInstant::windFromDirection, Quantity::windDirection},
    {&YrNoInstant::windSpeed, Quantity::windSpeed, kKmhPerMs},
    {&YrNoInstant::windSpeedOfGust, Quantity::windSpeed, kKmhPerMs},
};

/// Without what cannot be, so that no hour between two steps is reckoned from it.
YrNoInstant possibleOf(YrNoInstant instant) {
  for (InstantRow const& row : kInstantRows) {
    Reading& reading = instant.*row.reading;
    if (reading && !isPossible(row.quantity, *reading * row.factor)) reading.reset();
  }
  return instant;
}

YrNoPeriod periodOf(PeriodBlock const& block) {
  PeriodDetails const& details = block.details;
  return {block.summary.symbolCode.value_or(""),
          possible(Quantity::temperature, details.airTemperatureMax),
          possible(Quantity::temperature, details.airTemperatureMin),
          possible(Quantity::precipitation, details.precipitationAmount),
          possible(Quantity::percentage, details.probabilityOfPrecipitation),
          possible(Quantity::percentage, details.probabilityOfThunder)};
}

std::optional<YrNoPeriod> periodOf(std::optional<PeriodBlock> const& block) {
  if (!block) return std::nullopt;
  return periodOf(*block);
}

}  // namespace

template <>
inline constexpr auto jsonFields<YrNoInstant> = FieldList{
    field("air_pressure_at_sea_level", &YrNoInstant::airPressureAtSeaLevel),
    field("air_temperature", &YrNoInstant::airTemperature),
    field("cloud_area_fraction", &YrNoInstant::cloudAreaFraction),
    field("dew_point_temperature", &YrNoInstant::dewPointTemperature),
    field("fog_area_fraction", &YrNoInstant::fogAreaFraction),
    field("relative_humidity", &YrNoInstant::relativeHumidity),
    field("ultraviolet_index_clear_sky", &YrNoInstant::ultravioletIndexClearSky),
    field("wind_from_direction", &YrNoInstant::windFromDirection),
    field("wind_speed", &YrNoInstant::windSpeed),
    field("wind_speed_of_gust", &YrNoInstant::windSpeedOfGust),
};

template <>
inline constexpr auto jsonFields<PeriodSummary> = FieldList{field("symbol_code", &PeriodSummary::symbolCode)};

template <>
inline constexpr auto jsonFields<PeriodDetails> = FieldList{
    field("air_temperature_max", &PeriodDetails::airTemperatureMax),
    field("air_temperature_min", &PeriodDetails::airTemperatureMin),
    field("precipitation_amount", &PeriodDetails::precipitationAmount),
    field("probability_of_precipitation", &PeriodDetails::probabilityOfPrecipitation),
    field("probability_of_thunder", &PeriodDetails::probabilityOfThunder),
};

template <>
inline constexpr auto jsonFields<PeriodBlock> =
    FieldList{fieldOr("summary", &PeriodBlock::summary), fieldOr("details", &PeriodBlock::details)};

template <>
inline constexpr auto jsonFields<InstantBlock> = FieldList{fieldOr("details", &InstantBlock::details)};

template <>
inline constexpr auto jsonFields<StepData> =
    FieldList{fieldOr("instant", &StepData::instant), field("next_1_hours", &StepData::next1Hours),
              field("next_6_hours", &StepData::next6Hours)};

template <>
inline constexpr auto jsonFields<Step> = FieldList{field("time", &Step::time), fieldOr("data", &Step::data)};

template <>
inline constexpr auto jsonFields<Properties> = FieldList{field("timeseries", &Properties::timeseries)};

template <>
inline constexpr auto jsonFields<Document> = FieldList{field("properties", &Document::properties)};

Result<std::vector<YrNoStep>, DecodeError> parseYrNo(std::string_view body) {
  auto const document = decodeJson<Document>(body);
  if (!document) return std::unexpected(document.error());
  std::vector<YrNoStep> steps;
  steps.reserve(document->properties.timeseries.size());
  for (Step const& step : document->properties.timeseries) {
    steps.push_back({step.time, possibleOf(step.data.instant.details), periodOf(step.data.next1Hours),
                     periodOf(step.data.next6Hours)});
  }
  std::ranges::stable_sort(steps, {}, &YrNoStep::time);
  auto const repeated = std::ranges::unique(steps, {}, &YrNoStep::time);
  steps.erase(repeated.begin(), repeated.end());
  return steps;
}

}  // namespace nimbara

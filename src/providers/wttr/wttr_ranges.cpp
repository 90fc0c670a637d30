#include "providers/wttr/wttr_ranges.h"

#include "base/text/number.h"
#include "base/units.h"
#include "providers/common/measurement_ranges.h"

namespace nimbara {

namespace {

using Quantity = MeasuredQuantity;

template <class Record>
struct TextRow {
  std::string Record::* text;
  Quantity quantity;
  double factor = 1;  ///< into the unit of the range
};

/// A temperature in both units.
template <class Record>
struct TemperatureRow {
  std::string Record::* celsius;
  std::string Record::* fahrenheit;
  Quantity quantity;
};

constexpr double kMetresPerKm = 1000;

template <class Condition>
constexpr TextRow<Condition> kShared[] = {
    {&Condition::cloudcover, Quantity::percentage},
    {&Condition::humidity, Quantity::humidity},
    {&Condition::precipMM, Quantity::precipitation},
    {&Condition::pressure, Quantity::pressure},
    {&Condition::uvIndex, Quantity::uvIndex},
    {&Condition::visibility, Quantity::visibility, kMetresPerKm},
    {&Condition::winddirDegree, Quantity::windDirection},
    {&Condition::windspeedKmph, Quantity::windSpeed},
};

constexpr TextRow<HourlyCondition> kHourly[] = {
    {&HourlyCondition::windGustKmph, Quantity::windSpeed},
    {&HourlyCondition::chanceoffog, Quantity::percentage},
    {&HourlyCondition::chanceofrain, Quantity::percentage},
    {&HourlyCondition::chanceofsnow, Quantity::percentage},
    {&HourlyCondition::chanceofsunshine, Quantity::percentage},
    {&HourlyCondition::chanceofthunder, Quantity::percentage},
};

constexpr TextRow<WeatherDay> kDaily[] = {
    {&WeatherDay::totalSnowCm, Quantity::snowfallOfDay},
    {&WeatherDay::uvIndex, Quantity::uvIndex},
};

template <class Condition>
constexpr TemperatureRow<Condition> kSharedTemperatures[] = {
    {&Condition::tempC, &Condition::tempF, Quantity::temperature},
    {&Condition::feelsLikeC, &Condition::feelsLikeF, Quantity::feltTemperature},
};

constexpr TemperatureRow<HourlyCondition> kHourlyTemperatures[] = {
    {&HourlyCondition::dewPointC, &HourlyCondition::dewPointF, Quantity::dewPoint},
};

constexpr TemperatureRow<WeatherDay> kDailyTemperatures[] = {
    {&WeatherDay::maxtempC, &WeatherDay::maxtempF, Quantity::temperature},
    {&WeatherDay::mintempC, &WeatherDay::mintempF, Quantity::temperature},
    {&WeatherDay::avgtempC, &WeatherDay::avgtempF, Quantity::temperature},
};

template <class Record, std::size_t count>
void drop(Record& record, TextRow<Record> const (&rows)[count]) {
  for (auto const& row : rows) {
    auto const value = parseDouble(record.*row.text);
    if (value && !isPossible(row.quantity, *value * row.factor)) (record.*row.text).clear();
  }
}

template <class Record, std::size_t count>
void drop(Record& record, TemperatureRow<Record> const (&rows)[count]) {
  for (auto const& row : rows) {
    auto const celsius = parseDouble(record.*row.celsius);
    auto const fahrenheit = parseDouble(record.*row.fahrenheit);
    if (celsius && !isPossible(row.quantity, *celsius)) (record.*row.celsius).clear();
    if (fahrenheit && !isPossible(row.quantity, celsiusFromFahrenheit(*fahrenheit))) {
      (record.*row.fahrenheit).clear();
    }
  }
}

}  // namespace

void dropImpossible(WttrResponse& answer) {
  for (CurrentCondition& current : answer.currentCondition) {
    drop(current, kShared<CurrentCondition>);
    drop(current, kSharedTemperatures<CurrentCondition>);
  }
  for (WeatherDay& day : answer.weather) {
    drop(day, kDaily);
    drop(day, kDailyTemperatures);
    for (HourlyCondition& hour : day.hourly) {
      drop(hour, kShared<HourlyCondition>);
      drop(hour, kSharedTemperatures<HourlyCondition>);
      drop(hour, kHourly);
      drop(hour, kHourlyTemperatures);
    }
  }
}

}  // namespace nimbara

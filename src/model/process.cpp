#include "model/process.h"

#include "base/text/number.h"
#include "base/text/text.h"

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::hours;

std::optional<DetailFields> processedDetails(DetailFields const& fields) {
  if (fields == DetailFields::all()) return std::nullopt;
  return fields;
}

template <class Record>
struct ValueText {
  ForecastValue value;
  std::string Record::* text;
};

constexpr ValueText<CurrentCondition> kCurrentValues[] = {
    {ForecastValue::precipitation, &CurrentCondition::precipMM},
    {ForecastValue::windSpeed, &CurrentCondition::windspeedKmph}};
constexpr ValueText<HourlyCondition> kHourlyValues[] = {
    {ForecastValue::precipitation, &HourlyCondition::precipMM},
    {ForecastValue::precipitationChance, &HourlyCondition::chanceofrain},
    {ForecastValue::windSpeed, &HourlyCondition::windspeedKmph},
    {ForecastValue::windGust, &HourlyCondition::windGustKmph}};

bool isNumber(std::string_view text) {
  return parseDouble(trimmed(text)).has_value();
}

/// A text that is not a number becomes 0 in the record; here stands that this 0 is nobody's.
template <class Record, std::size_t count>
std::optional<ForecastValues> processedUnknowns(Record const& in, ValueText<Record> const (&values)[count],
                                                ForecastValues unknown) {
  for (ValueText<Record> const& row : values) {
    if (!isNumber(in.*row.text)) unknown.insert(row.value);
  }
  return unknown.empty() ? std::nullopt : std::optional(unknown);
}

LocationInfo processLocation(WttrResponse const& response) {
  LocationInfo location;
  location.timeZone = response.timeZone;
  if (response.nearestArea.empty()) {
    location.areaName = "Unknown";
    return location;
  }
  NearestArea const& area = response.nearestArea.front();
  location.areaName = firstText(area.areaName);
  location.country = firstText(area.country);
  location.region = firstText(area.region);
  location.latitude = lenientDouble(area.latitude);
  location.longitude = lenientDouble(area.longitude);
  return location;
}

WeatherData::ProcessedCurrent processCurrent(CurrentCondition const& in) {
  WeatherData::ProcessedCurrent out;
  out.tempC = lenientDouble(in.tempC);
  out.tempF = lenientDouble(in.tempF);
  out.feelsLikeC = lenientDouble(in.feelsLikeC);
  out.feelsLikeF = lenientDouble(in.feelsLikeF);
  out.humidity = lenientInteger(in.humidity);
  out.cloudCover = lenientInteger(in.cloudcover);
  out.precipMM = lenientDouble(in.precipMM);
  out.pressure = lenientDouble(in.pressure);
  out.uvIndex = lenientInteger(in.uvIndex);
  out.visibility = lenientDouble(in.visibility);
  out.windSpeedKmph = lenientDouble(in.windspeedKmph);
  out.windSpeedMph = lenientDouble(in.windspeedMiles);
  out.windDirection = in.winddir16Point;
  out.windDirDegree = lenientInteger(in.winddirDegree);
  out.condition = conditionOfWwoCode(in.weatherCode);
  out.conditionDescription = firstText(in.weatherDesc);
  out.observationTime = in.observationTime;
  out.isDay = in.isDay;
  out.availableDetailFields = processedDetails(in.availableDetailFields);
  out.unknownValues = processedUnknowns(in, kCurrentValues, {});
  return out;
}

HourlyForecast processHour(HourlyCondition const& in) {
  HourlyForecast out;
  out.hour = std::clamp(lenientInteger(in.time) / 100, 0, 23);
  out.tempC = lenientDouble(in.tempC);
  out.tempF = lenientDouble(in.tempF);
  out.feelsLikeC = lenientDouble(in.feelsLikeC);
  out.feelsLikeF = lenientDouble(in.feelsLikeF);
  out.humidity = lenientInteger(in.humidity);
  out.precipMM = lenientDouble(in.precipMM);
  out.condition = conditionOfWwoCode(in.weatherCode);
  out.conditionDescription = firstText(in.weatherDesc);
  out.windSpeedKmph = lenientDouble(in.windspeedKmph);
  out.windDirection = in.winddir16Point;
  out.chanceOfRain = lenientInteger(in.chanceofrain);
  out.chanceOfSnow = lenientInteger(in.chanceofsnow);
  out.chanceOfFog = lenientInteger(in.chanceoffog);
  out.chanceOfThunder = lenientInteger(in.chanceofthunder);
  out.chanceOfSunshine = lenientInteger(in.chanceofsunshine);
  out.uvIndex = lenientInteger(in.uvIndex);
  out.cloudCover = lenientInteger(in.cloudcover);
  out.pressure = lenientDouble(in.pressure);
  out.visibilityKm = lenientDouble(in.visibility);
  out.windGustKmph = lenientDouble(in.windGustKmph);
  out.dewPointC = lenientDouble(in.dewPointC);
  out.dewPointF = lenientDouble(in.dewPointF);
  out.availableDetailFields = processedDetails(in.availableDetailFields);
  out.unknownValues = processedUnknowns(in, kHourlyValues, in.unknownValues.value_or(ForecastValues()));
  return out;
}

/// The moments of one local day's clock hours, read in the order in which the day lists them.
class HourReader {
 public:
  HourReader(Calendar const& calendar, Date day)
      : calendar_(calendar),
        day_(day),
        start_(calendar.startOfDay(day)),
        plain_(calendar.startOfDay(addDays(day, 1)) - start_ == hours(24)) {}

  Instant next(int hour) {
    Instant const moment = plain_ ? start_ + hours(hour) : onChangeDay(hour);
    previous_ = moment;
    return moment;
  }

 private:
  /// A clock change may repeat an hour; the second entry of that hour is its second occurrence.
  Instant onChangeDay(int hour) const {
    LocalTime const reading = std::chrono::local_days(day_) + hours(hour);
    Instant const first = calendar_.instant(reading);
    bool const repeated = previous_ && first <= *previous_;
    return repeated ? calendar_.instant(reading, Calendar::Occurrence::second) : first;
  }

  Calendar const& calendar_;
  Date day_;
  Instant start_;
  bool plain_;
  std::optional<Instant> previous_;
};

DailyForecast::ProcessedAstronomy processAstronomy(std::vector<Astronomy> const& list) {
  if (list.empty()) return {};
  Astronomy const& in = list.front();
  return {in.sunrise, in.sunset, in.moonrise, in.moonset, in.moonPhase, lenientInteger(in.moonIllumination)};
}

std::optional<double> processedNumber(std::optional<std::string> const& text) {
  return text ? parseDouble(trimmed(*text)) : std::nullopt;
}

void processWholeDay(WeatherDay const& in, DailyForecast& out) {
  if (in.weatherCode) out.condition = conditionOfWwoCode(*in.weatherCode);
  if (out.condition == WeatherConditionCode::unknown) out.condition.reset();
  out.precipMM = processedNumber(in.precipMM);
  out.windSpeedKmph = processedNumber(in.windspeedKmph);
  out.windDirection = in.winddir16Point;
}

DailyForecast processDay(WeatherDay const& in, Date date, Calendar const& calendar) {
  DailyForecast out;
  out.date = calendar.startOfDay(date);
  out.maxTempC = lenientDouble(in.maxtempC);
  out.maxTempF = lenientDouble(in.maxtempF);
  out.minTempC = lenientDouble(in.mintempC);
  out.minTempF = lenientDouble(in.mintempF);
  out.avgTempC = lenientDouble(in.avgtempC);
  out.avgTempF = lenientDouble(in.avgtempF);
  out.totalSnowCm = lenientDouble(in.totalSnowCm);
  out.sunHours = lenientDouble(in.sunHour);
  out.uvIndex = lenientInteger(in.uvIndex);
  if (in.dailyPrecipitationChance)
    out.dailyPrecipitationChance = lenientInteger(*in.dailyPrecipitationChance);
  out.astronomy = processAstronomy(in.astronomy);
  processWholeDay(in, out);
  HourReader moments(calendar, date);
  out.hourly.reserve(in.hourly.size());
  for (HourlyCondition const& hour : in.hourly) {
    HourlyForecast& processed = out.hourly.emplace_back(processHour(hour));
    processed.date = moments.next(processed.hour);
  }
  return out;
}

Calendar zoneOr(std::optional<std::string> const& zoneId, Calendar const& fallback) {
  return zoneId ? Calendar::forZone(*zoneId).value_or(fallback) : fallback;
}

}  // namespace

Calendar calendarOf(WttrResponse const& response, Calendar const& fallback) {
  return zoneOr(response.timeZone, fallback);
}

Calendar calendarOf(WeatherData const& data, Calendar const& fallback) {
  return zoneOr(data.location.timeZone, fallback);
}

WeatherData process(WttrResponse const& response, Calendar const& fallback, Instant now) {
  Calendar const calendar = calendarOf(response, fallback);
  WeatherData data;
  data.location = processLocation(response);
  if (!response.currentCondition.empty()) data.current = processCurrent(response.currentCondition.front());
  data.daily.reserve(response.weather.size());
  for (WeatherDay const& day : response.weather) {
    // A day whose date cannot be read has no place in time.
    if (auto const date = parseDate(day.date)) data.daily.push_back(processDay(day, *date, calendar));
  }
  for (DailyForecast const& day : data.daily) {
    data.allHourly.insert(data.allHourly.end(), day.hourly.begin(), day.hourly.end());
  }
  data.fetchedAt = std::chrono::floor<std::chrono::seconds>(now);
  return data;
}

}  // namespace nimbara

#include "providers/openmeteo/open_meteo_client.h"

#include "base/time/calendar.h"
#include "providers/common/hours_by_day.h"
#include "providers/common/interchange.h"
#include "providers/common/local_hours.h"
#include "providers/common/measurement_ranges.h"
#include "providers/common/service_answer.h"
#include "providers/openmeteo/open_meteo_request.h"
#include "providers/time_zone_lookup.h"

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::hours;
using std::chrono::seconds;

/// A missing weather code is taken from a neighbour that is no farther than this.
constexpr std::ptrdiff_t kCodeReach = 3;

/// The two clocks of an answer: its texts hang in one fixed offset, its days belong to the place's zone.
struct AnswerTime {
  seconds offset;
  Calendar calendar;

  Instant instant(LocalTime text) const { return Instant(text.time_since_epoch() - offset); }
};

/// A reading of the answer's first day, or of its present.
std::optional<LocalTime> firstReading(OpenMeteoResponse const& response) {
  if (response.hourly && !response.hourly->time.empty() && response.hourly->time.front()) {
    return response.hourly->time.front();
  }
  if (response.daily && !response.daily->time.empty() && response.daily->time.front()) {
    return std::chrono::local_days(*response.daily->time.front());
  }
  return response.current ? parseLocalTime(response.current->time) : std::nullopt;
}

/// The place's zone, unless its clocks are another than the answer's: then our table of the zone is older or
/// newer than the service's, and the answer's hours are read by its own offset.
AnswerTime timeOf(OpenMeteoResponse const& response, Instant now) {
  auto zone = Calendar::forZone(response.timezone);
  seconds const offset = response.utcOffset ? *response.utcOffset : zone ? zone->offset(now) : seconds(0);
  auto const first = firstReading(response);
  Instant const begin = first ? Instant(first->time_since_epoch() - offset) : now;
  if (zone && standsAt(*zone, offset, begin)) return {offset, *std::move(zone)};
  return {offset, Calendar::fixedOffset(offset)};
}

/// A reading of a parallel array; absent where the answer lacks the array.
Reading at(std::vector<Reading> const& list, std::size_t index) {
  return index < list.size() ? list[index] : std::nullopt;
}

template <class T>
std::optional<T> at(std::vector<std::optional<T>> const& list, std::size_t index) {
  return index < list.size() ? list[index] : std::nullopt;
}

std::optional<int> codeOf(Reading reading) {
  if (!reading || std::abs(*reading) > 1000) return std::nullopt;
  return static_cast<int>(*reading);
}

std::optional<bool> flagOf(Reading reading) {
  if (!reading) return std::nullopt;
  return *reading == 1;
}

std::optional<int> codeNear(std::vector<Reading> const& codes, std::size_t index) {
  auto const length = static_cast<std::ptrdiff_t>(codes.size());
  auto const centre = static_cast<std::ptrdiff_t>(index);
  for (std::ptrdiff_t distance = 0; distance <= kCodeReach; ++distance) {
    for (std::ptrdiff_t const neighbour : {centre - distance, centre + distance}) {
      if (neighbour < 0 || neighbour >= length) continue;
      if (auto const code = codeOf(codes[static_cast<std::size_t>(neighbour)])) return code;
    }
  }
  return std::nullopt;
}

void fillEntry(OMHourly const& block, std::size_t i, HourlyEntry& entry) {
  entry.temperature2m = at(block.temperature2m, i);
  entry.relativeHumidity2m = at(block.relativeHumidity2m, i);
  entry.apparentTemperature = at(block.apparentTemperature, i);
  entry.dewPoint2m = at(block.dewPoint2m, i);
  entry.weatherCode = codeNear(block.weatherCode, i);
  entry.cloudCover = at(block.cloudCover, i);
  entry.precipitationProbability = at(block.precipitationProbability, i);
  entry.precipitation = at(block.precipitation, i);
  entry.snowfall = at(block.snowfall, i);
  entry.windSpeed10m = at(block.windSpeed10m, i);
  entry.windDirection10m = at(block.windDirection10m, i);
  entry.windGusts10m = at(block.windGusts10m, i);
  entry.pressureMsl = at(block.pressureMsl, i);
  entry.visibility = at(block.visibility, i);
  entry.uvIndex = at(block.uvIndex, i);
  entry.isDay = flagOf(at(block.isDay, i));
  dropImpossible(entry);
}

/// All hours that have a time and a temperature, in the order of time.
std::vector<HourlyEntry> hoursOf(OMHourly const& block, AnswerTime const& time) {
  std::vector<HourlyEntry> entries;
  entries.reserve(block.time.size());
  for (std::size_t i = 0; i < block.time.size(); ++i) {
    if (!block.time[i]) continue;
    HourlyEntry& entry = entries.emplace_back();
    fillEntry(block, i, entry);
    entry.begin = time.instant(*block.time[i]);
    if (!entry.temperature2m) entries.pop_back();
  }
  if (!std::ranges::is_sorted(entries, {}, &HourlyEntry::begin)) {
    std::ranges::stable_sort(entries, {}, &HourlyEntry::begin);
  }
  return entries;
}

HourlyEntry entryOf(OMCurrent const& current) {
  HourlyEntry entry;
  entry.temperature2m = current.temperature2m;
  entry.relativeHumidity2m = current.relativeHumidity2m;
  entry.apparentTemperature = current.apparentTemperature;
  entry.dewPoint2m = current.dewPoint2m;
  entry.weatherCode = codeOf(current.weatherCode);
  entry.cloudCover = current.cloudCover;
  entry.precipitation = current.precipitation;
  entry.windSpeed10m = current.windSpeed10m;
  entry.windDirection10m = current.windDirection10m;
  entry.windGusts10m = current.windGusts10m;
  entry.pressureMsl = current.pressureMsl;
  entry.visibility = current.visibility;
  entry.uvIndex = current.uvIndex;
  entry.isDay = flagOf(current.isDay);
  dropImpossible(entry);
  return entry;
}

std::optional<CurrentCondition> currentOf(OpenMeteoResponse const& response,
                                          std::vector<HourlyEntry> const& entries, AnswerTime const& time,
                                          Instant now) {
  auto const observed = response.current ? parseLocalTime(response.current->time) : std::nullopt;
  Instant const moment = observed ? time.instant(*observed) : now;
  HourlyEntry present = response.current ? entryOf(*response.current) : HourlyEntry{};
  if (auto const* const hour = hourContaining(entries, moment)) fillGaps(present, *hour);
  if (!present.temperature2m) return std::nullopt;
  LocalTime const local = time.calendar.local(moment);
  return writeCurrent(present, local, observed ? response.current->time : formatLocalTime(local));
}

/// Where the sun does not rise or set, the service writes the day's bounds (or, on old servers, 1970) instead
/// of times.
bool isRealSunTime(Date day, std::optional<LocalTime> sunrise, std::optional<LocalTime> sunset) {
  if (!sunrise || !sunset || *sunrise >= *sunset) return false;
  auto const midnight = std::chrono::local_days(day);
  bool const wholeDay = *sunrise == midnight && *sunset == midnight + hours(24);
  return !wholeDay && *sunrise >= midnight && *sunrise < midnight + hours(24);
}

DailyEntry dayAt(OMDaily const& block, std::size_t i, AnswerTime const& time) {
  DailyEntry entry;
  entry.date = *block.time[i];
  entry.temperatureMax = at(block.temperature2mMax, i);
  entry.temperatureMin = at(block.temperature2mMin, i);
  entry.uvIndexMax = at(block.uvIndexMax, i);
  entry.precipitationProbabilityMax = at(block.precipitationProbabilityMax, i);
  entry.snowfallSum = at(block.snowfallSum, i);
  entry.precipitationSum = at(block.precipitationSum, i);
  entry.windSpeedMax = at(block.windSpeed10mMax, i);
  entry.windDirectionDominant = at(block.windDirection10mDominant, i);
  entry.weatherCode = codeOf(at(block.weatherCode, i));
  dropImpossible(entry);
  auto const sunrise = at(block.sunrise, i);
  auto const sunset = at(block.sunset, i);
  if (isRealSunTime(entry.date, sunrise, sunset)) {
    entry.sunrise = time.instant(*sunrise);
    entry.sunset = time.instant(*sunset);
  }
  return entry;
}

/// The days that the answer lists; without a daily block, those that its hours touch.
std::vector<DailyEntry> daysOf(OpenMeteoResponse const& response, HoursByDay const& hoursOfDays,
                               AnswerTime const& time) {
  std::vector<DailyEntry> days;
  if (response.daily) {
    for (std::size_t i = 0; i < response.daily->time.size(); ++i) {
      if (response.daily->time[i]) days.push_back(dayAt(*response.daily, i, time));
    }
  }
  if (!days.empty()) return days;
  for (auto const& [date, entries] : hoursOfDays) {
    DailyEntry day;
    day.date = date;
    days.push_back(day);
  }
  return days;
}

}  // namespace

Result<WttrResponse, APIError> joinOpenMeteo(OpenMeteoResponse const& response, Coordinate place,
                                             Instant now) {
  AnswerTime const time = timeOf(response, now);
  std::vector<HourlyEntry> entries = response.hourly
                                         ? onLocalHours(hoursOf(*response.hourly, time), time.calendar)
                                         : std::vector<HourlyEntry>{};
  HoursByDay days = hoursByDay(entries, time.calendar);
  WttrResponse record;
  record.timeZone = time.calendar.zoneId();
  record.nearestArea = {writeArea(place)};
  record.request = {writeRequest(place)};
  if (auto current = currentOf(response, entries, time, now)) record.currentCondition = {std::move(*current)};
  for (DailyEntry const& day : daysOf(response, days, time)) {
    if (auto written = writeDay(day, days[day.date], time.calendar, place))
      record.weather.push_back(std::move(*written));
  }
  if (record.weather.empty() && record.currentCondition.empty()) {
    return std::unexpected(APIError::of(APIError::Case::noResults));
  }
  return record;
}

Result<WttrResponse, APIError> readOpenMeteoAnswer(HttpResponse const& answer, Coordinate place,
                                                   Instant now) {
  if (auto refusal = refusalIn(answer)) return std::unexpected(std::move(*refusal));
  auto const response = parseOpenMeteo(answer.body);
  if (!response) return std::unexpected(APIError::decoding(response.error()));
  return joinOpenMeteo(*response, place, now);
}

Result<WttrResponse, APIError> OpenMeteoClient::fetch(Coordinate place, std::stop_token const& stop) {
  auto const answer = get(openMeteoPath(place, address().apiKey), {}, stop);
  if (!answer) return std::unexpected(answer.error());
  return readOpenMeteoAnswer(*answer, place, clock().now());
}

}  // namespace nimbara

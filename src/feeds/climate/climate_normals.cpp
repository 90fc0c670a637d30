#include "feeds/climate/climate_normals.h"

#include "feeds/fetching/lenient_json.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace nimbara {

namespace {

constexpr std::size_t kHalfWindow = 7;
constexpr std::size_t kLeastYears = 15;
constexpr std::size_t kLeastDaysOfBias = 60;
constexpr double kLeastDifference = 2;
constexpr double kFarthestCelsius = 100;
constexpr std::size_t kMostDays = 20'000;

struct Daily {
  std::vector<Lenient<std::string>> time;
  std::vector<Lenient<double>> warmest, coldest;
};

struct Answer {
  std::optional<std::string> reason;
  std::optional<Daily> daily;
};

}  // namespace

template <>
inline constexpr auto jsonFields<Daily> =
    FieldList{field("time", &Daily::time), field("temperature_2m_max", &Daily::warmest),
              field("temperature_2m_min", &Daily::coldest)};
template <>
inline constexpr auto jsonFields<Answer> =
    FieldList{field("reason", &Answer::reason), field("daily", &Answer::daily)};

namespace {

bool isPlausible(std::optional<double> celsius) {
  return celsius && std::abs(*celsius) <= kFarthestCelsius;
}

/// Between the values at whole ranks.
double quantile(std::vector<double> const& sorted, double share) {
  double const rank = share * static_cast<double>(sorted.size() - 1);
  auto const below = static_cast<std::size_t>(rank);
  std::size_t const above = std::min(below + 1, sorted.size() - 1);
  return sorted[below] + (rank - static_cast<double>(below)) * (sorted[above] - sorted[below]);
}

struct Pool {
  std::vector<double> values;
  std::set<int> years;
};

std::optional<ClimateDay> dayOf(Pool& pool) {
  if (pool.years.size() < kLeastYears) return std::nullopt;
  std::ranges::sort(pool.values);
  double sum = 0;
  for (double const value : pool.values) sum += value;
  auto const at = [&](double share) { return quantile(pool.values, share); };
  return ClimateDay{
      sum / static_cast<double>(pool.values.size()), at(0.1), at(0.2), at(0.5), at(0.8), at(0.9)};
}

}  // namespace

Result<std::vector<DayTemperature>, DecodeError> parseDayTemperatures(std::string_view body) {
  auto const answer = decodeJson<Answer>(body);
  if (!answer) return std::unexpected(answer.error());
  if (answer->reason) return std::unexpected(DecodeError{"", oneLine(*answer->reason)});
  if (!answer->daily) return std::unexpected(DecodeError{"/daily", "there are no daily values"});
  Daily const& daily = *answer->daily;
  std::size_t const count =
      std::min({daily.time.size(), daily.warmest.size(), daily.coldest.size(), kMostDays});
  std::vector<DayTemperature> days;
  for (std::size_t i = 0; i < count; ++i) {
    auto const date = daily.time[i].value ? parseDate(*daily.time[i].value) : std::nullopt;
    auto const warmest = daily.warmest[i].value;
    auto const coldest = daily.coldest[i].value;
    if (date && isPlausible(warmest) && isPlausible(coldest))
      days.push_back({*date, (*warmest + *coldest) / 2});
  }
  return days;
}

std::size_t climateIndex(Date date) {
  constexpr std::chrono::year kLeapYear{2020};
  auto const day = std::chrono::sys_days(kLeapYear / date.month() / date.day());
  return static_cast<std::size_t>((day - std::chrono::sys_days(kLeapYear / 1 / 1)).count());
}

ClimateNormals climateNormals(std::vector<DayTemperature> const& days) {
  std::vector<Pool> pools(kClimateDays);
  for (DayTemperature const& day : days) {
    std::size_t const index = climateIndex(day.date);
    for (std::size_t offset = 0; offset <= 2 * kHalfWindow; ++offset) {
      Pool& pool = pools[(index + kClimateDays + offset - kHalfWindow) % kClimateDays];
      pool.values.push_back(day.mean);
      pool.years.insert(static_cast<int>(day.date.year()));
    }
  }
  ClimateNormals normals;
  for (Pool& pool : pools) normals.push_back(dayOf(pool));
  return normals;
}

std::optional<ClimateDay> climateOf(ClimateNormals const& normals, Date date) {
  std::size_t const index = climateIndex(date);
  return index < normals.size() ? normals[index] : std::nullopt;
}

std::optional<double> climateBias(std::vector<DayTemperature> const& forecasts,
                                  std::vector<DayTemperature> const& archive) {
  std::map<std::chrono::sys_days, double> measured;
  for (DayTemperature const& day : archive) measured[std::chrono::sys_days(day.date)] = day.mean;
  double sum = 0;
  std::size_t count = 0;
  for (DayTemperature const& day : forecasts) {
    auto const same = measured.find(std::chrono::sys_days(day.date));
    if (same == measured.end()) continue;
    sum += day.mean - same->second;
    ++count;
  }
  return count < kLeastDaysOfBias ? std::nullopt : std::optional(sum / static_cast<double>(count));
}

ClimateWord climateWord(ClimateDay const& usual, double mean) {
  if (std::abs(mean - usual.p50) < kLeastDifference) return ClimateWord::usual;
  if (mean > usual.p90) return ClimateWord::unusuallyWarm;
  if (mean < usual.p10) return ClimateWord::unusuallyCold;
  if (mean > usual.p80) return ClimateWord::warmer;
  return mean < usual.p20 ? ClimateWord::colder : ClimateWord::usual;
}

}  // namespace nimbara

// One seven-day answer from bytes to the processed forecast, beside what the parser library alone and a tree
// parser need for the same bytes in the same run.

#include "analysis/brief/weather_brief.h"
#include "analysis/weather_analysis_engine.h"
#include "base/sun_moon.h"
#include "demo/forecasts/open_meteo_stand_in.h"
#include "model/process.h"
#include "model/weather_cache.h"
#include "providers/openmeteo/open_meteo_client.h"
#include "providers/openmeteo/open_meteo_request.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>
#include <simdjson.h>

#include <filesystem>
#include <map>

namespace nimbara {
namespace {

constexpr Coordinate kPlace{52.52, 13.41};

Instant now() {
  return *parseIso8601("2026-11-21T09:20:00Z");
}

std::string const& body() {
  static std::string const made = [] {
    std::map<std::string, std::string, std::less<>> values;
    std::string const path = openMeteoPath(kPlace);
    std::string const query = path.substr(path.find('?') + 1);
    for (std::size_t begin = 0; begin < query.size();) {
      auto const end = std::min(query.find('&', begin), query.size());
      auto const equals = query.find('=', begin);
      values[query.substr(begin, equals - begin)] = query.substr(equals + 1, end - equals - 1);
      begin = end + 1;
    }
    DemoRequest request;
    request.query = [&](std::string_view name) { return values[std::string(name)]; };
    return openMeteoForecast(request, now()).body;
  }();
  return made;
}

void setBytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(body().size()));
}

void simdjsonParse(benchmark::State& state) {
  simdjson::dom::parser parser;
  for (auto _ : state) benchmark::DoNotOptimize(parser.parse(body()).error());
  setBytes(state);
}
BENCHMARK(simdjsonParse);

void nlohmannParse(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(nlohmann::json::parse(body()));
  setBytes(state);
}
BENCHMARK(nlohmannParse);

void decode(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(parseOpenMeteo(body()));
  setBytes(state);
}
BENCHMARK(decode);

void convert(benchmark::State& state) {
  auto const response = parseOpenMeteo(body());
  for (auto _ : state) benchmark::DoNotOptimize(joinOpenMeteo(*response, kPlace, now()));
}
BENCHMARK(convert);

void processed(benchmark::State& state) {
  auto const response = joinOpenMeteo(*parseOpenMeteo(body()), kPlace, now());
  for (auto _ : state) benchmark::DoNotOptimize(process(*response, Calendar::utc(), now()));
}
BENCHMARK(processed);

void decodeConvertProcess(benchmark::State& state) {
  for (auto _ : state) {
    auto const response = readOpenMeteoAnswer({200, {}, body()}, kPlace, now());
    benchmark::DoNotOptimize(process(*response, Calendar::utc(), now()));
  }
  setBytes(state);
}
BENCHMARK(decodeConvertProcess);

void moonOfAWeek(benchmark::State& state) {
  for (auto _ : state) {
    for (int day = 0; day < 7; ++day) {
      Instant const begin = now() + std::chrono::hours(24 * day);
      benchmark::DoNotOptimize(moonRiseSet(begin, begin + std::chrono::hours(24), kPlace));
    }
  }
}
BENCHMARK(moonOfAWeek);

WeatherData const& forecast() {
  static WeatherData const made =
      process(*joinOpenMeteo(*parseOpenMeteo(body()), kPlace, now()), Calendar::utc(), now());
  return made;
}

/// A folder that the kernel holds in memory, so that no disk is measured.
WeatherCache& cache() {
  static FixedClock const clock(now());
  static WeatherCache made(std::filesystem::temp_directory_path() / "nimbara-bench-cache", clock);
  made.store(cacheKey(kPlace), {now(), forecast(), {}, WeatherProviderOption::openMeteo, {}});
  return made;
}

void loadCached(benchmark::State& state) {
  WeatherCache& kept = cache();
  std::string const key = cacheKey(kPlace);
  for (auto _ : state) {
    if (!kept.load(key)) return state.SkipWithError("the forecast is not kept");
  }
}
BENCHMARK(loadCached);

/// The parser alone on the same file.
void simdjsonParseCached(benchmark::State& state) {
  std::string const file =
      encodeJson(ParsedCacheEntry{now(), forecast(), {}, WeatherProviderOption::openMeteo, {}});
  simdjson::dom::parser parser;
  for (auto _ : state) benchmark::DoNotOptimize(parser.parse(file).error());
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(file.size()));
}
BENCHMARK(simdjsonParseCached);

void storeCached(benchmark::State& state) {
  WeatherCache& kept = cache();
  std::string const key = cacheKey(kPlace);
  for (auto _ : state) kept.store(key, {now(), forecast(), {}, WeatherProviderOption::openMeteo, {}});
}
BENCHMARK(storeCached);

/// Every check that can speak does.
void generateAlerts(benchmark::State& state) {
  WeatherData weather = forecast();
  for (HourlyForecast& hour : weather.allHourly) {
    hour.chanceOfThunder = 80;
    hour.windGustKmph = 120;
    hour.precipMM = 9;
    hour.chanceOfFog = 80;
    hour.uvIndex = 11;
    hour.tempC = hour.feelsLikeC = -20;
  }
  Texts const texts = Texts::load("en");
  std::size_t alerts = 0;
  for (auto _ : state) alerts = AlertGenerator{}.generate(weather, now(), Units::metric(), texts).size();
  state.counters["alerts"] = static_cast<double>(alerts);
}
BENCHMARK(generateAlerts);

/// Alerts, events and trends.
void analyseForecast(benchmark::State& state) {
  WeatherData const& weather = forecast();
  WeatherAnalysisEngine const engine;
  Texts const texts = Texts::load("en");
  for (auto _ : state) {
    benchmark::DoNotOptimize(engine.analyze(weather, now(), Units::metric(), texts));
    benchmark::DoNotOptimize(engine.trendAnalyzer.analyze(weather, now()));
  }
}
BENCHMARK(analyseForecast);

void brief(benchmark::State& state) {
  WeatherData const& weather = forecast();
  Texts const texts = Texts::load("en");
  for (auto _ : state) benchmark::DoNotOptimize(weatherBrief(weather, {}, now(), Units::metric(), texts));
}
BENCHMARK(brief);

void adviceForNineActivities(benchmark::State& state) {
  WeatherData const& weather = forecast();
  for (auto _ : state) {
    for (std::string_view const name : enumNames<Activity>)
      benchmark::DoNotOptimize(TipGenerator{}.tip(*enumFromName<Activity>(name), weather, now(), {}, {}));
  }
}
BENCHMARK(adviceForNineActivities);

}  // namespace
}  // namespace nimbara

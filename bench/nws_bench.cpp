// A nation-wide answer of the National Weather Service from bytes to live events, beside what the parser
// library alone needs for the same bytes in the same run. The answer is made here: 246 alerts of 3.6 kB.
// NIMBARA_SAMPLES, where it is set, adds the recorded answers.

#include "base/files/file.h"
#include "feeds/alerts/gov_alerts.h"

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <cstdlib>
#include <filesystem>

namespace nimbara {
namespace {

std::string feature(int number) {
  std::string const id = "urn:oid:2.49.0.1.840.0." + std::string(40, 'a') + "." + std::to_string(number);
  std::string zones;
  for (int zone = 0; zone < 8; ++zone) {
    zones += (zone > 0 ? "," : "") + std::string(R"("https://api.weather.gov/zones/forecast/AZZ5)") +
             std::to_string(zone) + "\"";
  }
  std::string const prose(1800, 'x');
  return R"({"id":"https://api.weather.gov/alerts/)" + id +
         R"(","type":"Feature","geometry":null,"properties":{"id":")" + id + R"(","areaDesc":")" +
         std::string(120, 'y') + R"(","geocode":{"SAME":["004013"],"UGC":["AZZ537"]},
         "affectedZones":[)" +
         zones + R"(],"references":[{"@id":"https://api.weather.gov/alerts/old","identifier":"urn:old)" +
         std::to_string(number) + R"(","sender":"w@noaa.gov","sent":"2026-11-20T01:14:00-07:00"}],
         "sent":"2026-11-21T01:14:00-07:00","effective":"2026-11-21T01:14:00-07:00","onset":"2026-11-21T10:00:00-07:00",
         "expires":"2026-11-22T03:00:00-07:00","ends":"2026-11-22T20:00:00-07:00","status":"Actual","messageType":"Update",
         "category":"Met","severity":"Severe","certainty":"Likely","urgency":"Expected","event":"High Wind Warning",
         "eventCode":{"SAME":["HWW"],"NationalWeatherService":["HWW"]},"sender":"w@noaa.gov","senderName":"NWS Phoenix AZ",
         "headline":"High Wind Warning issued","description":")" +
         prose + R"(","instruction":")" + std::string(500, 'z') +
         R"(","response":"Prepare","parameters":{"AWIPSidentifier":["NPWPSR"],"WMOidentifier":["WWUS75 KPSR 181947"]}}})";
}

std::string madeAnswer() {
  std::string text = R"({"type":"FeatureCollection","features":[)";
  for (int i = 0; i < 246; ++i) text += (i > 0 ? "," : "") + feature(i);
  return text + "]}";
}

void setBytes(benchmark::State& state, std::string const& body) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(body.size()));
}

void simdjsonParse(benchmark::State& state, std::string const& body) {
  simdjson::dom::parser parser;
  for (auto _ : state) benchmark::DoNotOptimize(parser.parse(body).error());
  setBytes(state, body);
}

void parseAlerts(benchmark::State& state, std::string const& body) {
  for (auto _ : state) benchmark::DoNotOptimize(parseNwsAlerts(body));
  setBytes(state, body);
}

void chooseEvents(benchmark::State& state, std::string const& body) {
  auto const list = parseNwsAlerts(body);
  Instant const now = *parseIso8601("2026-11-21T12:00:00Z");
  for (auto _ : state) {
    KnownEvents roots;
    benchmark::DoNotOptimize(liveEvents(list->alerts, now, roots));
  }
}

void measure(std::string const& name, std::string const& body) {
  benchmark::RegisterBenchmark(("simdjsonParse/" + name).c_str(), simdjsonParse, body);
  benchmark::RegisterBenchmark(("parseAlerts/" + name).c_str(), parseAlerts, body);
  benchmark::RegisterBenchmark(("chooseEvents/" + name).c_str(), chooseEvents, body);
}

void measureRecorded(std::filesystem::path const& folder) {
  constexpr std::size_t kLargest = std::size_t{4} << 20;
  for (auto const& entry : std::filesystem::directory_iterator(folder)) {
    auto const body = readFile(entry.path(), kLargest);
    if (body && parseNwsAlerts(*body)) measure(entry.path().stem().string(), *body);
  }
}

}  // namespace
}  // namespace nimbara

int main(int count, char** arguments) {
  nimbara::measure("made", nimbara::madeAnswer());
  if (char const* const samples = std::getenv("NIMBARA_SAMPLES"))
    nimbara::measureRecorded(std::filesystem::path(samples) / "nws");
  benchmark::Initialize(&count, arguments);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

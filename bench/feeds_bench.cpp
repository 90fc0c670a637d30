// MeteoAlarm's feeds beside expat alone, selection from a parsed feed, and look-ups of warning regions.
// NIMBARA_SAMPLES, where it is set, gives the recorded feeds; the others are made here.

#include "base/files/file.h"
#include "feeds/meteoalarm/meteo_alarm_merge.h"
#include "feeds/meteoalarm/meteo_alarm_selection.h"
#include "feeds/regions/regions.h"
#include "gazetteer/gazetteer.h"

#include <benchmark/benchmark.h>
#include <expat.h>
#include <fmt/format.h>

#include <cmath>
#include <cstdlib>
#include <numbers>
#include <random>

namespace nimbara {
namespace {

constexpr Coordinate kKoblenz{50.36, 7.59};
PlaceRegions const kRegions{"DE", {"Koblenz", "Rheinland-Pfalz"}, {{"EMMA_ID", "DE100"}}};

/// About 1.5 kB an entry, as the service has it.
std::string madeFeed(std::size_t bytes) {
  std::string feed =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<feed xmlns=\"http://www.w3.org/2005/Atom\" "
      "xmlns:cap=\"urn:oasis:names:tc:emergency:cap:1.2\">\n";
  for (int i = 0; feed.size() < bytes; ++i) {
    feed += fmt::format(
        "  <entry>\n    <cap:geocode>\n      <valueName>EMMA_ID</valueName>\n      <value>DE{0}</value>\n"
        "    </cap:geocode>\n    <link href=\"https://meteoalarm.org?geocode=EMMA_ID:DE{0}\" hreflang=\"en\" "
        "title=\"Kreis Nummer {0}\"/>\n    <cap:areaDesc>Kreis Nummer {0}</cap:areaDesc>\n"
        "    <cap:event>heavy thunderstorms with gale- or storm-force gusts and heavy rain</cap:event>\n"
        "    <cap:sent>2026-11-21T13:07:00+00:00</cap:sent>\n    "
        "<cap:expires>2026-11-21T14:00:00+00:00</cap:expires>\n"
        "    <cap:effective>2026-11-21T13:07:00+00:00</cap:effective>\n    "
        "<cap:onset>2026-11-21T13:07:00+00:00</cap:onset>\n    <cap:certainty>Likely</cap:certainty>\n"
        "    <cap:severity>Moderate</cap:severity>\n    <cap:urgency>Immediate</cap:urgency>\n"
        "    <cap:scope>Public</cap:scope>\n    <cap:message_type>Update</cap:message_type>\n"
        "    <cap:status>Actual</cap:status>\n    <cap:identifier>2.49.0.0.276.0.XX.{0}</cap:identifier>\n"
        "    <link href=\"https://feeds.example/api/v1/warnings/feeds-germany/{0}\" "
        "type=\"application/cap+xml\"/>\n"
        "    <link href=\"https://meteoalarm.org?region=DE\" hreflang=\"en\" rel=\"related\" "
        "title=\"Germany\"/>\n"
        "    <author>\n      <name>meteoalarm.org</name>\n      <uri>https://meteoalarm.org</uri>\n    "
        "</author>\n"
        "    <published>2026-11-21T13:07:00Z</published>\n    "
        "<id>https://feeds.example/{0}?index_info=1&amp;index_area=3&amp;index_geocode=0</id>\n"
        "    <title>Orange Thunderstorm Warning issued for Germany - Kreis Nummer {0}</title>\n"
        "    <updated>2026-11-21T13:07:00Z</updated>\n  </entry>\n",
        100 + i % 400);
  }
  return feed + "</feed>\n";
}

std::string sampleOr(char const* name, std::size_t bytes) {
  constexpr std::size_t kLargest = std::size_t{4} << 20;
  char const* const folder = std::getenv("NIMBARA_SAMPLES");
  if (folder == nullptr) return madeFeed(bytes);
  return readFile(std::filesystem::path(folder) / "meteoalarm" / name, kLargest).value_or(madeFeed(bytes));
}

std::string const& bodyOf(int kind) {
  static std::string const kBodies[] = {madeFeed(2'000'000), sampleOr("atom-germany-2023-04-28.xml", 600'000),
                                        sampleOr("atom-ireland-polygons-2022-12-07.xml", 600'000)};
  return kBodies[kind];
}

void expatAlone(benchmark::State& state) {
  std::string const& body = bodyOf(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    XML_Parser const parser = XML_ParserCreate(nullptr);
    std::size_t events = 0;
    XML_SetUserData(parser, &events);
    XML_SetElementHandler(
        parser, [](void* data, char const*, char const**) { ++*static_cast<std::size_t*>(data); },
        [](void* data, char const*) { ++*static_cast<std::size_t*>(data); });
    XML_SetCharacterDataHandler(parser,
                                [](void* data, char const*, int) { ++*static_cast<std::size_t*>(data); });
    benchmark::DoNotOptimize(XML_Parse(parser, body.data(), static_cast<int>(body.size()), XML_TRUE));
    benchmark::DoNotOptimize(events);
    XML_ParserFree(parser);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(body.size()));
}
BENCHMARK(expatAlone)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void parse(benchmark::State& state) {
  std::string const& body = bodyOf(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    MeteoAlarmAtomParser parser;
    benchmark::DoNotOptimize(parser.parse(body));
    benchmark::DoNotOptimize(parser.entries().data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(body.size()));
}
BENCHMARK(parse)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void parseAndSelect(benchmark::State& state) {
  std::string const& body = bodyOf(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    MeteoAlarmAtomParser parser;
    benchmark::DoNotOptimize(parser.parse(body));
    benchmark::DoNotOptimize(selectedEntries(feedOf(parser.takeEntries()), kKoblenz, kRegions).size());
  }
}
BENCHMARK(parseAndSelect)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void select(benchmark::State& state, Coordinate place, PlaceRegions const& regions) {
  MeteoAlarmAtomParser parser;
  benchmark::DoNotOptimize(parser.parse(bodyOf(static_cast<int>(state.range(0)))));
  MeteoAlarmFeed const feed = feedOf(parser.takeEntries());
  for (auto _ : state) benchmark::DoNotOptimize(selectedEntries(feed, place, regions).size());
}
BENCHMARK_CAPTURE(select, byCode, kKoblenz, kRegions)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(select, byName, kKoblenz, PlaceRegions{"DE", {"Koblenz", "Rheinland-Pfalz"}, {}})
    ->DenseRange(0, 2)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(select, amidPolygons, Coordinate{53.35, -6.26}, PlaceRegions{"IE", {"Dublin"}, {}})
    ->Arg(2)
    ->Unit(benchmark::kMicrosecond);

void mergeAll(benchmark::State& state) {
  MeteoAlarmAtomParser parser;
  benchmark::DoNotOptimize(parser.parse(bodyOf(0)));
  auto const& entries = parser.entries();
  std::vector<SelectedEntry> selected;
  for (RawEntry const& entry : entries) selected.push_back({&entry, {}});
  Texts const texts = Texts::load("en");
  MergeContext const context{"DE", kRegions, "en", texts};
  for (auto _ : state) benchmark::DoNotOptimize(mergedAlerts(selected, context));
}
BENCHMARK(mergeAll)->Unit(benchmark::kMicrosecond);

/// The outlines that are part of the program, asked for towns and for points drawn all over Europe.
void lookUpRegions(benchmark::State& state, std::vector<Coordinate> const& places) {
  auto const map = embeddedRegions();
  std::size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(map->at(places[i++ % places.size()], "DE"));
  double slowest = 0;
  for (Coordinate const place : places) {
    std::string const country(describePlace(place).countryCode);
    double fastest = 1e9;
    for (int look = 0; look < 4; ++look) {
      auto const begin = std::chrono::steady_clock::now();
      benchmark::DoNotOptimize(map->at(place, country));
      fastest = std::min(
          fastest,
          std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin).count());
    }
    slowest = std::max(slowest, fastest);
  }
  state.counters["slowest_us"] = slowest;
  state.counters["limit_us"] = 1000;
  state.counters["map_bytes"] = static_cast<double>(map->bytes());
}

std::vector<Coordinate> towns() {
  std::vector<Coordinate> places;
  for (City const& city : allCities()) {
    if (city.coordinate.latitude > 35 && std::abs(city.coordinate.longitude - 15) < 25)
      places.push_back(city.coordinate);
  }
  return places;
}

std::vector<Coordinate> drawn() {
  std::mt19937 random(4);
  std::uniform_real_distribution<double> unit(0, 1);
  std::vector<Coordinate> places(5000);
  for (Coordinate& place : places) place = {35 + unit(random) * 35, unit(random) * 50 - 10};
  return places;
}
BENCHMARK_CAPTURE(lookUpRegions, towns, towns())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(lookUpRegions, drawn, drawn())->Unit(benchmark::kMicrosecond);

/// Country, names and codes in every registry, as a warning's look-up asks for them.
void lookUpPlace(benchmark::State& state) {
  auto const places = towns();
  std::size_t i = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(placeRegionsOf(places[i++ % places.size()], embeddedRegions()));
}
BENCHMARK(lookUpPlace)->Unit(benchmark::kMicrosecond);

/// About 20 MB of GeoJSON.
void readAndSimplifyOutlines(benchmark::State& state) {
  std::string document = "{\"type\":\"FeatureCollection\",\"features\":[";
  constexpr int kRegionCount = 1000;
  constexpr int kCorners = 800;
  for (int i = 0; i < kRegionCount; ++i) {
    document += fmt::format(
        "{}{{\"properties\":{{\"code\":\"X{}\",\"country\":\"XX\",\"name\":\"n\"}},\"geometry\":"
        "{{\"type\":\"Polygon\",\"coordinates\":[[",
        i == 0 ? "" : ",", i);
    for (int corner = 0; corner < kCorners; ++corner) {
      double const angle = corner * 2 * std::numbers::pi / kCorners;
      document += fmt::format("{}[{:.10f},{:.10f}]", corner == 0 ? "" : ",", i % 50 + 0.4 * std::cos(angle),
                              35 + i / 50 + 0.4 * std::sin(angle));
    }
    document += "]]}}";
  }
  document += "]}";
  for (auto _ : state)
    benchmark::DoNotOptimize(regionMapOf(outlineSetOf(readOutlines(document)->outlines)).size());
  state.counters["document_bytes"] = static_cast<double>(document.size());
}
BENCHMARK(readAndSimplifyOutlines)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nimbara

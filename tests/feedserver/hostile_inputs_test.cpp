#include "feeds/alerts/gov_alerts.h"
#include "feeds/meteoalarm/meteo_alarm_merge.h"
#include "feeds/quakes/earthquake_event.h"
#include "feeds/space/element_text.h"
#include "feeds/space/planetary_k_index.h"
#include "support/instants.h"
#include "support/paths.h"
#include "support/samples.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

namespace nimbara {
namespace {

/// What each reader makes of a file; nothing where it refuses the whole.
struct Reading {
  std::optional<std::size_t> entries = {};  ///< of a country's feed
  std::optional<std::size_t> alerts = {};   ///< of the National Weather Service
  std::optional<std::size_t> quakes = {};
  std::optional<double> kIndex = {};
  std::optional<std::size_t> satellites = {};

  bool operator==(Reading const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Reading const& reading) {
  auto const text = [](auto const& value) { return value ? std::to_string(*value) : std::string("refused"); };
  return out << text(reading.entries) << ", " << text(reading.alerts) << ", " << text(reading.quakes) << ", "
             << text(reading.kIndex) << ", " << text(reading.satellites);
}

std::optional<std::size_t> entriesOf(std::string const& body) {
  static Texts const kTexts = Texts::load("en");
  static PlaceRegions const kRegions{"DE", {"Testland"}, {}};
  MeteoAlarmAtomParser parser;
  if (!parser.parse(body)) return std::nullopt;
  MeteoAlarmFeed const feed = feedOf(parser.takeEntries());
  for (Coordinate const place : {Coordinate{50, 8}, {90, 180}, {-90, -180}, {15, 180}, {0, 0}})
    mergedAlerts(selectedEntries(feed, place, kRegions), {"DE", kRegions, "en", kTexts});
  return feed.entries.size();
}

std::optional<std::size_t> alertsOf(std::string const& body) {
  auto const list = parseNwsAlerts(body);
  KnownEvents roots;
  if (list) liveEvents(list->alerts, test::at("2026-11-21T12:00:00Z"), roots);
  return list ? std::optional(list->alerts.size()) : std::nullopt;
}

Reading readingOf(std::string const& body) {
  auto const quakes = parseEarthquakes(body);
  auto const elements = elementText(body);
  return {entriesOf(body), alertsOf(body), quakes ? std::optional(quakes->size()) : std::nullopt,
          newestKp(body), elements ? std::optional(elements->count) : std::nullopt};
}

/// A folder of what services or somebody in between might send one day. Most of it every reader refuses.
TEST(HostileInputs, AreRefusedOrReadAsFarAsTheyMakeSense) {
  std::map<std::string, Reading> const understood{
      {"shapes.xml", {.entries = 18}},
      {"dates.xml", {.entries = 9}},
      {"nested-entries.xml", {.entries = 2}},
      {"latin-1.xml", {.entries = 1}},
      {"utf-16.xml", {.entries = 1}},
      {"zero-byte.json", {.alerts = 1}},
      {"deep-features.json", {.alerts = 0}},
      {"features-of-all-kinds.json", {.alerts = 0}},
      {"quakes-out-of-range.json", {.alerts = 0, .quakes = 2}},
      {"kp-of-all-kinds.json", {.kIndex = 4.33, .satellites = 0}},
      {"elements-ragged.csv", {.satellites = 1}},
  };
  std::size_t count = 0;
  for (auto const& file : std::filesystem::directory_iterator(std::string(test::kFixtures) + "/hostile")) {
    std::string const name = file.path().filename();
    auto const expected = understood.find(name);
    EXPECT_EQ(readingOf(test::readFile(file.path())),
              expected == understood.end() ? Reading{} : expected->second)
        << name;
    ++count;
  }
  EXPECT_EQ(count, 26);
}

}  // namespace
}  // namespace nimbara

// Every recorded answer with warnings in it, given to every reader: each is its own service's alone, and what
// it counts was counted beside it by hand.
#include "feeds/alerts/events/cap_events.h"
#include "feeds/brightsky/bright_sky_alerts.h"
#include "feeds/cap/cap_issuer.h"
#include "feeds/cap/cap_reader.h"
#include "feeds/eccc/eccc_alerts.h"
#include "feeds/fpas/fpas_lists.h"
#include "feeds/metalerts/met_alerts_list.h"
#include "feeds/meteoalarm/meteo_alarm_atom_parser.h"
#include "feeds/meteoalarm/meteo_alarm_json_feed.h"
#include "feeds/nws/nws_alert.h"
#include "feeds/wmo/wmo_rows.h"
#include "support/instants.h"
#include "support/samples.h"

#include <gmock/gmock.h>

#include <map>

namespace nimbara {
namespace {

using test::at;

/// What the reader found; nothing where it refused the body, and a list of none is said as such.
using Count = std::optional<std::size_t>;

template <class Answer, class Member>
Count countOf(Answer const& answer, Member member) {
  return answer ? Count(((*answer).*member).size()) : std::nullopt;
}

Count atomEntriesOf(std::string const& body) {
  MeteoAlarmAtomParser parser;
  return parser.parse(body) ? Count(parser.entries().size()) : std::nullopt;
}

using Body = std::string const;

struct Reader {
  char const* name;
  Count (*read)(Body& body);
};

constexpr Reader kReaders[] = {
    {"cap", [](Body& body) { return countOf(parseCap(body), &CapAlert::infos); }},
    {"wmo", [](Body& body) { return countOf(parseWmoRows(body), &WmoRows::rows); }},
    {"fpas", [](Body& body) { return countOf(parseFpasAlertIds(body), &FpasAlertIds::ids); }},
    {"eccc", [](Body& body) { return countOf(parseEcccAlerts(body), &EcccAlerts::alerts); }},
    {"metalerts", [](Body& body) { return countOf(parseMetAlerts(body), &MetAlertsList::messages); }},
    {"brightsky", [](Body& body) { return countOf(parseBrightSkyAlerts(body), &BrightSkyAlerts::messages); }},
    {"atom", atomEntriesOf},
    {"json",
     [](Body& body) {
       return countOf(parseMeteoAlarmJson(body, "https://feeds.example/"), &MeteoAlarmJsonFeed::entries);
     }},
    {"nws", [](Body& body) { return countOf(parseNwsAlerts(body), &NWSAlertList::alerts); }},
};

/// "cap 2": those that took something from the body. Norway's reader takes any list of features with events
/// in it, so what it makes of America's is no matter.
std::string readingOf(std::string const& body, std::string_view folder) {
  std::string reading;
  for (Reader const& reader : kReaders) {
    Count const count = reader.read(body);
    bool const isOthers = folder == "nws" && std::string_view(reader.name) == "metalerts";
    if (!count || *count == 0 || isOthers) continue;
    reading += (reading.empty() ? "" : ", ") + std::string(reader.name) + " " + std::to_string(*count);
  }
  return reading;
}

std::map<std::string, std::string> const& byHand() {
  static std::map<std::string, std::string> const kByHand{
      {"cap/israel.xml", "cap 2"},
      {"cap/kazakhstan-en-2025-03-06.xml", "cap 1"},
      {"cap/macau-monsoon-allclear.xml", "cap 3"},
      {"cap/russia-2025-03-01.xml", "cap 1"},
      {"wmo-swic/rss-australia-bom.xml", ""},
      {"eccc/alerts-first-of-seven-2026-03-06.json", "eccc 1"},
      {"brightsky/alerts-one.json", "brightsky 1"},
      {"met-norway/locationforecast-compact-innsbruck-2024-05-16.json", ""},
      {"met-norway/metalerts-current.json", "metalerts 29"},
      {"met-norway/nowcast-oslo-dry-2026-04-26.json", ""},
      {"meteoalarm/atom-france-nuts3-2022-12-08.xml", "atom 12"},
      {"meteoalarm/atom-germany-2023-04-28.xml", "atom 381"},
      {"meteoalarm/atom-ireland-polygons-2022-12-07.xml", "atom 232"},
      {"meteoalarm/atom-poland-small-2023-04-28.xml", "atom 2"},
      {"meteoalarm/atom-spain-excerpt-2026-07-29.xml", "atom 2"},
      {"meteoalarm/cap-ireland-small-craft-2025-04-14.xml", "cap 1"},
      {"meteoalarm/cap-serbia-polygon-2025-08-17.xml", "cap 3"},
      {"meteoalarm/json-germany.json", "json 5"},
      {"nws/error-point-outside-2026-01-20.json", ""},
      {"nws/iowa-tornado-flood-dates-replaced-2024-05.json", "nws 48"},
      {"nws/nation-marine-fire-dates-replaced-2026-05.json", "nws 246"},
      {"nws/point-anchorage-empty-2026-01-20.json", ""},
      {"nws/point-minneapolis-winter-2024-01-12.json", "nws 1"},
      {"nws/point-phoenix-heat-air-quality-2024-07-18.json", "nws 2"},
      {"nws/zone-oregon-flood-watch-2019-12-20.json", "nws 1"},
  };
  return kByHand;
}

TEST(WarningSamples, AreTheirOwnServicesAlone) {
  if (!test::sampleFiles("cap")) GTEST_SKIP() << "no samples are named";
  std::size_t found = 0;
  for (char const* const folder :
       {"cap", "wmo-swic", "eccc", "brightsky", "met-norway", "meteoalarm", "nws"}) {
    auto const files = test::sampleFiles(folder).value();
    for (auto const& file : files) {
      std::string const name = folder + ("/" + file.filename().string());
      std::string const reading = readingOf(test::readFile(file), folder);
      auto const counted = byHand().find(name);
      if (counted == byHand().end()) continue;
      ++found;
      EXPECT_EQ(reading, counted->second) << name;
    }
  }
  EXPECT_EQ(found, byHand().size());
}

/// What a recorded message means at places of which the map says where they lie: where it ends up, then what
/// it is of, its kind, its severity, its colour, its issuer and its areas.
struct Meaning {
  std::string country, now;
  std::vector<Coordinate> inside, outside;
  std::string told;
};

std::map<std::string, Meaning> const kMeanings{
    {"israel.xml",
     {"IL",
      "2025-03-06T13:00:00Z",
      {{31.25, 34.79}, {32.08, 34.78}},
      {},
      "unplaced: FLOOD/rain/warning/yellow/Israel Meteorological Service/"
      "South Judea Desert  Dead Sea, North Eastern Negev, Northern Arava"}},
    {"kazakhstan-en-2025-03-06.xml",
     {"KZ",
      "2025-03-06T13:40:00Z",
      {{48.5, 82.8}, {49.0, 82.5}},
      {{51.13, 71.43}, {49.9, 82.6}},
      "here: Freezing rain, icing/snow/advisory//meteo.kz/Kokpekti district (Abai oblysy)"}},
    {"macau-monsoon-allclear.xml",
     {"MO",
      "2025-04-12T23:00:00Z",
      {{22.19, 113.55}, {22.12, 113.60}},
      {{23.13, 113.26}},
      "called off: STRONG MONSOON SIGNAL/wind/advisory//Macao Meteorological and Geophysical Bureau/"
      "Macao Special Administrative Region Administrative Area Map"}},
    {"russia-2025-03-01.xml",
     {"RU",
      "2025-03-02T00:00:00Z",
      {{66.0, 179.5}, {67.0, -178.0}, {67.5, 180}, {67.5, -180}, {71.2, -179.0}},
      {{59.57, 150.80}, {70.3, 179.9}},
      "here: Ветер/wind/advisory//mecom.ru/Чукотский а.о."}},
    {"cap-ireland-small-craft-2025-04-14.xml",
     {"IE",
      "2025-04-14T10:00:00Z",
      {{53.35, -6.26}, {51.9, -8.47}},
      {},
      "unplaced: Small Craft/wind/advisory/yellow/Met Éireann/"
      "from Fair Head to Strangford Lough to Howth Head"}},
    {"cap-serbia-polygon-2025-08-17.xml",
     {"RS",
      "2025-08-17T20:00:00Z",
      {{44.01, 20.91}, {44.3, 20.6}},
      {{42.55, 21.90}, {46.10, 19.67}},
      "here: Thunderstorm yellow/thunderstorm/advisory/yellow/RHMS Serbia/Sumadija"}},
};

/// Empty where nothing is told.
std::string toldAt(Coordinate place, CapMessage const& message, Meaning const& meaning) {
  KnownEvents known;
  auto const answer = capEvents({&message, 1}, {"wmo", place, meaning.country, "en", at(meaning.now)}, known);
  std::string told;
  for (auto const& [where, alerts] : {std::pair{"here: ", &answer.alerts},
                                      {"unplaced: ", &answer.unplaced},
                                      {"called off: ", &answer.calledOff}}) {
    for (WeatherAlert const& alert : *alerts) {
      EXPECT_EQ(alert.distanceKm, std::nullopt);
      told += where + alert.title + "/" + std::string(wordOf(alert.kind)) + "/" +
              std::string(enumName(alert.severity)) + "/" + alert.colour.value_or("") + "/" +
              alert.issuer.value_or("") + "/" + alert.areaDesc.value_or("");
    }
  }
  return told;
}

TEST(CapSamples, MeanWhatTheMapSays) {
  if (!test::sampleFiles("cap")) GTEST_SKIP() << "no samples are named";
  std::size_t seen = 0;
  for (std::string const folder : {"cap", "meteoalarm"}) {
    auto const files = test::sampleFiles(folder).value();
    for (auto const& file : files) {
      auto const known = kMeanings.find(file.filename().string());
      if (known == kMeanings.end()) continue;
      SCOPED_TRACE(known->first);
      ++seen;
      Meaning const& meaning = known->second;
      auto const document = parseCap(test::readFile(file));
      ASSERT_TRUE(document) << document.error();
      if (folder == "cap") {
        EXPECT_EQ(issuerCountry(*document), meaning.country);
      }
      CapMessage const message{std::make_shared<CapAlert const>(*document), {}, meaning.country, false, {}};
      for (Coordinate const place : meaning.inside) EXPECT_EQ(toldAt(place, message, meaning), meaning.told);
      for (Coordinate const place : meaning.outside) EXPECT_EQ(toldAt(place, message, meaning), "");
    }
  }
  EXPECT_EQ(seen, kMeanings.size());
}

}  // namespace
}  // namespace nimbara

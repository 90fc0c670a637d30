#include "feeds/alerts/events/cap_events.h"
#include "feeds/cap/cap_issuer.h"
#include "feeds/cap/cap_reader.h"
#include "support/instants.h"
#include "support/samples.h"

#include <gmock/gmock.h>

#include <map>

namespace nimbara {
namespace {

using test::at;

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
      told += where + alert.title + "/" + std::string(enumName(alert.kind)) + "/" +
              std::string(enumName(alert.severity)) + "/" + alert.colour.value_or("") + "/" +
              alert.issuer.value_or("") + "/" + alert.areaDesc.value_or("");
    }
  }
  return told;
}

TEST(CapSamples, MeanWhatTheMapSays) {
  if (!test::sampleFiles("cap")) GTEST_SKIP() << "no samples are named";
  std::size_t seen = 0;
  for (std::string const folder : {"meteoalarm"}) {
    for (auto const& file : test::sampleFiles(folder).value()) {
      auto const known = kMeanings.find(file.filename().string());
      if (known == kMeanings.end()) continue;
      SCOPED_TRACE(known->first);
      ++seen;
      Meaning const& meaning = known->second;
      auto const document = parseCap(test::readFile(file));
      ASSERT_TRUE(document) << document.error();
      if (folder == "cap") EXPECT_EQ(issuerCountry(*document), meaning.country);
      CapMessage const message{std::make_shared<CapAlert const>(*document), {}, meaning.country, false, {}};
      for (Coordinate const place : meaning.inside) EXPECT_EQ(toldAt(place, message, meaning), meaning.told);
      for (Coordinate const place : meaning.outside) EXPECT_EQ(toldAt(place, message, meaning), "");
    }
  }
  EXPECT_EQ(seen, kMeanings.size());
}

}  // namespace
}  // namespace nimbara

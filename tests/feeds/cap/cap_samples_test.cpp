#include "feeds/alerts/events/cap_events.h"
#include "feeds/cap/cap_reader.h"
#include "support/instants.h"
#include "support/samples.h"

#include <gmock/gmock.h>

#include <map>

namespace nimbara {
namespace {

using test::at;
using testing::IsEmpty;
using testing::SizeIs;

/// What a recorded message means at places of which the map says where they lie.
struct Meaning {
  std::string country;
  std::string now;
  std::vector<Coordinate> inside;
  std::vector<Coordinate> outside;
  std::string title;
  WarningKind kind = WarningKind::other;
  AlertSeverity severity = AlertSeverity::advisory;
  std::string colour;
  std::string issuer;
  std::string areas;
  bool isUnplaced = false;
  bool isCalledOff = false;
};

using enum WarningKind;
using enum AlertSeverity;

std::map<std::string, Meaning> const& meanings() {
  static std::map<std::string, Meaning> const kMeanings{
      {"israel.xml",
       {"IL",
        "2025-03-06T13:00:00Z",
        {{31.25, 34.79}, {32.08, 34.78}},
        {},
        "FLOOD",
        rain,
        warning,
        "yellow",
        "Israel Meteorological Service",
        "South Judea Desert  Dead Sea, North Eastern Negev, Northern Arava",
        true}},
      {"kazakhstan-en-2025-03-06.xml",
       {"KZ",
        "2025-03-06T13:40:00Z",
        {{48.5, 82.8}, {49.0, 82.5}},
        {{51.13, 71.43}, {49.9, 82.6}},
        "Freezing rain, icing",
        snow,
        advisory,
        "",
        "meteo.kz",
        "Kokpekti district (Abai oblysy)"}},
      {"macau-monsoon-allclear.xml",
       {"MO",
        "2025-04-12T23:00:00Z",
        {{22.19, 113.55}, {22.12, 113.60}},
        {{23.13, 113.26}},
        "STRONG MONSOON SIGNAL",
        wind,
        advisory,
        "",
        "Macao Meteorological and Geophysical Bureau",
        "Macao Special Administrative Region Administrative Area Map",
        false,
        true}},
      {"russia-2025-03-01.xml",
       {"RU",
        "2025-03-02T00:00:00Z",
        {{66.0, 179.5}, {67.0, -178.0}, {67.5, 180}, {67.5, -180}, {71.2, -179.0}},
        {{59.57, 150.80}, {70.3, 179.9}},
        "Ветер",
        wind,
        advisory,
        "",
        "mecom.ru",
        "Чукотский а.о."}},
      {"cap-ireland-small-craft-2025-04-14.xml",
       {"IE",
        "2025-04-14T10:00:00Z",
        {{53.35, -6.26}, {51.9, -8.47}},
        {},
        "Small Craft",
        wind,
        advisory,
        "yellow",
        "Met Éireann",
        "from Fair Head to Strangford Lough to Howth Head",
        true}},
      {"cap-serbia-polygon-2025-08-17.xml",
       {"RS",
        "2025-08-17T20:00:00Z",
        {{44.01, 20.91}, {44.3, 20.6}},
        {{42.55, 21.90}, {46.10, 19.67}},
        "Thunderstorm yellow",
        thunderstorm,
        advisory,
        "yellow",
        "RHMS Serbia",
        "Sumadija"}},
  };
  return kMeanings;
}

std::vector<std::filesystem::path> documents() {
  std::vector<std::filesystem::path> files;
  for (std::string const folder : {"cap", "meteoalarm"}) {
    for (auto const& file : test::sampleFiles(folder).value_or(std::vector<std::filesystem::path>())) {
      bool const isMessage = folder == "cap" || file.filename().string().starts_with("cap-");
      if (isMessage) files.push_back(file);
    }
  }
  return files;
}

GovSourceAnswer answerTo(CapMessage const& message, Meaning const& meaning, Coordinate place) {
  KnownEvents known;
  return capEvents({&message, 1}, {"wmo", place, meaning.country, "en", at(meaning.now)}, known);
}

void expectMeaning(CapMessage const& message, Meaning const& meaning) {
  for (Coordinate const place : meaning.inside) {
    auto const answer = answerTo(message, meaning, place);
    EXPECT_THAT(answer.alerts, SizeIs(meaning.isUnplaced || meaning.isCalledOff ? 0 : 1));
    EXPECT_THAT(answer.unplaced, SizeIs(meaning.isUnplaced ? 1 : 0));
    EXPECT_THAT(answer.calledOff, SizeIs(meaning.isCalledOff ? 1 : 0));
    for (auto const* const alerts : {&answer.alerts, &answer.unplaced, &answer.calledOff}) {
      for (WeatherAlert const& alert : *alerts) {
        EXPECT_EQ(alert.title, meaning.title);
        EXPECT_EQ(alert.kind, meaning.kind);
        EXPECT_EQ(alert.severity, meaning.severity);
        EXPECT_EQ(alert.colour.value_or(""), meaning.colour);
        EXPECT_EQ(alert.issuer.value_or(""), meaning.issuer);
        EXPECT_EQ(alert.areaDesc.value_or(""), meaning.areas);
        EXPECT_EQ(alert.distanceKm, std::nullopt);
      }
    }
  }
  for (Coordinate const place : meaning.outside) {
    auto const answer = answerTo(message, meaning, place);
    EXPECT_THAT(answer.alerts, IsEmpty());
    EXPECT_THAT(answer.unplaced, IsEmpty());
    EXPECT_THAT(answer.calledOff, IsEmpty());
  }
}

TEST(CapSamples, MeanWhatTheMapSays) {
  if (!test::sampleFiles("cap")) GTEST_SKIP() << "no samples are named";
  auto const files = documents();
  EXPECT_GE(files.size(), meanings().size());
  for (auto const& file : files) {
    SCOPED_TRACE(file.filename().string());
    auto document = parseCap(test::readFile(file));
    ASSERT_TRUE(document) << document.error();
    auto const known = meanings().find(file.filename().string());
    CapMessage message{std::make_shared<CapAlert const>(*document), {}, {}, false, {}};
    if (known == meanings().end()) {
      // Of a file that nobody has looked at so much is true: whatever is told of it has a name.
      for (CapInfo const& info : document->infos) {
        Instant const now = info.onset.value_or(document->sent.value_or(Instant{}));
        KnownEvents events;
        auto const answer = capEvents({&message, 1}, {"wmo", {10, 20}, "XX", "en", now}, events);
        for (WeatherAlert const& alert : answer.unplaced) EXPECT_FALSE(alert.title.empty());
      }
      continue;
    }
    message.country = known->second.country;
    expectMeaning(message, known->second);
  }
}

}  // namespace
}  // namespace nimbara

#include "demo/world/demo_scene.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

using namespace std::chrono_literals;
using Manner = SceneFeed::Manner;

constexpr SceneEntry kFinland[] = {
    {"FI034", "Uusimaa", "Yellow", "Wind", 6h, 30h},
    {"FI806", "Western Gulf of Finland", "Orange", "Coastalevent", 6h, 30h},
    {"FI043", "Ahvenanmaa", "Red", "Snow-ice", 6h, 30h},
};
constexpr SceneFeed kCoast[] = {{"finland", kFinland}};

constexpr SceneEntry kFrance[] = {{"FR070", "Nord", "Yellow", "Rain", 6h, 30h}};
constexpr SceneEntry kBelgium[] = {{"BE005", "Hainaut", "Orange", "Wind", 6h, 30h}};
constexpr SceneFeed kBorder[] = {{"france", kFrance}, {"belgium", kBelgium}};

constexpr SceneEntry kBritain[] = {
    {"", "Strathclyde | Grampian", "Orange", "Wind", 6h, 30h},
    {"", "Wales", "Yellow", "Rain", 6h, 30h},
};
constexpr SceneFeed kNames[] = {{"united-kingdom", kBritain}};

constexpr SceneEntry kCroatia[] = {
    {"HR951", "Velebit Channel North", "Red", "Wind", 6h, 30h},
    {"HR952", "Outer Islands", "Yellow", "Coastalevent", 6h, 30h},
};
constexpr SceneFeed kUnplaced[] = {{"croatia", kCroatia}};

constexpr SceneEntry kTwoPeriods[] = {
    {"DE202", "Stadt Berlin", "Yellow", "Wind", 6h, 12h},
    {"DE202", "Stadt Berlin", "Yellow", "Wind", 12h, 20h},
};
constexpr SceneFeed kConsecutive[] = {{"germany", kTwoPeriods}};

constexpr SceneEntry kOwnAndNear[] = {
    {"AT401", "Linz (Stadt)", "Yellow", "Wind", 10h, 15h},
    {"", "Innviertel", "Red", "Wind", 20h, 47h, "Alert", -48h, 72h,
     "48.2,13.5 48.4,13.5 48.4,13.82 48.2,13.82 48.2,13.5"},
};
constexpr SceneFeed kNear[] = {{"austria", kOwnAndNear}};

constexpr SceneEntry kUpdates[] = {
    {"NL011", "Noord-Holland", "Yellow", "Wind", 8h, 14h, "Alert", -12h, 6h},
    {"NL011", "Noord-Holland", "Yellow", "Wind", 9h, 14h, "Update", 6h, 10h},
    {"NL011", "Noord-Holland", "Orange", "Wind", 9h, 18h, "Update", 10h, 20h},
};
constexpr SceneFeed kMoved[] = {{"netherlands", kUpdates}};

constexpr SceneEntry kRecall[] = {
    {"PL1465", "Warszawa", "Orange", "Rain", 8h, 22h, "Alert", -12h, 12h},
    {"PL1465", "Warszawa", "Orange", "Rain", 8h, 22h, "Cancel", 12h, 24h},
};
constexpr SceneFeed kCancelled[] = {{"poland", kRecall}};

constexpr SceneEntry kTwoLanguages[] = {
    {"BE004", "Brabant", "Yellow", "Wind", 6h, 30h},
    {"BE004", "Brabant wallon et flamand", "Yellow", "Wind", 6h, 30h},
};
constexpr SceneFeed kBilingual[] = {{"belgium", kTwoLanguages}};

constexpr SceneFeed kRubbish[] = {{"germany", {}, Manner::html}};
constexpr SceneFeed kMissing[] = {{"germany", {}, Manner::missing}};
constexpr SceneFeed kHanging[] = {{"germany", {}, Manner::hangs}};
constexpr SceneEntry kSecond[] = {
    {"DE202", "Stadt Berlin", "Orange", "Wind", 6h, 30h},
    {"DE233", "Stadt Potsdam", "Red", "Rain", 6h, 30h},
};
constexpr SceneFeed kSecondFeed[] = {{"germany", kSecond, Manner::html, Manner::answers}};
constexpr SceneFeed kSecondInTime[] = {{"germany", kSecond, Manner::hangs, Manner::answers}};
constexpr SceneFeed kCalm[] = {{"germany", {}}};

constexpr SceneMessage kAirQuality[] = {
    {"urn:oid:demo.air.1", "Air Quality Alert", "Unknown", "Ozone is unhealthy for sensitive groups", -2h, 0h,
     26h},
    {"urn:oid:demo.frost.1", "Frost Advisory", "Minor", "Frost overnight", -2h, 0h, 26h},
};
constexpr SceneMessage kReissues[] = {
    {"urn:oid:demo.wind.1", "Wind Advisory", "Moderate", "Gusts to 50 mph", -6h, -4h, 26h},
    {"urn:oid:demo.wind.2", "Wind Advisory", "Moderate", "Gusts to 50 mph, now until tomorrow", 0h, -4h, 28h},
};

constexpr std::array kScenes = std::to_array<DemoScene>({
    {"coast",
     "60.17,24.94",
     "Helsinki: warnings for its land and sea regions and for Åland; the first two are listed",
     kCoast,
     {}},
    {"border",
     "50.70,3.21",
     "Wattrelos in France, 10 m from Belgium: only France's warning applies",
     kBorder,
     {}},
    {"names", "55.86,-4.25", "Glasgow: the feed has region names but no codes", kNames, {}},
    {"no-outlines", "45.33,14.44", "Rijeka: warnings for regions without a known outline", kUnplaced, {}},
    {"consecutive",
     "52.52,13.41",
     "Berlin: one wind warning in two consecutive periods: one event",
     kConsecutive,
     {}},
    {"near",
     "48.30,14.29",
     "Linz: its own yellow warning until 15:00, and a red one next door from 20:00",
     kNear,
     {}},
    {"moved",
     "52.37,4.90",
     "Amsterdam: the start changes at 6:00, the level rises and the end changes at 10:00 (UTC)",
     kMoved,
     {}},
    {"cancelled", "52.23,21.01", "Warsaw: a warning cancelled at 12:00 (UTC)", kCancelled, {}},
    {"bilingual", "50.85,4.35", "Brussels: one region in two languages: one area", kBilingual, {}},
    {"calm", "52.52,13.41", "Berlin: the feed responds without warnings", kCalm, {}},
    {"rubbish", "52.52,13.41", "Berlin: both feeds return 200 with an HTML page: not checked", kRubbish, {}},
    {"missing", "52.52,13.41", "Berlin: neither feed is found: not checked", kMissing, {}},
    {"hanging", "52.52,13.41", "Berlin: the feeds never respond; other countries' feeds do", kHanging, {}},
    {"second-feed",
     "52.52,13.41",
     "Berlin: the feed returns an HTML page; the country's second feed has the warning",
     kSecondFeed,
     {}},
    {"second-in-time",
     "52.52,13.41",
     "Berlin: the feed never responds; the second feed does, within the time limit",
     kSecondInTime,
     {}},
    {"uncovered", "12.11,15.04", "N'Djamena: no known service issues warnings", {}, {}},
    {"unknown-level",
     "39.74,-104.98",
     "Denver: an alert without a stated severity, above a minor one",
     {},
     kAirQuality},
    {"reissued",
     "39.74,-104.98",
     "Denver: one event issued twice without a reference: one entry, the newest",
     {},
     kReissues},
    {"world",
     "-1.28,36.82",
     "Nairobi, and one saved place in each of 40 countries: some have warnings, some none, one cannot be "
     "checked, three have no source",
     {},
     {},
     true},
    {.name = "model",
     .place = "52.52,13.41",
     .explanation =
         "Berlin: a language model words the brief; with --fail languageModel=invents it adds a number",
     .feeds = {},
     .messages = {},
     .hasModel = true},
});

}  // namespace

std::span<DemoScene const> demoScenes() {
  return kScenes;
}

DemoScene const* findDemoScene(std::string_view name) {
  auto const scenes = demoScenes();
  auto const found = std::ranges::find(scenes, name, &DemoScene::name);
  return found == scenes.end() ? nullptr : &*found;
}

}  // namespace nimbara

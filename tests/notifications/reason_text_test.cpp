#include "notifications/log/reason_text.h"

#include "base/files/file.h"
#include "support/paths.h"
#include "support/rules.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

namespace nimbara {
namespace {

using test::englishTexts;

/// A value that a rule measures, once as it is sent and once as it is not.
struct Measure {
  char const* what;
  double told;
  double silent;
  char const* needs;
  double limit;
  char const* unit;
};

constexpr Measure kMeasures[] = {
    {"temperatureDrop", 10, -2, "atLeast", 8, "°C"},
    {"temperatureRise", 10.4, 3, "atLeast", 8, "°C"},
    {"wind", 72.4, 59.6, "atLeast", 60, "km/h"},
    {"uvIndex", 9, 2, "atLeast", 8, ""},
    {"severeAlerts", 1, 0, "atLeast", 1, ""},
    {"thunderChance", 60, 20, "atLeast", 50, "%"},
    {"tornadoMessages", 2, 0, "atLeast", 1, ""},
    {"tornadoSetup", 1, 0, "atLeast", 1, ""},
    {"floodMessages", 1, 0, "atLeast", 1, ""},
    {"thunderstormMessages", 1, 0, "atLeast", 1, ""},
    {"rainChance", 20, 70, "below", 30, "%"},
    {"snowChance", 70, 20, "atLeast", 50, "%"},
    {"hourlyRain", 6, 0, "atLeast", 4, "mm"},
    {"hourlySnow", 2.25, 0.4, "atLeast", 1, "mm"},
    {"rainTotal", 31, 12.3, "atLeast", 25, "mm"},
    {"beachHours", 4, 1, "atLeast", 3, ""},
    {"warningLevel", 2, 0, "atLeast", 1, ""},
    {"magnitudeNear", 5.2, 0, "atLeast", 4, ""},
    {"warnings", 1, 0, "atLeast", 1, ""},
    {"firesNear", 1, 0, "atLeast", 1, ""},
    {"fireDistance", 12.4, 312, "atMost", 50, "km"},
    {"strikesNear", 3, 0, "atLeast", 1, ""},
    {"strikeDistance", 7.9, 21, "atMost", 20, "km"},
    {"advisoryLevel", 4, 1, "atLeast", 2, ""},
    {"storms", 1, 0, "atLeast", 1, ""},
    {"trackDistance", 240, 900, "atMost", 500, "km"},
    {"pm25", 40.2, 34.8, "atLeast", 35, "µg/m³"},
    {"temperature", 2, 8, "atMost", 5, "°C"},
    {"feelsLike", 20, 31, "atMost", 28, "°C"},
    {"low", -3, 4, "atMost", 2, "°C"},
    {"nearFreezing", 1, 6, "atMost", 2, "°C"},
    {"feltColder", 7, -1, "atLeast", 5, "°C"},
    {"feltHotter", 6, 0, "atLeast", 5, "°C"},
    {"humidity", 90, 60, "atLeast", 85, "%"},
    {"dewPointSpread", 1.5, 6, "atMost", 3, "°C"},
    {"cloudCover", 10, 60, "below", 20, "%"},
    {"windSpeed", 5, 25, "below", 10, "km/h"},
    {"windGust", 10, 45, "below", 20, "km/h"},
    {"chanceOfRain", 10, 60, "below", 20, "%"},
    {"chanceOfFog", 80, 10, "atLeast", 60, "%"},
    {"recentRain", 1.2, 0, "atLeast", 0.5, "mm"},
    {"pressure", 1022.4, 1003, "atLeast", 1015, "hPa"},
    {"pressureFall", 8, 2.5, "atLeast", 6, "hPa"},
    {"kp", 5.33, 2, "atLeast", 0, ""},
    {"latitude", 61.2, 38.7, "atLeast", 58, "°"},
    {"sunAltitude", -20, -3, "below", -12, "°"},
    {"moonIllumination", 10, 90, "below", 70, "%"},
    {"idealHours", 5, 0, "atLeast", 3, ""},
};

LoggedNotification lineOf(RuleOutcome outcome, std::vector<LoggedMeasurement> measured = {},
                          std::string note = {}) {
  LoggedNotification line;
  line.outcome = enumName(outcome);
  line.measured = std::move(measured);
  line.note = std::move(note);
  return line;
}

LoggedMeasurement measured(Measure const& measure, double value) {
  return {measure.what, value, measure.needs, measure.limit, measure.unit};
}

std::set<std::string> endingsOf(std::string_view stem) {
  std::set<std::string> endings;
  for (auto const& [key, text] : englishTexts().table()) {
    if (key.starts_with(stem)) endings.insert(key.substr(stem.size()));
  }
  return endings;
}

/// All reasons there are, in a language and in units.
std::string everyReason(Texts const& texts, Units const& units) {
  std::string all;
  auto const add = [&](std::string_view name, LoggedNotification const& line) {
    all += std::string(name) + ": " + reasonText(line, units, texts) + "\n";
  };
  for (std::string_view const name : enumNames<RuleOutcome>)
    add(name, lineOf(*enumFromName<RuleOutcome>(name)));
  for (std::string const& note : endingsOf("explain.note."))
    add(note, lineOf(RuleOutcome::unknown, {}, note));
  for (Measure const& one : kMeasures) {
    add(one.what, lineOf(RuleOutcome::announced, {measured(one, one.told)}));
    add(one.what, lineOf(RuleOutcome::conditionFalse, {measured(one, one.silent)}));
  }
  return all;
}

/// NIMBARA_UPDATE_SNAPSHOTS=1 writes what is said now; the change is then read in the diff.
void expectReference(std::string const& name, std::string const& text) {
  auto const folder = std::filesystem::path(test::kFixtures) / "notifications";
  auto const file = folder / (name + ".txt");
  if (std::getenv("NIMBARA_UPDATE_SNAPSHOTS") != nullptr) {
    std::filesystem::create_directories(folder);
    std::ofstream(file, std::ios::binary) << text;
  }
  EXPECT_EQ(text, readFile(file, 1 << 20).value_or("")) << name;
}

TEST(ReasonText, IsASentence) {
  expectReference("reasons-en", everyReason(englishTexts(), Units::metric()));
  expectReference("reasons-imperial", everyReason(englishTexts(), Units::imperial()));
}

TEST(ReasonText, HasARowForEveryMeasure) {
  std::set<std::string> shown;
  for (Measure const& one : kMeasures) shown.insert(one.what);
  EXPECT_EQ(shown, endingsOf("explain.measure."));
  for (std::string const& none : endingsOf("explain.none.")) EXPECT_TRUE(shown.contains(none)) << none;
}

TEST(ReasonText, HasASentenceForEveryOutcome) {
  std::set<std::string> const sentences = endingsOf("explain.outcome.");
  EXPECT_EQ(sentences, (std::set<std::string>(enumNames<RuleOutcome>.begin(), enumNames<RuleOutcome>.end())));
}

struct Reason {
  LoggedNotification line;
  char const* text;
};

LoggedMeasurement height(double degrees, char const* needs, double limit) {
  return {"sunAltitude", degrees, needs, limit, "°"};
}

LoggedNotification failed(int status) {
  LoggedNotification line = lineOf(RuleOutcome::unknown);
  line.failure = InputFailure{RuleInput::earthquakes, "", ServiceFailure::answered(status)};
  return line;
}

TEST(ReasonText, SaysWhatDecided) {
  LoggedMeasurement const warm{"temperature", 8, "atMost", 5, "°C"};
  LoggedMeasurement const damp{"humidity", 90, "atLeast", 85, "%"};
  using enum RuleOutcome;
  for (Reason const& row : {
           Reason{lineOf(conditionFalse, {warm, damp}), "Not sent. Temperature: 8 °C (maximum: 5 °C)."},
           {lineOf(conditionFalse, {damp}, "wet"), "Not sent. Too wet."},
           {lineOf(announced, {height(20, "above", 0), height(20, "below", 42)}),
            "Sent. Height of the sun: 20° (must be between 0° and 42°)."},
           {lineOf(announced, {height(20, "below", 42), height(20, "above", 0)}),
            "Sent. Height of the sun: 20° (must be between 0° and 42°)."},
           {lineOf(conditionFalse, {height(50, "above", 0), height(50, "below", 42)}),
            "Not sent. Height of the sun: 50° (must be below 42°)."},
           {lineOf(conditionFalse,
                   {{"storms", 2, "atLeast", 1, ""},
                    {"trackDistance", 900, "atMost", 500, "km"},
                    {"trackDistance", 700, "atMost", 500, "km"}},
                   "stormsUnchanged"),
            "Not sent. Closest forecast track of a tropical cyclone: 700 km away (maximum: 500 km). No "
            "change in the tropical cyclones."},
           {lineOf(conditionFalse, {{"strikesNear", 0, "atLeast", 1, ""}}, "noStrikes"),
            "Not sent. No lightning nearby in the last half hour."},
           {failed(503),
            "Could not be checked. Could not fetch the earthquake list: the service returned an error (HTTP "
            "503)."},
           // As former versions wrote it.
           {lineOf(unknown, {}, "the service returned status 503"),
            "Could not be checked. The service returned status 503."},
           {lineOf(refused, {}, "No such service!"),
            "The desktop did not accept it. Retrying automatically. No such service!"},
       }) {
    EXPECT_EQ(reasonText(row.line, Units::metric(), englishTexts()), row.text);
  }
}

TEST(ReasonText, SaysOfAPreviewWhatWouldBecomeOfIt) {
  using enum RuleOutcome;
  struct Preview {
    RuleOutcome outcome;
    std::string_view text;
  };
  for (Preview const& row :
       {Preview{announced, "Would be sent."}, Preview{listed, "Would be delivered silently."},
        Preview{scheduled, "Would be scheduled."}, Preview{muted, "Held back: muted."},
        Preview{alreadyDelivered, "Already sent."}}) {
    EXPECT_EQ(reasonText(lineOf(row.outcome), Units::metric(), englishTexts(), ReasonTense::preview),
              row.text);
  }
}

TEST(ReasonText, TellsAValueFromItsLimit) {
  for (auto const& [value, shown] :
       {std::pair(59.6, "59.6 km/h"), {59.98, "59.98 km/h"}, {59.4, "59 km/h"}}) {
    std::string const text =
        reasonText(lineOf(RuleOutcome::conditionFalse, {{"wind", value, "atLeast", 60, "km/h"}}),
                   Units::metric(), englishTexts());
    EXPECT_NE(text.find(std::string("gust: ") + shown), std::string::npos) << text;
  }
}

TEST(ReasonText, OfALogOfAnotherVersionIsReadAsItIs) {
  LoggedNotification line;
  line.outcome = "postponed";
  line.measured = {{"pollen", 12, "atLeast", 10, "grains"}};
  EXPECT_EQ(reasonText(line, Units::metric(), englishTexts()),
            "Postponed. pollen 12 grains (minimum: 10 grains).");
}

}  // namespace
}  // namespace nimbara

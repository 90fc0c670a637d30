// What the program says of a forecast, of failures and of the sources of warnings, and what a brief is made
// of.
#include "app/settings/settings_registry.h"
#include "app/words/brief/spoken_text.h"
#include "app/words/brief/tip_inputs.h"
#include "app/words/brief/worded_brief.h"
#include "app/words/confidence_text.h"
#include "app/words/coverage_text.h"
#include "app/words/failure_text.h"
#include "feeds/fetching/failure_words.h"
#include "support/instants.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using enum ConfidenceLevel;

struct HeardRow {
  std::string language;
  std::string written;
  std::string heard;
};

TEST(SpokenText, SaysUnitsInWords) {
  for (HeardRow const& row :
       {HeardRow{"en", "Clear, -4 °C, feels like -8 °C.",
                 "Clear, minus 4 degrees, feels like minus 8 degrees."},
        {"en", "1 mm, 6.5 mm, 14-19 km/h.", "1 millimetre, 6.5 millimetres, 14-19 kilometres per hour."},
        {"en", "Rain from 14:00 until 7 PM, 80%.", "Rain from 14:00 until 7 PM, 80 percent."},
        {"en", "UV index up to 6 in the sun, 5\u00A0mph.", "UV index up to 6 in the sun, 5 miles per hour."},
        {"en", "Usual for mid-November (1991–2020).", "Usual for mid-November (1991–2020)."},
        {"de", "Höchstwert -1 °C, Böen bis 50 km/h.",
         "Höchstwert minus 1 Grad, Böen bis 50 Kilometer pro Stunde."},
        {"pl", "1 °C, 3 °C, 5 °C", "1 stopień, 3 stopnie, 5 stopni"},
        {"es", "Mínima -2 °C", "Mínima 2 grados bajo cero"},
        {"ja", "最高15 °C、風速50 km/h", "最高15度、風速時速50キロ"}}) {
    EXPECT_EQ(spokenText(row.written, Units::metric(), Texts::load(row.language)), row.heard) << row.written;
  }
  EXPECT_EQ(spokenText("About 3 in, 59 °F.", Units::imperial(), Texts::load("en")),
            "About 3 inches, 59 degrees.");
}

TEST(SpokenText, IsWholeInEveryLanguage) {
  for (Texts::Language const& language : Texts::languages()) {
    std::string const heard = spokenText("-1 °C 2 °F 1° 3 km/h 4 km 5 mph 6 m/s 7 mm 8 cm 9 in 10 %",
                                         Units::imperial(), Texts::load(language.code));
    EXPECT_THAT(heard, testing::Not(testing::ContainsRegex("spoken\\.|°|%"))) << language.code;
  }
}

struct FailureRow {
  APIError error;
  char const* english;
  char const* portuguese;
};

TEST(FailureText, SaysInTheUsersLanguageWhatHappened) {
  using Case = APIError::Case;
  using Kind = HttpError::Kind;
  Texts const english = Texts::load("en");
  Texts const portuguese = Texts::load("pt");
  for (FailureRow const& row :
       {FailureRow{APIError::network({Kind::unresolvedHost, "could not resolve host x"}),
                   "the server could not be found", "o servidor não foi encontrado"},
        {APIError::network({Kind::timedOut, "no answer in 15 s"}), "the service took too long to respond",
         "o serviço demorou demasiado a responder"},
        {APIError::network({Kind::protocol, "the key is away"}), "the request failed: the key is away",
         "o pedido falhou: the key is away"},
        {APIError::refusal(), "every forecast service failed a few minutes ago",
         "todos os serviços de previsão falharam há poucos minutos"},
        {APIError::http(503), "the service returned an error (HTTP 503)",
         "o serviço devolveu um erro (HTTP 503)"},
        {APIError::http(400, "no such place"), "the service returned an error (HTTP 400: no such place)",
         "o serviço devolveu um erro (HTTP 400: no such place)"},
        {APIError::http(429, "slow down"), "the service's rate limit was reached",
         "o limite de pedidos do serviço foi atingido"},
        {APIError::of(Case::decodingError), "the response could not be read",
         "não foi possível ler a resposta"},
        {{Case::networkError, 0, "WeatherKit is not configured", {}, {}},
         "WeatherKit is not configured",
         "WeatherKit is not configured"}}) {
    EXPECT_EQ(failureText(row.error, english), row.english);
    EXPECT_EQ(failureText(row.error, portuguese), row.portuguese);
  }
}

TEST(FailureText, HasWordsForEveryFailure) {
  for (auto const& [language, name] : Texts::languages()) {
    Texts const texts = Texts::load(language);
    for (std::string_view const kind : enumNames<HttpError::Kind>) {
      EXPECT_TRUE(texts.translates("failure." + std::string(kind))) << language << " " << kind;
    }
  }
}

std::vector<DayConfidence> someDays() {
  Date const saturday = std::chrono::year{2026} / 11 / 21;
  auto const day = [&](int ahead, ConfidenceLevel level) {
    return DayConfidence{Date(std::chrono::sys_days(saturday) + std::chrono::days(ahead)), ahead, level};
  };
  std::vector<DayConfidence> days{day(0, high), day(1, high), day(2, low), day(4, medium)};
  days[2].highestC = -6.2;
  days[2].precipMM = 12;
  days[3].isForTime = true;
  return days;
}

ConfidenceText textOf(std::string_view language, std::vector<DayConfidence> const& days) {
  Texts const texts = Texts::load(language);
  return confidenceText(days, WeatherProviderOption::yrNo,
                        {texts, Units::metric(), Calendar::utc(), test::at("2026-11-21T09:00:00Z")});
}

TEST(ConfidenceText, GivesTheFigures) {
  ConfidenceText const text = textOf("en", someDays());
  EXPECT_THAT(text.days, ElementsAre("Today: high", "Sunday: high",
                                     "Monday: low (highs 6° apart, precipitation 12.0 mm apart)",
                                     "Wednesday: medium (many days ahead)"));
  EXPECT_EQ(text.line,
            "Confidence in the forecast – Today to Sunday: high  ·  Monday: low  ·  Wednesday: medium");
  EXPECT_EQ(text.note, "Compared with the forecast from MET Norway.");
}

TEST(ConfidenceText, SaysWhereNothingIsKnown) {
  for (Texts::Language const& language : Texts::languages()) {
    ConfidenceText const none = textOf(language.code, {});
    EXPECT_TRUE(none.days.empty() && none.note.empty()) << language.code;
    EXPECT_THAT(none.line + textOf(language.code, someDays()).line, Not(HasSubstr("confidence.")))
        << language.code;
  }
}

Instant const kNow = at("2026-11-21T14:40:00Z");

SourceCoverage coverageOf(CoverageState state, std::size_t count = 0) {
  SourceCoverage coverage;
  coverage.service = "MeteoAlarm";
  coverage.country = "HR";
  coverage.state = state;
  coverage.count = count;
  coverage.checkedAt = at("2026-11-21T14:20:00Z");
  return coverage;
}

std::string textOf(SourceCoverage const& coverage, char const* language = "en") {
  return coverageText(coverage, Texts::load(language), Calendar::utc(), kNow);
}

TEST(CoverageText, SaysEachStateInItsOwnWords) {
  EXPECT_EQ(textOf(coverageOf(CoverageState::none)), "No official warnings, checked 2:20 PM");
  EXPECT_EQ(textOf(coverageOf(CoverageState::warnings, 1)), "One official warning, checked 2:20 PM");
  EXPECT_EQ(textOf(coverageOf(CoverageState::warnings, 2)), "2 official warnings, checked 2:20 PM");
  SourceCoverage unplaced = coverageOf(CoverageState::unplaced, 2);
  unplaced.areas = {"Kvarner", "Split"};
  EXPECT_EQ(textOf(unplaced),
            "Official warnings in effect for parts of Croatia that could not be located, checked 2:20 PM: "
            "Kvarner, Split");
  unplaced.countryWide = {"Flood (red)"};
  EXPECT_EQ(
      textOf(unplaced),
      "Official warnings in effect for the whole country (Croatia) or for parts of it that could not be "
      "located, checked 2:20 PM: Flood (red), Kvarner, Split");
  EXPECT_TRUE(textOf(unplaced, "de").ends_with(": Flood (rot), Kvarner, Split"));
  unplaced.areas.clear();
  EXPECT_EQ(textOf(unplaced),
            "Official warnings in effect for the whole country (Croatia), checked 2:20 PM: Flood (red)");
  EXPECT_EQ(textOf(coverageOf(CoverageState::uncovered)), "No source of official warnings for Croatia");
  SourceCoverage sea = coverageOf(CoverageState::uncovered);
  sea.country.clear();
  EXPECT_EQ(textOf(sea), "No known source of official warnings for these waters");
}

TEST(CoverageText, SaysSinceWhenAndWhyNothingIsKnown) {
  SourceCoverage failed = coverageOf(CoverageState::unchecked);
  failed.since = at("2026-11-21T13:05:00Z");
  failed.reason = ServiceFailure::answered(503);
  EXPECT_EQ(textOf(failed),
            "Official warnings could not be checked since 1:05 PM: the service returned an error (HTTP 503)");
  failed.reason = ServiceFailure::of(ServiceFailure::Kind::notAskedLately);
  EXPECT_EQ(textOf(failed), "Official warnings could not be checked since 1:05 PM: no check was requested");
  failed.alsoAsked = "fpas";
  EXPECT_TRUE(textOf(failed).ends_with(". FOSS Public Alert Server has no warnings from this country"));
  failed.alsoReason = ServiceFailure::answered(404);
  EXPECT_TRUE(textOf(failed).ends_with(". FOSS Public Alert Server was unavailable, too: " +
                                       failureText(*failed.alsoReason, Texts::load("en"))));
  failed.count = 1;
  EXPECT_TRUE(textOf(failed).ends_with(". One known warning is still in effect"));
  failed.since.reset();
  EXPECT_EQ(textOf(failed), "Official warnings could not be checked");
}

TEST(CoverageText, SaysWhoAnsweredBecauseAnotherWasUnavailable) {
  SourceCoverage second = coverageOf(CoverageState::none);
  second.service = "FOSS Public Alert Server";
  second.insteadOf = "wmo";
  second.insteadReason = ServiceFailure::answered(503);
  EXPECT_EQ(
      textOf(second),
      "No official warnings, checked 2:20 PM. Checked through FOSS Public Alert Server because WMO Severe "
      "Weather Information Centre was unavailable: the service returned an error (HTTP 503)");
  auto const aged = agedCoverage({second}, kNow + std::chrono::hours(2));
  EXPECT_EQ(textOf(aged[0]), "Official warnings could not be checked since 2:20 PM: no check was requested");
}

TEST(CoverageText, NamesTheColourInTheReadersLanguage) {
  SourceCoverage unplaced = coverageOf(CoverageState::unplaced, 2);
  unplaced.areas = {"Kvarner (Windwarnung, red)", "Split (Regenwarnung)"};
  EXPECT_TRUE(textOf(unplaced, "de").ends_with("Kvarner (Windwarnung, rot), Split (Regenwarnung)"));
  EXPECT_TRUE(textOf(unplaced, "en").ends_with("Kvarner (Windwarnung, red), Split (Regenwarnung)"));
}

TEST(CoverageText, CutsAListOfHundredsOfAreas) {
  SourceCoverage unplaced = coverageOf(CoverageState::unplaced);
  for (int i = 0; i < 13; ++i) unplaced.areas.push_back("A" + std::to_string(i));
  EXPECT_TRUE(textOf(unplaced).ends_with("A11, …"));
  unplaced.areas.pop_back();
  EXPECT_TRUE(textOf(unplaced).ends_with("A11"));
}

TEST(CoverageText, NamesTheServiceWhereThereAreSeveral) {
  Texts const texts = Texts::load("en");
  auto const one = coverageOf(CoverageState::none);
  EXPECT_EQ(coverageLines({one}, texts, Calendar::utc(), kNow).front(),
            "No official warnings, checked 2:20 PM");
  EXPECT_EQ(coverageLines({one, one}, texts, Calendar::utc(), kNow).front(),
            "MeteoAlarm: No official warnings, checked 2:20 PM");
}

class FakeModel final : public LanguageModel {
 public:
  explicit FakeModel(Result<std::string, std::string> answer) : answer_(std::move(answer)) {}
  Result<std::string, std::string> reply(std::string const& prompt, std::stop_token const&) override {
    asked = prompt;
    return answer_;
  }

  std::string asked;

 private:
  Result<std::string, std::string> answer_;
};

TEST(WordedBrief, IsShownOnlyWhereEveryNumberIsAFact) {
  std::string const facts = "Today: Light rain from 14:00 to 17:00, about 6 mm, high 12 °C.";
  struct Row {
    std::string what;
    Result<std::string, std::string> reply;
    std::optional<std::string> shown;
  };
  for (Row const& row :
       {Row{"the facts", "Rain from 14:00 to 17:00, 6 mm, then 12 °C.",
            "Rain from 14:00 to 17:00, 6 mm, then 12 °C."},
        {"an invented temperature", "Rain from 14:00 to 17:00 and 13 °C.", std::nullopt},
        {"an invented minus", "Down to -6 °C.", std::nullopt},
        {"a fence", "```\nRain until 17:00.\n```", "Rain until 17:00."},
        {"too much", "It rains." + std::string(200, ' ') + std::string(200, 'x') + ".", std::nullopt},
        {"nothing", "", std::nullopt},
        {"a failure", std::unexpected("timed out"), std::nullopt}}) {
    FakeModel model(row.reply);
    EXPECT_EQ(wordedBrief(facts, Texts::load("en"), model), row.shown) << row.what;
  }
}

TEST(WordedBrief, AsksInTheUsersLanguageWithAllFacts) {
  FakeModel model("Dry.");
  wordedBrief("Heute: Trocken.", Texts::load("de"), model);
  EXPECT_THAT(model.asked,
              testing::AllOf(HasSubstr("Answer in Deutsch."), HasSubstr("\n\nHeute: Trocken.\n")));
  FakeModel unasked("Dry.");
  EXPECT_EQ(wordedBrief("", Texts::load("en"), unasked), std::nullopt);
  EXPECT_EQ(unasked.asked, "");
}

TEST(TipInputs, AreWhatTheUserMinds) {
  EXPECT_EQ(tipPreferences(Settings(settingsRegistry())), TipPreferences{});
  Settings const chosen(settingsRegistry(),
                        {{"advice_heat", std::string("low")}, {"advice_pollen", std::string("high")}});
  EXPECT_EQ(tipPreferences(chosen), (TipPreferences{.heat = Sensitivity::low, .pollen = Sensitivity::high}));
}

struct PollenRow {
  std::optional<double> grains;
  std::optional<double> level;
};

TEST(TipInputs, CountPollenInSteps) {
  for (PollenRow const& row :
       {PollenRow{{}, {}}, {0.9, 0}, {1, 1}, {9.9, 1}, {10, 2}, {49.9, 2}, {50, 3}, {99.9, 3}, {100, 4}}) {
    AirQualityForecast forecast;
    forecast.hours.resize(1);
    forecast.hours[0].levels.pollen[2] = row.grains;
    EXPECT_EQ(tipAir(forecast, {52, 13}).front().pollen, row.level) << row.grains.value_or(-1);
  }
}

/// In either scale the best band is 1.
TEST(TipInputs, CountTheBandsOfTheAir) {
  for (auto const& [index, place, level] : {std::tuple{50.0, Coordinate{40, -100}, 1.0},
                                            {51.0, Coordinate{40, -100}, 2.0},
                                            {301.0, Coordinate{40, -100}, 6.0}}) {
    AirQualityForecast forecast;
    forecast.hours.resize(2);
    forecast.hours[1].levels.usAqi = index;
    auto const air = tipAir(forecast, place);
    EXPECT_EQ(air[0].air, std::nullopt) << "not known";
    EXPECT_EQ(air[1].air, level);
  }
}

}  // namespace
}  // namespace nimbara

#include "analysis/precip_predictor.h"

#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using std::chrono::minutes;
using test::at;

Instant const kStart = at("2026-11-21T14:00:00Z");

/// A letter a step from two o'clock on: "." dry, "r" rain, "e" sleet, "s" snow, "w" wet, "?" without a value,
/// "_" no step at all.
Nowcast nowcastOf(int stepMinutes, std::string_view letters) {
  Nowcast nowcast{"metNorway", NowcastKind::radar, kStart, {}};
  Instant from = kStart;
  for (char const letter : letters) {
    Instant const to = from + minutes(stepMinutes);
    NowcastStep step{from, to, 0.0, Fall::unknown};
    if (letter == '?') step.mmPerHour.reset();
    if (std::string_view("resw").contains(letter)) step.mmPerHour = 1.2;
    step.fall = letter == 'r'   ? Fall::rain
                : letter == 'e' ? Fall::sleet
                : letter == 's' ? Fall::snow
                                : Fall();
    if (letter != '_') nowcast.steps.push_back(step);
    from = to;
  }
  return nowcast;
}

struct Row {
  int step;
  std::string_view letters;
  int now;  ///< minutes after two o'clock
  std::string_view sentence;
};

constexpr std::string_view kNotKnown = "It is not known whether it will rain within the next two hours";

constexpr Row kRows[] = {
    // Dry: whole steps, rounded down, two hours at most.
    {5, "........................", 0, "Dry for at least two hours"},
    {5, ".......................", 0, "Dry for almost two hours"},
    {5, "........................", 1, "Dry for almost two hours"},
    {5, "........................", 4, "Dry for almost two hours"},
    {5, "........................", 5, "Dry for almost two hours"},
    {5, "........................", 6, "Dry for almost two hours"},
    {5, "..............................", 0, "Dry for at least two hours"},
    {5, "............", 0, "Dry for at least one hour"},
    {5, ".............", 0, "Dry for at least 65 minutes"},
    {5, ".............", 5, "Dry for at least one hour"},
    {5, ".", 0, "Dry for at least 5 minutes"},
    {5, ".", 1, kNotKnown},
    {15, "........", 0, "Dry for at least two hours"},
    {15, ".........", 7, "Dry for at least two hours"},
    {15, "........", 7, "Dry for almost two hours"},
    {15, "........", 15, "Dry for almost two hours"},
    // Nothing is known.
    {5, "", 0, kNotKnown},
    {5, "......", 30, kNotKnown},
    {5, "......", 90, kNotKnown},
    {5, "rrrr", 20, kNotKnown},
    {5, "????????", 0, kNotKnown},
    {5, "??..........", 0, kNotKnown},
    {5, "__..........", 0, kNotKnown},
    {5, "??rrrr......", 0, kNotKnown},
    {15, "?.......", 0, kNotKnown},
    // Holes: short ones are passed over, long ones end what is known.
    {5, "?...........", 0, "Dry for at least one hour"},
    {5, "_...........", 1, "Dry for at least 55 minutes"},
    {5, "....?.......", 0, "Dry for at least one hour"},
    {5, "...._.......", 0, "Dry for at least one hour"},
    {5, "....??......", 0, "Dry for at least 20 minutes"},
    {5, "....__......", 0, "Dry for at least 20 minutes"},
    {5, "....?_......", 0, "Dry for at least 20 minutes"},
    {5, "....??rrr...", 0, "Dry for at least 20 minutes"},
    {5, "....?rrr....", 0, "Rain starting around 14:25, for about 15 minutes"},
    {5, "..........?", 0, "Dry for at least 50 minutes"},
    {15, "..?.....", 0, "Dry for at least 30 minutes"},
    // It begins.
    {5, ".......rrrrrrrr.........", 0, "Rain starting around 14:35, for about 40 minutes"},
    {5, ".......rrrrrrrr.........", 12, "Rain starting around 14:35, for about 40 minutes"},
    {5, ".......rrrrrrrr.........", 34, "Rain starting around 14:35, for about 40 minutes"},
    {5, ".r......................", 0, "Rain starting around 14:05, for about 5 minutes"},
    {5, "....................rrrr", 0, "Rain starting around 15:40, until at least 16:00"},
    {5, ".......................r", 0, "Rain starting around 15:55, until at least 16:00"},
    {5, ".....rrrr??.............", 0, "Rain starting around 14:25, until at least 14:45"},
    {5, ".....rrrr?..............", 0, "Rain starting around 14:25, until at least 14:45"},
    {5, ".....rrrr_..............", 0, "Rain starting around 14:25, until at least 14:45"},
    {15, "..rr....", 3, "Rain starting around 14:30, for about 30 minutes"},
    {15, ".......r", 3, "Rain starting around 15:45, until at least 16:00"},
    // It falls already.
    {5, "rrrr....", 0, "Rain until around 14:20"},
    {5, "rrrr....", 19, "Rain until around 14:20"},
    {5, "?rrr....", 0, "Rain until around 14:20"},
    {5, "rrrrrrrr", 0, "Rain until at least 14:40"},
    {5, "rrrr?...", 0, "Rain until at least 14:20"},
    {5, "rrrrrrr.", 0, "Rain until around 14:35"},
    {5, ".......rrrrrrrr.........", 35, "Rain until around 15:15"},
    {15, "rr......", 7, "Rain until around 14:30"},
    {15, "rrrrrrrr", 7, "Rain until at least 16:00"},
    // Pauses of less than ten minutes are closed.
    {5, "...rr.rr....", 0, "Rain starting around 14:15, for about 25 minutes"},
    {5, "...rr..rr...", 0, "Rain starting around 14:15, for about 10 minutes"},
    {5, "...rr?rr....", 0, "Rain starting around 14:15, for about 25 minutes"},
    {5, "...rr_rr....", 0, "Rain starting around 14:15, for about 25 minutes"},
    {5, "...r.r.r.r..", 0, "Rain starting around 14:15, for about 35 minutes"},
    {5, "rr.rr.......", 0, "Rain until around 14:25"},
    {5, "rr..rr......", 0, "Rain until around 14:10"},
    {5, "r..r.r......", 0, "Rain until around 14:05"},
    {15, "r.r.....", 0, "Rain until around 14:15"},
    {5, "rrr.r", 0, "Rain until at least 14:25"},
    // What falls.
    {5, "..ssss......", 0, "Snow starting around 14:10, for about 20 minutes"},
    {5, "..ss", 0, "Snow starting around 14:10, until at least 14:20"},
    {5, "ssss....", 0, "Snow until around 14:20"},
    {5, "ssss", 0, "Snow until at least 14:20"},
    {5, "..eeee......", 0, "Sleet starting around 14:10, for about 20 minutes"},
    {5, "ee......", 0, "Sleet until around 14:10"},
    {5, "..wwww......", 0, "Precipitation starting around 14:10, for about 20 minutes"},
    {5, "..ww", 0, "Precipitation starting around 14:10, until at least 14:20"},
    {5, "ww......", 0, "Precipitation until around 14:10"},
    {5, "ww", 0, "Precipitation until at least 14:10"},
    {5, "..rrss......", 0, "Sleet starting around 14:10, for about 20 minutes"},
    {5, "..ssrr......", 0, "Sleet starting around 14:10, for about 20 minutes"},
    {5, "..rree......", 0, "Sleet starting around 14:10, for about 20 minutes"},
    {5, "..wwrr......", 0, "Rain starting around 14:10, for about 20 minutes"},
    {5, "..sswr.ww...", 0, "Sleet starting around 14:10, for about 35 minutes"},
    {5, "..rr..ss....", 0, "Rain starting around 14:10, for about 10 minutes"},
};
static_assert(std::size(kRows) >= 60);

class PrecipRows : public testing::TestWithParam<Row> {};

TEST_P(PrecipRows, GiveTheirSentence) {
  Texts const texts = Texts::load("en@hours=h23");
  TimeWords const words(texts, Calendar::utc());
  Row const& row = GetParam();
  PrecipPredictor const predictor(nowcastOf(row.step, row.letters));
  EXPECT_EQ(sentenceOf(predictor.outlook(kStart + minutes(row.now)), texts, words), row.sentence);
}

INSTANTIATE_TEST_SUITE_P(PrecipPredictor, PrecipRows, testing::ValuesIn(kRows), [](auto const& info) {
  std::string name = "step" + std::to_string(info.param.step) + "now" + std::to_string(info.param.now) + "_";
  for (char const letter : info.param.letters)
    name += letter == '.' ? 'd' : letter == '?' ? 'x' : letter == '_' ? 'o' : letter;
  return name;
});

TEST(PrecipPredictor, CountsATenthOfAMillimetreAnHourAsWet) {
  Nowcast nowcast = nowcastOf(5, "..");
  nowcast.steps[1].mmPerHour = 0.0999;
  EXPECT_EQ(PrecipPredictor(nowcast).outlook(kStart).state, PrecipOutlook::State::dry);
  nowcast.steps[1].mmPerHour = 0.1;
  EXPECT_EQ(PrecipPredictor(nowcast).outlook(kStart).state, PrecipOutlook::State::starts);
}

TEST(PrecipPredictor, RoundsMomentsToTheStep) {
  Nowcast nowcast = nowcastOf(5, "...rr...");
  for (NowcastStep& step : nowcast.steps) {
    step.from += std::chrono::seconds(149);
    step.to += std::chrono::seconds(149);
  }
  EXPECT_EQ(PrecipPredictor(nowcast).outlook(kStart).begin, at("2026-11-21T14:15:00Z"));
  for (NowcastStep& step : nowcast.steps) {
    step.from += std::chrono::seconds(1);
    step.to += std::chrono::seconds(1);
  }
  PrecipOutlook const outlook = PrecipPredictor(nowcast).outlook(kStart);
  EXPECT_EQ(outlook.begin, at("2026-11-21T14:20:00Z"));
  EXPECT_EQ(outlook.end, at("2026-11-21T14:30:00Z"));
}

TEST(PrecipPredictor, TakesStepsInAnyOrder) {
  Nowcast nowcast = nowcastOf(5, "...rr...");
  PrecipOutlook const expected = PrecipPredictor(nowcast).outlook(kStart);
  std::ranges::reverse(nowcast.steps);
  nowcast.steps.push_back({kStart + minutes(60), kStart + minutes(50), 9.0, Fall::snow});
  EXPECT_EQ(PrecipPredictor(nowcast).outlook(kStart), expected);
}

TEST(PrecipPredictor, TellsNobodyOffersItFromNotKnown) {
  Texts const texts = Texts::load("en");
  TimeWords const words(texts, Calendar::utc());
  EXPECT_EQ(sentenceOf(PrecipPredictor(Nowcast{}).outlook(kStart), texts, words),
            "No rain radar and no 15-minute model covers this place");
}

TEST(PrecipPredictor, SpeaksTheReadersLanguageAndTime) {
  PrecipOutlook const outlook = PrecipPredictor(nowcastOf(5, "...ssss...")).outlook(kStart);
  Texts const german = Texts::load("de@hours=h23");
  EXPECT_EQ(sentenceOf(outlook, german, TimeWords(german, *Calendar::forZone("Europe/Berlin"))),
            "Schneefall ab etwa 15:15 Uhr, für etwa 20 Minuten");
  Texts const american = Texts::load("en");
  EXPECT_EQ(sentenceOf(outlook, american, TimeWords(american, Calendar::utc())),
            "Snow starting around 2:15 PM, for about 20 minutes");
}

}  // namespace
}  // namespace nimbara

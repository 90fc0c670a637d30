#include "desktop/views/hazards/supplement_view.h"

#include "app/state/supplement_state.h"
#include "support/instants.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using testing::HasSubstr;
using namespace std::chrono_literals;

struct SupplementViewTest : testing::Test {
  Texts texts = Texts::load("en");
  ViewContext context{texts, {}, at("2026-11-21T09:20:00Z"), Calendar::utc(), ""};
  SupplementState state{.place = {{52.52, 13.41}, "Berlin"}, .country = "DE"};

  SupplementCard card(std::string_view name) const {
    for (SupplementCard const& card : supplementCards(&state, context))
      if (card.name == name) return card;
    return {};
  }
};

TEST_F(SupplementViewTest, ShowsNothingBeforeAnybodyWasAsked) {
  EXPECT_TRUE(supplementCards(nullptr, context).empty());
  EXPECT_TRUE(supplementCards(&state, context).empty());
}

TEST_F(SupplementViewTest, TellsTheFourKindsOfNothingApart) {
  Instant const then = at("2026-11-21T09:10:00Z");
  state.activeFires = {FeedState::current, {}, then, {}, {}};
  state.lightning = notConfiguredReading<std::vector<LightningStrike>>("no source");
  state.advisories = {FeedState::current, {}, then, {}, {}};
  state.activeStorms.failure = ServiceFailure::answered(500);
  state.activeStorms.failedSince = then;
  EXPECT_EQ(card("fires").headline,
            "No wildfires seen by satellite within 100 km in the last 24 hours, checked 10:10 AM");
  EXPECT_THAT(card("lightning").headline, HasSubstr("is not checked"));
  EXPECT_EQ(card("advisories").headline, "No travel advisory (Germany), checked 10:10 AM");
  EXPECT_EQ(card("storms").headline,
            "Tropical storms could not be checked since 10:10 AM: the service returned an error (HTTP 500)");
  EXPECT_TRUE(card("storms").isUnchecked);
  EXPECT_FALSE(card("lightning").isUnchecked);
}

TEST_F(SupplementViewTest, LeavesTheAirToItsPageButForWhatIsUnusual) {
  Instant const then = at("2026-11-21T09:10:00Z");
  state.airQuality = {FeedState::current, {}, then, {}, {}};
  state.airQuality.data.now.europeanAqi = 44;
  state.climate = {FeedState::current, {"52.50,13.50", Date(2026y / 11 / 21)}, then, {}, {}};
  state.climate.data.usual = ClimateDay{4, 0, 2, 4, 6, 8};
  state.climate.data.today = 6;
  state.climate.data.bias = 0;
  EXPECT_EQ(card("air").headline, "European air quality index: 44, moderate");
  EXPECT_EQ(card("air").body, "");
  EXPECT_EQ(card("air").page, "air");
  EXPECT_EQ(card("storms").page + card("climate").name, "");
  state.climate.data.today = 7;
  EXPECT_EQ(card("air").body, "3° warmer than usual for late November (1991–2020)");
  state.airQuality.state = FeedState::failed;
  EXPECT_THAT(card("air").body, testing::StartsWith("The air quality could not be checked since"));
  EXPECT_TRUE(card("air").isUnchecked);
}

TEST_F(SupplementViewTest, ListsWhatWasFoundTheNearestFirst) {
  Instant const then = at("2026-11-21T09:10:00Z");
  state.lightning = {FeedState::current, {{then, {52.8, 13.41}}, {then, {52.61, 13.41}}}, then, {}, {}};
  EXPECT_EQ(card("lightning").body, "10 km N  ·  10:10 AM\n31 km N  ·  10:10 AM");
}

}  // namespace
}  // namespace nimbara

#include "desktop/views/places/switcher_view.h"

#include "desktop/states/states.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::ElementsAre;
using testing::HasSubstr;

struct MatchRow {
  char const* text;
  char const* name;
  char const* area;
  bool matches;
};

TEST(MatchesSearch, WantsEachWordToBeginOneOfThePlace) {
  for (MatchRow const& row :
       {MatchRow{"war", "Warsaw", "Mazovia, Poland", true},
        MatchRow{"WAR pol", "Warsaw", "Mazovia, Poland", true},
        MatchRow{"pol", "Warsaw", "Mazovia, Poland", true},
        MatchRow{"saw", "Warsaw", "Mazovia, Poland", false},
        MatchRow{"war fra", "Warsaw", "Mazovia, Poland", false}, MatchRow{"tromso", "Tromsø", "Norway", true},
        MatchRow{"st moritz", "St. Moritz", "", true}, MatchRow{"", "Warsaw", "", false},
        MatchRow{"...", "Warsaw", "", false}}) {
    EXPECT_EQ(matchesSearch(row.text, row.name, row.area), row.matches) << row.text;
  }
}

PlaceView placeView(std::string name, std::string area) {
  PlaceView view;
  view.id = savedPlace(name, {}).id.text();
  view.name = std::move(name);
  view.area = std::move(area);
  return view;
}

FoundView foundView(std::string name, std::string savedId = {}) {
  FoundView view;
  view.name = view.sentence = std::move(name);
  view.isSaved = !savedId.empty();
  view.savedId = std::move(savedId);
  return view;
}

struct Menu : testing::Test {
  std::vector<std::string> rows(SwitcherSearch const& search) {
    std::vector<std::string> texts;
    for (SwitcherRow const& row : switcherRows(places, here, found, search, contextAt(kNow))) {
      texts.push_back(std::string(row.isFirstOfKind ? "- " : "") + row.kind + " " + row.title);
    }
    return texts;
  }

  std::vector<PlaceView> places{placeView("New Oslo", "Iowa"), placeView("Bergen", "Oslofjord"),
                                placeView("Oslo", "Norway")};
  HereView here;
  std::vector<FoundView> found;
};

TEST_F(Menu, ShowsAllPlacesAndTheWayToOthers) {
  EXPECT_THAT(rows({}), ElementsAre("place New Oslo", "place Bergen", "place Oslo",
                                    "- locate Use my location", "manage Manage places"));
  here.isOffered = true;
  here.name = "Berlin";
  EXPECT_THAT(rows({}), ElementsAre("here Berlin", "place New Oslo", "place Bergen", "place Oslo",
                                    "- manage Manage places"));
}

TEST_F(Menu, PutsNamesThatBeginWithTheTextFirst) {
  found = {foundView("Oslo", places[2].id), foundView("Osloß")};
  EXPECT_THAT(rows({"oslo", false, {}}), ElementsAre("place Oslo", "place New Oslo", "place Bergen",
                                                     "- found Osloß", "- online Search online for “oslo”"));
}

TEST_F(Menu, KnowsASavedPlaceByAnotherOfItsNames) {
  found = {foundView("Oslo (Christiania)", places[2].id)};
  EXPECT_THAT(rows({"christiania", false, {}}),
              ElementsAre("place Oslo", "- online Search online for “christiania”"));
}

TEST_F(Menu, NumbersFoundPlacesAsTheSearchDoes) {
  found = {foundView("Oslo", places[2].id), foundView("Oslob"), foundView("Osloß")};
  auto const all = switcherRows(places, here, found, {"osl", false, {}}, contextAt(kNow));
  std::vector<std::string> targets;
  for (SwitcherRow const& row : all) {
    if (row.kind == "found") targets.push_back(row.id);
  }
  EXPECT_THAT(targets, ElementsAre("1", "2"));
}

TEST_F(Menu, KeepsTheSearchOnlineInSight) {
  found = {foundView("Oslo", places[2].id)};
  for (int i = 0; i < 8; ++i) found.push_back(foundView("Oslo " + std::to_string(i)));
  auto const all = rows({"oslo", false, {}});
  ASSERT_EQ(all.size(), 3U + 7U + 1U) << "saved, found, online";
  EXPECT_EQ(all[9], "found Oslo 6");
}

TEST_F(Menu, SaysWhatBecomesOfTheSearchOnline) {
  auto const online = [&](SwitcherSearch const& search) {
    return switcherRows(places, here, {}, search, contextAt(kNow)).back();
  };
  EXPECT_THAT(online({"xyzzy", false, {}}).detail, HasSubstr("sends the text to Open-Meteo"));
  EXPECT_THAT(online({"xyzzy", true, {}}).title, HasSubstr("Searching"));
  EXPECT_EQ(online({"xyzzy", false, "Nothing there."}).detail, "Nothing there.");
}

TEST_F(Menu, FindsTheCurrentLocationByItsNameAndByWhatItIs) {
  here.isOffered = true;
  here.name = "Berlin";
  for (char const* const text : {"berl", "current", "loc"}) {
    EXPECT_EQ(rows({text, false, {}}).front(), "here Berlin") << text;
  }
  EXPECT_NE(rows({"paris", false, {}}).front(), "here Berlin");
}

TEST_F(Menu, TellsAPlaceWholeToThoseWhoListen) {
  places = {placeView("Oslo", "Norway")};
  places[0].temperature = "15°";
  places[0].localTime = "Sat 13:20";
  places[0].markText = "Warning: Gale";
  auto const all = switcherRows(places, here, {}, {}, contextAt(kNow));
  EXPECT_EQ(all[0].sentence, "Oslo, Norway, 15°, Sat 13:20, Warning: Gale");
  EXPECT_EQ(all[0].detail, "Norway  ·  Sat 13:20");
}

}  // namespace
}  // namespace nimbara

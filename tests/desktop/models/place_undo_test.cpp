#include "desktop/views/places/place_undo.h"

#include "desktop/states/states.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using Kind = PlaceChange::Kind;

PlaceList listOf(std::vector<std::string> const& names) {
  PlaceList list;
  double latitude = 0;
  for (std::string const& name : names) list.places.push_back(savedPlace(name, {latitude += 1, 0}));
  return list;
}

Uuid idOf(char const* name) {
  return savedPlace(name, {}).id;
}

TEST(PlaceChange, IsOfAPlaceWhereItWas) {
  PlaceList list = listOf({"A", "B", "C"});
  list.selected = idOf("B");
  auto const removal = removalOf(list, idOf("B"));
  ASSERT_TRUE(removal);
  EXPECT_EQ(*removal, (PlaceChange{Kind::removed, list.places[1], 2, true, {}}));
  EXPECT_FALSE(removalOf(list, idOf("A"))->wasSelected);
  EXPECT_FALSE(removalOf(list, idOf("Z")));
}

struct MoveRow {
  char const* name;
  int position;
  bool isMove;
};

TEST(PlaceChange, IsNoneWhereNothingMoves) {
  PlaceList const list = listOf({"A", "B", "C"});
  for (MoveRow const& row : {MoveRow{"A", 2, true}, MoveRow{"A", 3, true}, MoveRow{"A", 1, false},
                             MoveRow{"A", 0, false}, MoveRow{"A", 4, false}, MoveRow{"Z", 1, false}}) {
    EXPECT_EQ(moveOf(list, idOf(row.name), row.position).has_value(), row.isMove) << row.name << row.position;
  }
}

struct NameRow {
  char const* name;
  char const* expected;  ///< null for no change
};

TEST(PlaceChange, IsNoneWhereTheNameStays) {
  PlaceList const list = listOf({"Home"});
  for (NameRow const& row :
       {NameRow{"Office", "Office"}, NameRow{"  Sea\nside ", "Sea side"}, NameRow{"Home", nullptr},
        NameRow{" Home ", nullptr}, NameRow{"", nullptr}, NameRow{" \t", nullptr}}) {
    auto const change = renamingOf(list, idOf("Home"), row.name);
    ASSERT_EQ(change.has_value(), row.expected != nullptr) << row.name;
    if (change) {
      EXPECT_EQ(change->newName, row.expected);
    }
  }
}

TEST(PlaceUndo, TakesBackTheLastFirst) {
  PlaceUndo undo;
  EXPECT_EQ(undo.text(english()), "");
  EXPECT_FALSE(undo.take());
  PlaceList const list = listOf({"A", "B"});
  undo.note(*removalOf(list, idOf("A")));
  EXPECT_EQ(undo.text(english()), "A removed.");
  undo.note(*renamingOf(list, idOf("B"), "Bee"));
  EXPECT_EQ(undo.text(english()), "B renamed to Bee.");
  undo.note(*moveOf(list, idOf("B"), 1));
  EXPECT_EQ(undo.text(english()), "B moved.");
  SavedPlace added = list.places.front();
  added.name = "New";
  undo.note(additionOf(list, added));
  EXPECT_EQ(undo.text(english()), "New added.");
  for (Kind const kind : {Kind::added, Kind::moved, Kind::renamed, Kind::removed}) {
    auto const change = undo.take();
    ASSERT_TRUE(change);
    EXPECT_EQ(change->kind, kind);
  }
  EXPECT_FALSE(undo.take());
}

TEST(PlaceUndo, ForgetsTheOldestOfVeryMany) {
  PlaceUndo undo;
  PlaceList const list = listOf({"A", "B"});
  undo.note(*removalOf(list, idOf("A")));
  for (int i = 0; i < 50; ++i) undo.note(*moveOf(list, idOf("B"), 1));
  int count = 0;
  while (auto const change = undo.take()) {
    EXPECT_EQ(change->kind, Kind::moved);
    ++count;
  }
  EXPECT_EQ(count, 50);
}

struct StepRow {
  char const* places;
  bool hasHere;
  char const* selected;  ///< "here", a name, or null
  int step;
  char const* expected;  ///< likewise; null for nowhere to go
};

TEST(NeighbourPlace, GoesAroundTheListWithTheCurrentLocationFirst) {
  for (StepRow const& row : {StepRow{"ABC", false, "A", 1, "B"}, StepRow{"ABC", false, "C", 1, "A"},
                             StepRow{"ABC", false, "A", -1, "C"}, StepRow{"ABC", true, "C", 1, "here"},
                             StepRow{"ABC", true, "here", 1, "A"}, StepRow{"ABC", true, "A", -1, "here"},
                             StepRow{"A", false, "A", 1, nullptr}, StepRow{"A", true, "A", -1, "here"},
                             StepRow{"", false, nullptr, 1, nullptr}, StepRow{"AB", false, nullptr, 1, "A"},
                             StepRow{"AB", false, nullptr, -1, "B"}, StepRow{"AB", false, "here", 1, "A"}}) {
    std::vector<std::string> names;
    for (char const name : std::string_view(row.places)) names.emplace_back(1, name);
    PlaceList list = listOf(names);
    auto const idNamed = [](char const* name) -> std::optional<Uuid> {
      if (name == nullptr) return std::nullopt;
      return std::string_view(name) == "here" ? kCurrentLocation : idOf(name);
    };
    list.offersCurrentLocation = row.hasHere;
    if (row.hasHere) list.lastFix = LocationFix{{1, 2}, 100, kNow};
    list.selected = idNamed(row.selected);
    EXPECT_EQ(neighbourPlace(list, row.step), idNamed(row.expected))
        << row.places << " from " << (row.selected == nullptr ? "none" : row.selected) << " " << row.step;
  }
}

}  // namespace
}  // namespace nimbara

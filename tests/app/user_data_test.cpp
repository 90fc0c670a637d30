#include "app/places/user_data.h"

#include "app/settings/settings_registry.h"
#include "platform/settings/scratch_settings_store.h"
#include "support/temporary_folder.h"

namespace nimbara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

SavedPlace placeAt(std::string name, Coordinate coordinate) {
  SavedPlace place;
  place.id = Uuid::random();
  place.name = std::move(name);
  place.coordinate = coordinate;
  return place;
}

class UserDataTest : public testing::Test {
 protected:
  static void add(SettingsStore& store, SavedPlace const& place) {
    ASSERT_TRUE(Places(store).change([&](PlaceList& list) { return addPlace(list, place); }));
  }

  KeyedSettingsStore storeIn(std::string_view name) const {
    return {std::make_unique<ScratchSettingsStore>(settingsRegistry()), folder_.path() / name, {}};
  }

  test::TemporaryFolder folder_;
  KeyedSettingsStore old_ = storeIn("old");
  KeyedSettingsStore new_ = storeIn("new");
};

TEST_F(UserDataTest, AreTheSameOnAnotherMachine) {
  SavedPlace hut = placeAt("My hut", {40.1, -3.2});
  hut.notifications = PlaceChoice::official;
  add(old_, placeAt("Oslo", {59.9, 10.7}));
  add(old_, hut);
  ASSERT_TRUE(old_.set("language", std::string("de")));
  ASSERT_TRUE(old_.set("notify_everyPlace", false));
  auto const data = userData(old_, Secrets::leftOut);
  ASSERT_TRUE(data);
  auto const read = parseUserData(encodeJson(*data));
  ASSERT_TRUE(read) << read.error();
  auto const taken = takeUserData(new_, *read);
  ASSERT_TRUE(taken);
  EXPECT_EQ(taken->settings, 2u);
  EXPECT_EQ(taken->places, 2u);
  EXPECT_EQ(new_.settings().settings.text("language"), "de");
  EXPECT_FALSE(new_.settings().settings.boolean("notify_everyPlace"));
  auto const list = Places(new_).list();
  ASSERT_EQ(list->places.size(), 2u);
  EXPECT_EQ(list->places[1].name, "My hut");
  EXPECT_EQ(list->places[1].notifications, PlaceChoice::official);
}

TEST_F(UserDataTest, LeaveWhatIsThere) {
  add(old_, placeAt("Oslo", {59.9, 10.7}));
  add(new_, placeAt("At home", {59.9, 10.7}));
  ASSERT_TRUE(new_.set("language", std::string("pt")));
  auto const taken = takeUserData(new_, *userData(old_, Secrets::leftOut));
  ASSERT_TRUE(taken);
  EXPECT_EQ(taken->places, 0u);
  EXPECT_EQ(taken->knownPlaces, 1u);
  EXPECT_EQ(Places(new_).list()->places[0].name, "At home");
  EXPECT_EQ(new_.settings().settings.text("language"), "pt");
}

TEST_F(UserDataTest, HaveKeysOnlyOnRequest) {
  ASSERT_TRUE(old_.set("openMeteoApiKey", std::string("s3cret")));
  EXPECT_THAT(encodeJson(*userData(old_, Secrets::leftOut)), testing::Not(HasSubstr("s3cret")));
  EXPECT_THAT(encodeJson(*userData(old_, Secrets::included)), HasSubstr("s3cret"));
}

TEST_F(UserDataTest, TellWhatIsLeftOutAndTakeTheRest) {
  UserData data;
  data.settings = {{"language", "tlh"}, {"ofTheFuture", "1"}, {"notify_everyPlace", "false"}};
  data.places = {PlaceRow{.position = 1, .name = "Nowhere", .latitude = 91, .longitude = 0},
                 PlaceRow{.position = 2, .name = "Quito", .latitude = -0.2, .longitude = -78.5}};
  auto const taken = takeUserData(new_, data);
  ASSERT_TRUE(taken);
  EXPECT_THAT(taken->leftOut, ElementsAre(HasSubstr("tlh"), HasSubstr("ofTheFuture"), HasSubstr("Nowhere")));
  EXPECT_EQ(taken->settings, 1u);
  EXPECT_EQ(taken->places, 1u);
}

TEST(UserDataFiles, AreRecognised) {
  struct Row {
    char const* document;
    char const* problem;
  };
  constexpr Row kRows[] = {
      {R"({"format":"nimbara","version":1})", ""},
      {R"({"format":"nimbara","version":2})", "newer version"},
      {R"({"format":"nimbara","version":0})", "not a file"},
      {R"({"format":"other","version":1})", "not a file"},
      {R"({"format":"nimbara","version":1,"places":[{"name":3}]})", "/places[0]"},
      {R"({"format":"nimbara","ver)", "not a file"},
      {"", "not a file"},
  };
  for (Row const& row : kRows) {
    auto const data = parseUserData(row.document);
    EXPECT_EQ(data.has_value(), std::string_view(row.problem).empty()) << row.document;
    if (!data) EXPECT_THAT(data.error(), HasSubstr(row.problem));
  }
}

}  // namespace
}  // namespace nimbara

#include "platform/settings/settings.h"

#include "platform/settings/scratch_settings_store.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace nimbara {
namespace {

constexpr std::string_view kColours[] = {"red", "green"};
constexpr SettingDefinition kTable[] = {
    {"flag", true, "A truth value"},
    {.key = "count", .byDefault = std::int64_t{3}, .explanation = "", .minimum = -1, .maximum = 10},
    {.key = "level", .byDefault = 0.5, .explanation = "", .minimum = 0, .maximum = 1},
    {"colour", std::string_view("red"), "", kColours},
    {.key = "shout",
     .byDefault = std::string_view("A"),
     .explanation = "",
     .accepts = [](std::string_view text) { return !text.empty() && text[0] == 'A'; },
     .expected = "a text that begins with A"},
    {.key = "tongue",
     .byDefault = std::string_view("any"),
     .explanation = "",
     .offers = [] { return std::vector<std::string_view>{"any", "en"}; }},
    {"serviceApiKey", std::string_view(""), ""},
    {.key = "size", .byDefault = std::int64_t{1}, .explanation = "", .formerKey = "length"},
};

SettingsRegistry const& registry() {
  static SettingsRegistry const kRegistry{kTable};
  return kRegistry;
}

struct ParseRow {
  std::string_view key;
  std::string_view text;
  std::optional<SettingValue> value;  // nothing: refused
};

TEST(Settings, UnderstandTypedTexts) {
  for (ParseRow const& row : {
           ParseRow{"flag", "true", true},
           {"flag", "Off", false},
           {"flag", "1", std::nullopt},
           {"flag", "", std::nullopt},
           {"count", "-1", std::int64_t{-1}},
           {"count", "10", std::int64_t{10}},
           {"count", "-2", std::nullopt},
           {"count", "11", std::nullopt},
           {"count", "3.0", std::nullopt},
           {"count", "3 ", std::nullopt},
           {"count", "99999999999999999999", std::nullopt},
           {"level", "0", 0.0},
           {"level", "1", 1.0},
           {"level", "0.25", 0.25},
           {"level", "1.01", std::nullopt},
           {"level", "nan", std::nullopt},
           {"level", "0,5", std::nullopt},
           {"colour", "green", std::string("green")},
           {"colour", "Green", std::nullopt},
           {"tongue", "en", std::string("en")},
           {"tongue", "de", std::nullopt},
           {"shout", "Ah", std::string("Ah")},
           {"shout", "ah", std::nullopt},
           {"serviceApiKey", "true", std::string("true")},
           {"serviceApiKey", "", std::string("")},
       }) {
    auto const value = parsedSetting(*registry().find(row.key), row.text);
    EXPECT_EQ(value ? std::optional(*value) : std::nullopt, row.value) << row.key << " " << row.text;
    EXPECT_TRUE(value || value.error().find(row.key) != std::string::npos) << row.key;
  }
}

TEST(Settings, SayWhatIsExpected) {
  auto const refusal = [](std::string_view key, std::string_view text) {
    return parsedSetting(*registry().find(key), text).error();
  };
  EXPECT_EQ(refusal("count", "x"), "the setting count takes a whole number from -1 to 10");
  EXPECT_EQ(refusal("tongue", "de"), "the setting tongue takes one of any, en");
  EXPECT_EQ(refusal("colour", "x"), "the setting colour takes one of red, green");
  EXPECT_EQ(refusal("shout", "x"), "the setting shout takes a text that begins with A");
}

struct StoredRow {
  std::string_view key;
  SettingValue stored;
  SettingValue value;
};

TEST(Settings, HaveTheDefaultWhereTheStoredValueIsWrong) {
  SettingValue const nan = std::nan("");
  for (StoredRow const& row : {
           StoredRow{"flag", std::int64_t{0}, false},
           {"flag", std::int64_t{2}, true},
           {"flag", std::string("false"), true},
           {"count", std::int64_t{7}, std::int64_t{7}},
           {"count", std::int64_t{70}, std::int64_t{3}},
           {"count", 7.0, std::int64_t{3}},
           {"count", std::string("7"), std::int64_t{3}},
           {"level", std::int64_t{1}, 1.0},
           {"level", nan, 0.5},
           {"colour", std::string("green"), std::string("green")},
           {"colour", std::string("blue"), std::string("red")},
           {"colour", std::int64_t{1}, std::string("red")},
       }) {
    Settings const settings(registry(), {{std::string(row.key), row.stored}});
    EXPECT_EQ(settings.value(row.key), row.value) << row.key;
  }
}

TEST(Settings, NameWhatTheyCannotUse) {
  Settings const settings(registry(), {{"count", std::int64_t{70}},
                                       {"level", 0.25},
                                       {"colour", std::string("blue")},
                                       {"ofAnotherVersion", std::string("x")}});
  EXPECT_EQ(
      settings.faults(),
      (std::vector<std::string>{"the setting colour takes one of red, green; using the default",
                                "the setting count takes a whole number from -1 to 10; using the default"}));
}

TEST(Settings, KnowWhatWasChosen) {
  Settings const settings(registry(), {{"colour", std::string("red")}, {"count", std::string("no")}});
  EXPECT_TRUE(settings.isChosen("colour"));
  EXPECT_FALSE(settings.isChosen("count"));
  EXPECT_FALSE(settings.isChosen("flag"));
  EXPECT_THROW(static_cast<void>(settings.value("nothing")), std::logic_error);
}

TEST(Settings, AreFoundInOrder) {
  for (std::size_t i = 1; i < registry().all().size(); ++i) {
    EXPECT_LT(registry().all()[i - 1]->key, registry().all()[i]->key);
  }
  EXPECT_EQ(registry().find("flags"), nullptr);
  EXPECT_EQ(registry().find(""), nullptr);
  EXPECT_EQ(registry().asWritten().size(), registry().all().size());
  EXPECT_EQ(registry().asWritten().front()->key, "flag");
}

struct FormerRow {
  SettingValues stored;
  std::int64_t size;
};

TEST(Settings, TakeOverWhatWasKeptUnderAFormerKey) {
  for (FormerRow const& row : {FormerRow{{}, 1},
                               {{{"length", std::int64_t{7}}}, 7},
                               {{{"size", std::int64_t{8}}}, 8},
                               {{{"length", std::int64_t{7}}, {"size", std::int64_t{8}}}, 8}}) {
    Settings const settings(registry(), row.stored);
    EXPECT_EQ(settings.integer("size"), row.size);
    EXPECT_EQ(settings.integer("length"), row.size);
    EXPECT_EQ(settings.isChosen("size"), !row.stored.empty());
  }
}

TEST(Settings, LeaveNoFormerKeyBehind) {
  for (bool const isReset : {false, true}) {
    ScratchSettingsStore store(registry());
    std::ignore = store.update(StoreArea::settings, [](SettingValues const&) {
      return StoreChanges{{"length", SettingValue(std::int64_t{7})}};
    });
    ASSERT_TRUE(isReset ? store.reset("size") : store.set("length", std::int64_t{9}));
    auto const stored = store.read(StoreArea::settings);
    ASSERT_TRUE(stored);
    EXPECT_EQ(*stored, isReset ? SettingValues{} : (SettingValues{{"size", std::int64_t{9}}}));
  }
}

}  // namespace
}  // namespace nimbara

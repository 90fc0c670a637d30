#include "app/services/stand_in_store.h"

#include "app/settings/settings_registry.h"
#include "support/memory_settings_store.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

TEST(StandInStore, KeepsItsMemoryApartAndTheRestTogether) {
  test::MemorySettingsStore store(settingsRegistry());
  StandInStore standIn(store);
  ASSERT_TRUE(store.setState("told", SettingValue(std::string("real"))));
  ASSERT_TRUE(standIn.setState("told", SettingValue(std::string("made up"))));
  ASSERT_TRUE(standIn.set("notify_rain", false));

  EXPECT_EQ(*store.state("told"), SettingValue(std::string("real")));
  EXPECT_EQ(*standIn.state("told"), SettingValue(std::string("made up")));
  EXPECT_EQ(standIn.read(StoreArea::state)->size(), 1);
  EXPECT_FALSE(store.settings().settings.boolean("notify_rain"));

  ASSERT_TRUE(standIn.setState("told", std::nullopt));
  EXPECT_EQ(*standIn.state("told"), std::nullopt);
  EXPECT_EQ(*store.state("told"), SettingValue(std::string("real")));
}

}  // namespace
}  // namespace nimbara

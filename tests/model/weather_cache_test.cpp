#include "model/weather_cache.h"

#include "support/forecasts.h"
#include "support/killed_writer.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using test::ManualClock;
using test::mildForecast;
using test::TemporaryFolder;

Instant const kNow = at("2026-11-21T12:00:00Z");

WttrResponse named(std::string const& name) {
  WttrResponse response;
  response.timeZone = name;
  return response;
}

ParsedCacheEntry entryOf(int hours) {
  ParsedCacheEntry entry;
  entry.responseTimestamp = kNow;
  entry.data = mildForecast(kNow, hours);
  entry.insight.alerts.emplace_back().title = "High Winds";
  entry.provider = WeatherProviderOption::yrNo;
  return entry;
}

struct CacheTest : testing::Test {
  TemporaryFolder folder;
  ManualClock clock{kNow};
  WeatherCache cache{folder.path() / "Nimbara", clock};
  std::filesystem::path const file = folder.path() / "Nimbara" / WeatherCache::fileName("52.52,13.41");
};

TEST_F(CacheTest, KeepsRawAnswersForFifteenMinutes) {
  cache.store("berlin", named("a"));
  struct Row {
    std::chrono::milliseconds later;
    bool expected;
  };
  for (auto const& row : {Row{0s, true}, Row{899'999ms, true}, Row{900s, false}, Row{901s, false},
                          Row{-1s, false}, Row{-24h, false}}) {
    clock.set(kNow + row.later);
    EXPECT_EQ(cache.fetch("berlin").has_value(), row.expected) << row.later.count();
  }
}

TEST_F(CacheTest, DropsTheLeastRecentlyUsedOfNine) {
  for (int i = 1; i <= 8; ++i) cache.store("key" + std::to_string(i), named(std::to_string(i)));
  EXPECT_TRUE(cache.fetch("KEY1 "));  // saves it; key2 is the oldest now
  cache.store("key9", named("9"));
  EXPECT_TRUE(cache.fetch("key1"));
  EXPECT_FALSE(cache.fetch("key2"));
  EXPECT_TRUE(cache.fetch("key3"));
  EXPECT_EQ(cache.fetch("key9")->timeZone, "9");
  cache.store("key3", named("three"));  // replaces without dropping
  EXPECT_EQ(cache.fetch("key3")->timeZone, "three");
  EXPECT_TRUE(cache.fetch("key4"));
}

TEST_F(CacheTest, GivesBackWhatWasStoredHoweverOld) {
  ParsedCacheEntry const entry = entryOf(168);
  cache.store(" Berlin\n", entry);
  clock.advance(24h * 30);
  auto const loaded = cache.load("berlin");
  ASSERT_TRUE(loaded);
  EXPECT_EQ(*loaded, entry);
  EXPECT_FALSE(cache.load("bern"));
  cache.store("BERLIN", entryOf(3));
  EXPECT_EQ(cache.load("Berlin")->data.allHourly.size(), 3U);
}

TEST_F(CacheTest, NamesFilesByTheHashOfTheKey) {
  // printf '%s' "52.52,13.41" | sha256sum
  EXPECT_EQ(WeatherCache::fileName(" 52.52,13.41 "),
            "74e72b82ee55edd1971a5f983b207d5b09b589c7f076fa9b3c2944a901ecfd11.json");
  EXPECT_EQ(WeatherCache::fileName("Berlin"), WeatherCache::fileName("\tBERLIN "));
  EXPECT_EQ(cacheKey({52.52, 13.41}), "52.52,13.41");
  EXPECT_EQ(cacheKey({-0.5, 100}), "-0.5,100");
}

TEST_F(CacheTest, TakesAFileThatIsCutAnywhereForNone) {
  cache.store("52.52,13.41", entryOf(2));
  std::string const whole = folder.read("Nimbara/" + file.filename().string());
  ASSERT_GT(whole.size(), 1000U);
  for (std::size_t length = 0; length < whole.size(); length += 37) {
    folder.write("Nimbara/" + file.filename().string(), whole.substr(0, length));
    EXPECT_FALSE(cache.load("52.52,13.41")) << length;
  }
  folder.write("Nimbara/" + file.filename().string(), std::string(5000, '\xfe'));
  EXPECT_FALSE(cache.load("52.52,13.41"));
  cache.store("52.52,13.41", entryOf(2));  // the next store puts it right
  EXPECT_TRUE(cache.load("52.52,13.41"));
}

TEST_F(CacheTest, ReadsAFileAgainOnlyOnceSomebodyHasWrittenIt) {
  cache.store("52.52,13.41", entryOf(2));
  ASSERT_TRUE(cache.load("52.52,13.41"));
  auto const written = last_write_time(file);
  std::string const other(file_size(file), ' ');
  folder.write("Nimbara/" + file.filename().string(), other);
  last_write_time(file, written);
  EXPECT_TRUE(cache.load("52.52,13.41"));
  last_write_time(file, written + 1ms);
  EXPECT_FALSE(cache.load("52.52,13.41"));
  cache.store("52.52,13.41", entryOf(3));
  last_write_time(file, written);
  EXPECT_EQ(cache.load("52.52,13.41")->data.allHourly.size(), 3U);
}

TEST_F(CacheTest, GoesOnWithoutAFolderThatCanBeWritten) {
  WeatherCache nowhere("/proc/nimbara", clock);
  nowhere.store("berlin", entryOf(1));
  EXPECT_FALSE(nowhere.load("berlin"));
  nowhere.saveLastLocation("berlin");
  EXPECT_FALSE(nowhere.loadLastLocation());
  nowhere.store("berlin", named("a"));
  EXPECT_TRUE(nowhere.fetch("berlin"));
}

TEST_F(CacheTest, TakesNothingMadeUpForAForecast) {
  WeatherCache demo(folder.path() / "Nimbara", clock, WeatherCache::Source::standIn);
  demo.store("berlin", entryOf(1));
  EXPECT_TRUE(demo.load("berlin"));
  EXPECT_FALSE(cache.load("berlin"));
  cache.store("berlin", entryOf(2));
  EXPECT_EQ(demo.load("berlin")->data.allHourly.size(), 2U);
}

TEST_F(CacheTest, RemembersTheLastPlace) {
  EXPECT_FALSE(cache.loadLastLocation());
  cache.saveLastLocation("52.52,13.41");
  EXPECT_EQ(folder.read("Nimbara/_last_location.txt"), "52.52,13.41");
  EXPECT_EQ(WeatherCache(folder.path() / "Nimbara", clock).loadLastLocation(), "52.52,13.41");
}

TEST_F(CacheTest, IsReadableWhoeverWritesAtTheSameTime) {
  cache.store("berlin", entryOf(1));
  std::atomic<bool> done = false;
  std::vector<std::jthread> writers;
  for (int writer = 0; writer < 3; ++writer) {
    writers.emplace_back([&, writer] {
      WeatherCache own(folder.path() / "Nimbara", clock);
      for (int i = 0; i < 15; ++i) own.store("berlin", entryOf(1 + writer));
      done = true;
    });
  }
  int reads = 0;
  for (; !done; ++reads) ASSERT_TRUE(cache.load("berlin"));
  EXPECT_GT(reads, 0);
}

TEST_F(CacheTest, OutlivesWritersThatAreKilled) {
  cache.store("berlin", entryOf(24));
  test::killWriters(
      test::killCount(),
      [&](auto const& progress) {
        WeatherCache own(folder.path() / "Nimbara", clock);
        for (int i = 0;; ++i) {
          own.store("berlin", entryOf(24 + i % 3));
          progress();
        }
      },
      [&] { ASSERT_TRUE(cache.load("berlin")); });
}

TEST_F(CacheTest, SweepsUpWhatKilledWritersLeft) {
  std::filesystem::create_directories(folder.path() / "Nimbara");
  auto const leave = [&](std::string const& name, std::chrono::hours age) {
    folder.write("Nimbara/" + name, "half");
    std::filesystem::last_write_time(folder.path() / "Nimbara" / name,
                                     std::filesystem::file_time_type::clock::now() - age);
  };
  leave(".abc.json.Xy12Zz", 2h);
  leave(".def.json.Xy12Zz", 0h);
  leave("kept.json", 2h);
  cache.store("berlin", entryOf(1));
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "Nimbara" / ".abc.json.Xy12Zz"));
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "Nimbara" / ".def.json.Xy12Zz"));  // may be in use
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "Nimbara" / "kept.json"));
}

}  // namespace
}  // namespace nimbara

#include "feeds/alerts/events/event_memory.h"

#include "support/instants.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <thread>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

Instant const kNow = at("2026-11-21T09:00:00Z");
constexpr char kWind[] = "HR|wind|EMMA_ID:HR001";

WeatherAlert warning(std::optional<std::chrono::minutes> from, std::optional<std::chrono::minutes> until,
                     std::string event = kWind) {
  WeatherAlert alert;
  alert.event = std::move(event);
  if (from) alert.onset = kNow + *from;
  if (until) alert.expires = kNow + *until;
  return alert;
}

Uuid idOf(KnownEvents& known, WeatherAlert const& alert, Instant now = kNow) {
  std::vector<WeatherAlert> alerts{alert};
  identify(alerts, known, now);
  return alerts[0].id;
}

struct PeriodRow {
  char const* what;
  WeatherAlert first, second;
  bool isOneEvent;
};

TEST(EventMemory, TakesPeriodsThatAdjoinForOneEvent) {
  for (PeriodRow const& row : {
           PeriodRow{"the same again", warning(0h, 6h), warning(0h, 6h), true},
           {"overlapping", warning(0h, 6h), warning(5h, 12h), true},
           {"the next day's", warning(0h, 6h), warning(6h, 12h), true},
           {"half an hour between", warning(0h, 6h), warning(6h + 30min, 12h), true},
           {"more between", warning(0h, 6h), warning(6h + 31min, 12h), false},
           {"begins earlier now", warning(4h, 6h), warning(1h, 6h), true},
           {"moved before it", warning(4h, 6h), warning(1h, 3h + 30min), true},
           {"long before it", warning(4h, 6h), warning(1h, 3h + 29min), false},
           {"no end at first", warning(0h, {}), warning(20h, 30h), true},
           {"no end then", warning(0h, 6h), warning(5h, {}), true},
           {"no beginning", warning({}, 6h), warning(0h, 6h), true},
           {"over before it begins", warning(8h, 6h), warning(6h, 12h), true},
           {"another kind", warning(0h, 6h), warning(0h, 6h, "HR|rain|EMMA_ID:HR001"), false},
           {"another region", warning(0h, 6h), warning(0h, 6h, "HR|wind|EMMA_ID:HR002"), false},
       }) {
    KnownEvents known;
    Uuid const first = idOf(known, row.first);
    EXPECT_EQ(idOf(known, row.second) == first, row.isOneEvent) << row.what;
  }
}

TEST(EventMemory, FollowsAnEventThroughAnyNumberOfPeriods) {
  KnownEvents known;
  Uuid const first = idOf(known, warning(0h, 6h));
  for (int day = 1; day <= 7; ++day) {
    auto const shift = day * 6h;
    EXPECT_EQ(idOf(known, warning(shift, shift + 6h), kNow + shift), first) << day;
  }
  EXPECT_NE(idOf(known, warning(60h, 70h), kNow + 60h), first) << "after a pause";
  EXPECT_EQ(known.periods.at(kWind).size(), 2);
}

TEST(EventMemory, NamesAnEventAlikeEverywhere) {
  KnownEvents here;
  KnownEvents there;
  EXPECT_EQ(idOf(here, warning(0h, 6h)), idOf(there, warning(0h, 9h), kNow + 1h));
  KnownEvents lost;
  Uuid const before = idOf(here, warning(0h, 7h));
  EXPECT_EQ(idOf(lost, warning(0h, 7h)), before);
}

TEST(EventMemory, GivesEachAlertOfAListItsOwnIdentifier) {
  KnownEvents known;
  std::vector<WeatherAlert> alerts{warning(0h, 6h), warning(6h, 12h), WeatherAlert{}};
  Uuid const own = alerts[2].id;
  identify(alerts, known, kNow);
  EXPECT_NE(alerts[0].id, alerts[1].id);
  EXPECT_EQ(alerts[2].id, own) << "says nothing of what it is about";
}

TEST(EventMemory, ForgetsWhatNobodySpeaksOf) {
  auto const isKnownAfter = [](std::chrono::milliseconds span) {
    EventMemory memory;
    memory.update(kNow, [](KnownEvents& known) {
      noteRoot(known, "b", "a", kNow);
      notePeriod(known, kWind, {kNow, kNow + 1h}, "r", kNow);
    });
    memory.update(kNow + span, [](KnownEvents&) {});
    bool isKnown = false;
    memory.update(kNow + span, [&](KnownEvents& known) {
      EXPECT_EQ(known.roots.empty(), known.periods.empty());
      isKnown = !known.roots.empty();
    });
    return isKnown;
  };
  EXPECT_TRUE(isKnownAfter(EventMemory::kLife - 1ms));
  EXPECT_FALSE(isKnownAfter(EventMemory::kLife));
  EXPECT_FALSE(isKnownAfter(-1ms)) << "a clock that was wrong remembers nothing";
}

TEST(EventMemory, IsBounded) {
  EventMemory memory;
  for (int i = 0; i < 3; ++i) {
    memory.update(kNow + i * 1s, [&](KnownEvents& known) {
      for (int k = 0; k < 4000; ++k) {
        std::string const name = std::to_string(i) + "." + std::to_string(k);
        noteRoot(known, name, "a", kNow + i * 1s);
        notePeriod(known, name, {kNow, {}}, "r", kNow + i * 1s);
      }
    });
  }
  memory.update(kNow + 3s, [](KnownEvents& known) {
    EXPECT_EQ(known.roots.size(), 8000);
    EXPECT_FALSE(known.roots.contains("0.0"));
    EXPECT_TRUE(known.roots.contains("2.0"));
    EXPECT_EQ(known.periods.size(), 2000);
    EXPECT_TRUE(known.periods.contains("2.3999"));
  });
}

TEST(EventMemory, IsSharedThroughItsFile) {
  test::TemporaryFolder const folder;
  auto const file = folder.path() / "events.json";
  EventMemory window(file);
  EventMemory watch(file);
  auto const note = [](char const* name) {
    return [name](KnownEvents& known) { noteRoot(known, name, "a", kNow); };
  };
  window.update(kNow, note("1"));
  watch.update(kNow, note("2"));
  window.update(kNow, note("3"));
  EventMemory(file).update(kNow, [](KnownEvents& known) { EXPECT_EQ(known.roots.size(), 3); });
  folder.write("events.json", "{\"roots\":[");
  window.update(kNow, [](KnownEvents& known) { EXPECT_EQ(known.roots.size(), 3); });
  std::filesystem::remove(file);
  watch.update(kNow, [](KnownEvents& known) { EXPECT_TRUE(known.roots.contains("2")); });
  EXPECT_TRUE(std::filesystem::exists(file));
}

TEST(EventMemory, LosesNothingBetweenThreadsAndObjects) {
  test::TemporaryFolder const folder;
  auto const file = folder.path() / "events.json";
  EventMemory(file).update(kNow, [](KnownEvents& known) { noteRoot(known, "first", "a", kNow); });
  {
    std::vector<std::jthread> writers;
    writers.reserve(4);
    for (int writer = 0; writer < 4; ++writer) {
      writers.emplace_back([&file, writer] {
        EventMemory memory(file);
        for (int i = 0; i < 5; ++i) {
          memory.update(kNow, [&](KnownEvents& known) {
            noteRoot(known, std::to_string(writer) + "." + std::to_string(i), "a", kNow);
          });
        }
      });
    }
  }
  EventMemory(file).update(kNow, [](KnownEvents& known) { EXPECT_EQ(known.roots.size(), 21); });
}

}  // namespace
}  // namespace nimbara

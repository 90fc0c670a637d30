// The cuts of the weather and hazard rules that are ours to choose, each with its reason; those of the sky
// rules stand beside them in a table of their own. Metric.
#pragma once

#include <chrono>

namespace nimbara::cuts {

using namespace std::chrono_literals;

// "In the next few hours": far enough to plan, near enough that the forecast keeps its word.
inline constexpr std::chrono::hours kPrecipitationLookAhead{6};
// The end of a wet spell may lie farther ahead than its start and still be worth naming.
inline constexpr std::chrono::hours kSpellLookAhead{18};

// Starts need a firmer signal than stops, and snow is sent on a weaker one than rain.
inline constexpr int kRainStartChance = 30;
inline constexpr int kRainStopChance = 20;
inline constexpr int kSnowStartChance = 20;
inline constexpr int kSnowStopChance = 15;

// Heavy rain is 4 mm in an hour (the upper end of moderate rain), with even odds at least.
inline constexpr double kHeavyRainMm = 4;
inline constexpr int kHeavyRainChance = 50;
// Two millimetres of water are about two centimetres of snow: enough to change plans for roads.
inline constexpr double kHeavySnowMm = 2;
inline constexpr int kHeavySnowChance = 50;
inline constexpr std::chrono::hours kHeavyLookAhead{8};
// What the alert generator calls flooding rain, which adds up four hours more.
inline constexpr double kFloodMm = 30;

// A fall is felt, and dangerous to plants and pipes, sooner than a rise. Six hours leave the usual day's
// course out in most climates.
inline constexpr double kTemperatureDropC = 8;
inline constexpr double kTemperatureRiseC = 10;
inline constexpr std::chrono::hours kTemperatureLookAhead{6};
inline constexpr int kTrendDays = 3;

// Objects are secured before the night: half a day ahead.
inline constexpr std::chrono::hours kWindLookAhead{12};

// Sooner than the alert generator, which asks for even odds: who turns the rule on wants to know early.
inline constexpr int kThunderChance = 40;
inline constexpr std::chrono::hours kStormLookAhead{6};

// The World Health Organization's "very high".
inline constexpr int kHighUv = 8;
inline constexpr std::chrono::hours kUvLookAhead{4};

inline constexpr int kUmbrellaChance = 41;
inline constexpr int kUvReminderIndex = 6;
// Below this a chance is not worth the words.
inline constexpr int kSummaryChance = 10;
// From the evening summary until people leave the house.
inline constexpr std::chrono::hours kNightLength{14};

// Warm enough to lie still, cool enough to stay; sand does not fly and the sun is out.
inline constexpr int kBeachFrom = 9;
inline constexpr int kBeachUntil = 19;
inline constexpr double kBeachWarmC = 24;
inline constexpr double kBeachHotC = 36;
inline constexpr int kBeachRainChance = 20;
inline constexpr double kBeachWindKmh = 25;
inline constexpr double kBeachGustKmh = 45;
inline constexpr int kBeachCloud = 50;
inline constexpr int kBeachHours = 3;

// Until tomorrow at this hour: time to plan another day, and what comes later is sent later.
inline constexpr std::chrono::hours kAirLookAhead{24};

// A strike says where a thunderstorm is; half an hour later it is over or elsewhere.
inline constexpr std::chrono::minutes kStrikeLife{30};
// The next strike of a storm may fall so far from the one before: who is that near belongs indoors.
inline constexpr double kNearStrikeKm = 10;

// Between two passes of a satellite a front jumps by so much, over what does not glow.
inline constexpr double kSameFireKm = 5;
// The front of a fire before strong wind covers that in an hour or two.
inline constexpr double kNearFireKm = 10;

// Tropical cyclones send gales and rain some hundred kilometres ahead, and tracks err by as much in three
// days.
inline constexpr double kStormApproachKm = 500;
// Farther from every named coast a place says nothing of where a storm is.
inline constexpr double kStormCoastKm = 1000;

// A forecast that wavers around a cut says the same event again within these.
inline constexpr std::chrono::minutes kSpellGap = 3h;      // wet spells, storms
inline constexpr std::chrono::minutes kDayGap = 12h;       // what follows the course of the day
inline constexpr std::chrono::minutes kDangerGap = 30min;  // tornado: rather once too often
inline constexpr std::chrono::minutes kStrikeGap = 1h;     // lightning of one thunderstorm

}  // namespace nimbara::cuts

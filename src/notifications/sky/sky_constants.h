// Every cut of the rules about the sky and nature, with why it lies where it does. Temperatures in °C, wind
// in km/h, water in mm, pressure in hPa, distances in km, shares in %, angles in degrees.
#pragma once

#include <chrono>

namespace nimbara::sky {

using std::chrono::hours;
using std::chrono::minutes;

// What several rules share.
inline constexpr double kDarkSunAltitude = -12;  // end of nautical twilight: faint light shows from here on
inline constexpr int kTonightFromHour = 12;      // before noon "tonight" is too far off to plan for
inline constexpr int kNightFromHour = 18;        // a night's cold is looked for between these two hours,
inline constexpr int kNightUntilHour = 9;        // the second one late enough for the minimum after sunrise
inline constexpr double kBowSunAltitude = 42;    // with a higher sun a bow lies below the horizon
inline constexpr double kWetMm = 0.5;            // less leaves ground and roads dry
inline constexpr double kDryHourMm = 0.1;        // the smallest amount that providers tell from none

namespace rainbow {
inline constexpr int kFromHour = 5;  // nobody wants a polar day's rainbow at night
inline constexpr int kUntilHour = 22;
inline constexpr hours kLookAhead{3};  // a shower's end is not known further ahead
}  // namespace rainbow

namespace fogBow {
inline constexpr double kVisibilityKm = 2.0;  // thick enough to show the bow
inline constexpr double kClearCloud = 25.0;   // up to here the sun surely reaches the fog
inline constexpr hours kLookAhead{6};         // morning fog lifts within a forenoon
}  // namespace fogBow

namespace aurora {
inline constexpr double kLatitude = 58;      // below it only great storms are seen
inline constexpr double kGoodLatitude = 60;  // above it the oval is near on common nights
inline constexpr double kLowKp = 4;          // below: unsettled at most
inline constexpr double kHighKp = 6;         // from here on a moderate storm
inline constexpr double kCloud = 30;         // clear between the clouds
}  // namespace aurora

namespace stargazing {
inline constexpr double kCloud = 20;  // below: a clear sky
inline constexpr double kMoon = 70;   // below: the moon does not outshine the stars
inline constexpr hours kLookAhead{18};
inline constexpr int kFewestHours = 2;  // shorter darkness is no night out
}  // namespace stargazing

namespace golden {
inline constexpr double kLowestSun = -4;      // the warm light lies between these altitudes,
inline constexpr double kHighestSun = 6;      // as photographers reckon
inline constexpr double kPristineCloud = 30;  // below: clear to the horizon
inline constexpr double kDramaticCloud = 70;  // above: no light comes through
inline constexpr minutes kLead{45};           // time to go where the view is
}  // namespace golden

namespace staticShock {
inline constexpr double kHumidity = 29;
inline constexpr double kVeryDry = 15;
inline constexpr double kTemperature = 5;  // heated rooms are dry when it is colder outside
}  // namespace staticShock

namespace spider {
inline constexpr int kFromHour = 9;  // the ground must warm first,
inline constexpr int kUntilHour = 18;
inline constexpr double kWind = 10;  // stronger wind keeps spiders down,
inline constexpr double kGust = 15;  // and so do gusts
inline constexpr double kWarm = 15;  // air that rises from sunny ground
inline constexpr hours kRainBefore{24};
}  // namespace spider

namespace birds {
inline constexpr unsigned kSpringFrom = 3;  // northbound from March,
inline constexpr unsigned kSpringUntil = 8;
inline constexpr unsigned kFallFrom = 9;  // southbound from September on
inline constexpr unsigned kFallUntil = 12;
inline constexpr double kPressure = 1005;  // behind the front, not in it
inline constexpr double kTailwind = 5;     // weaker wind carries nobody
/// Wind from 91° to 269° blows northwards, any other southwards or across.
inline constexpr double kSoutherlyFrom = 91;
inline constexpr double kSoutherlyUntil = 269;
}  // namespace birds

namespace mosquito {
inline constexpr double kTemperature = 20;
inline constexpr double kHumidity = 71;
inline constexpr double kWind = 15;
inline constexpr double kRainChance = 29;  // rain keeps them down
// A swarm takes more of each, and water to hatch from.
inline constexpr double kSwarmTemperature = 25;
inline constexpr double kSwarmHumidity = 80;
inline constexpr double kSwarmWind = 8;
inline constexpr double kSwarmRainMm = 2;
inline constexpr hours kRainBefore{48};
}  // namespace mosquito

namespace frost {
inline constexpr double kFreeze = 2.0;  // the ground is colder than the air two metres above
inline constexpr double kNear = 5.0;    // clear nights only
inline constexpr double kCloud = 40.0;  // more cloud keeps the ground warm
}  // namespace frost

namespace outdoor {
inline constexpr int kFromHour = 6;
inline constexpr int kUntilHour = 16;
inline constexpr double kCoolest = 10;
inline constexpr double kWarmest = 28;
inline constexpr double kFeltWarmest = 30;          // humid air feels warmer than it is
inline constexpr double kUv = 2;                    // the highest index that is called low
inline constexpr double kWind = 20;                 // leaves and paper stay where they are
inline constexpr double kGust = 35;                 // as strong as such a wind's own gusts, no squalls
inline constexpr double kRainChance = 20;           // below: dry
inline constexpr hours kShortest{2};                // worth going out for
inline constexpr std::chrono::seconds kStep{3600};  // longer steps do not say which hour
}  // namespace outdoor

namespace fog {
inline constexpr double kChance = 60;
inline constexpr hours kLookAhead{12};
}  // namespace fog

namespace pressure {
inline constexpr double kFall = 8;      // what studies of headaches call a fast fall
inline constexpr hours kLookAhead{12};  // in half a day
}  // namespace pressure

namespace heat {
inline constexpr double kTemperature = 25;
inline constexpr double kHotter = 6;     // felt above the air's
inline constexpr double kGravest = 10;   // from here on a warning
inline constexpr double kHumidity = 40;  // drier air feels hot for another reason
}  // namespace heat

namespace chill {
inline constexpr double kTemperature = 5;
inline constexpr double kColder = 8;  // felt below the air's
inline constexpr double kWind = 15;   // weaker wind is not what makes it cold
}  // namespace chill

namespace blackIce {
inline constexpr double kNearFreezing = 3.0;  // on either side; colder roads carry snow, warmer ones water
inline constexpr double kHumidity = 85;       // dew settles on cold roads
inline constexpr hours kRoadStaysWet{6};
inline constexpr hours kLookAhead{6};
}  // namespace blackIce

namespace windshield {
inline constexpr double kLow = 3.0;     // glass gets several degrees colder than the air
inline constexpr double kSpread = 6.0;  // by as much: the dew point must lie within
inline constexpr double kWind = 10.0;   // more wind keeps the glass as warm as the air
inline constexpr double kCloud = 30.0;
}  // namespace windshield

namespace vitaminD {
inline constexpr int kFromHour = 9;
inline constexpr int kUntilHour = 15;
inline constexpr int kUv = 3;  // a weaker sun makes none
inline constexpr int kStrongUv = 6;
inline constexpr int kVeryStrongUv = 8;
}  // namespace vitaminD

namespace heatPump {
inline constexpr hours kLookAhead{8};
inline constexpr double kColdest = -10.0;  // colder air holds too little water to ice much
inline constexpr double kHeavy = -2;       // what melts in a defrost freezes at once
inline constexpr double kFrequent = 2;
inline constexpr double kLight = 5;  // the coil is several degrees colder than the air
inline constexpr double kHeavyHumidity = 86;
inline constexpr double kFrequentHumidity = 81;
inline constexpr double kSpread = 3.0;  // the coil is below the dew point
inline constexpr double kLightSpread = 3.5;
// Magnus formula.
inline constexpr double kMagnusFactor = 17.27;
inline constexpr double kMagnusCelsius = 237.7;
inline constexpr double kLeastHumidity = 1.0;  // it has no value at 0 %
}  // namespace heatPump

}  // namespace nimbara::sky

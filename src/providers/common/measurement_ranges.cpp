#include "providers/common/measurement_ranges.h"

#include <array>

namespace nimbara {

namespace {

using Quantity = MeasuredQuantity;

struct Range {
  Quantity quantity;
  double lowest;
  double highest;
};

/// Records of the earth, rounded outwards; humidity and cloud cover leave room for a model's rounding.
constexpr std::array kRanges = std::to_array<Range>({
    {Quantity::temperature, -100, 65},
    {Quantity::feltTemperature, -130, 100},
    {Quantity::dewPoint, -120, 45},
    {Quantity::percentage, 0, 101},
    {Quantity::humidity, 0, 110},
    {Quantity::pressure, 850, 1100},
    {Quantity::windSpeed, 0, 500},
    {Quantity::windDirection, -360, 720},
    {Quantity::visibility, 0, 500'000},
    {Quantity::uvIndex, 0, 50},
    {Quantity::precipitation, 0, 500},
    {Quantity::snowfall, 0, 200},
    {Quantity::precipitationOfDay, 0, 2000},
    {Quantity::snowfallOfDay, 0, 400},
});

constexpr bool rowsStandInOrder() {
  for (std::size_t i = 0; i < kRanges.size(); ++i) {
    if (kRanges[i].quantity != static_cast<Quantity>(i)) return false;
  }
  return kRanges.size() == static_cast<std::size_t>(Quantity::snowfallOfDay) + 1;
}
static_assert(rowsStandInOrder());

template <class Entry>
struct Member {
  Reading Entry::* reading;
  Quantity quantity;
};

constexpr Member<HourlyEntry> kHourly[] = {
    {&HourlyEntry::temperature2m, Quantity::temperature},
    {&HourlyEntry::relativeHumidity2m, Quantity::humidity},
    {&HourlyEntry::apparentTemperature, Quantity::feltTemperature},
    {&HourlyEntry::dewPoint2m, Quantity::dewPoint},
    {&HourlyEntry::cloudCover, Quantity::percentage},
    {&HourlyEntry::precipitationProbability, Quantity::percentage},
    {&HourlyEntry::thunderProbability, Quantity::percentage},
    {&HourlyEntry::fogProbability, Quantity::percentage},
    {&HourlyEntry::precipitation, Quantity::precipitation},
    {&HourlyEntry::snowfall, Quantity::snowfall},
    {&HourlyEntry::windSpeed10m, Quantity::windSpeed},
    {&HourlyEntry::windDirection10m, Quantity::windDirection},
    {&HourlyEntry::windGusts10m, Quantity::windSpeed},
    {&HourlyEntry::pressureMsl, Quantity::pressure},
    {&HourlyEntry::visibility, Quantity::visibility},
    {&HourlyEntry::uvIndex, Quantity::uvIndex},
};

constexpr Member<DailyEntry> kDaily[] = {
    {&DailyEntry::temperatureMax, Quantity::temperature},
    {&DailyEntry::temperatureMin, Quantity::temperature},
    {&DailyEntry::uvIndexMax, Quantity::uvIndex},
    {&DailyEntry::precipitationProbabilityMax, Quantity::percentage},
    {&DailyEntry::snowfallSum, Quantity::snowfallOfDay},
    {&DailyEntry::precipitationSum, Quantity::precipitationOfDay},
    {&DailyEntry::windSpeedMax, Quantity::windSpeed},
    {&DailyEntry::windDirectionDominant, Quantity::windDirection},
};

template <class Entry, std::size_t count>
void dropImpossibleOf(Entry& entry, Member<Entry> const (&members)[count]) {
  for (Member<Entry> const& member : members) {
    Reading& reading = entry.*member.reading;
    if (reading && !isPossible(member.quantity, *reading)) reading.reset();
  }
}

}  // namespace

bool isPossible(MeasuredQuantity quantity, double value) {
  Range const& range = kRanges[static_cast<std::size_t>(quantity)];
  return value >= range.lowest && value <= range.highest;
}

Reading possible(MeasuredQuantity quantity, Reading reading) {
  return reading && isPossible(quantity, *reading) ? reading : std::nullopt;
}

void dropImpossible(HourlyEntry& entry) {
  dropImpossibleOf(entry, kHourly);
}

void dropImpossible(DailyEntry& entry) {
  dropImpossibleOf(entry, kDaily);
}

}  // namespace nimbara

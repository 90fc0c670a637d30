#include "feeds/stations/public_stations.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

using enum StationQuantity;

constexpr double kLapsePerM = 0.0065;  // °C
constexpr double kMostDeviations = 3;
constexpr std::chrono::minutes kLife{30};

/// Below the least deviation nobody is an outlier: so far apart are good stations too.
struct SpreadRow {
  StationQuantity quantity;
  StationModuleKind kind;
  double leastDeviation;
};

constexpr SpreadRow kSpreads[] = {{temperature, StationModuleKind::outdoor, 0.5},
                                  {humidity, StationModuleKind::outdoor, 3},
                                  {pressure, StationModuleKind::base, 1},
                                  {windSpeed, StationModuleKind::wind, 4},
                                  {rainLastHour, StationModuleKind::rain, 0.3}};

struct Sample {
  double value = 0;
  Instant observedAt;
  std::size_t station = 0;
};

double medianOf(std::vector<double> values) {
  auto const middle = values.begin() + std::ssize(values) / 2;
  std::ranges::nth_element(values, middle);
  if (values.size() % 2 == 1) return *middle;
  return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

double medianOf(std::vector<Sample> const& samples) {
  std::vector<double> values;
  values.reserve(samples.size());
  for (Sample const& sample : samples) values.push_back(sample.value);
  return medianOf(std::move(values));
}

/// Those that are no outliers.
std::vector<Sample> believed(std::vector<Sample> samples, double leastDeviation) {
  if (samples.empty()) return samples;
  double const median = medianOf(samples);
  std::vector<double> deviations;
  deviations.reserve(samples.size());
  for (Sample const& sample : samples) deviations.push_back(std::abs(sample.value - median));
  double const most = kMostDeviations * std::max(medianOf(std::move(deviations)), leastDeviation);
  std::erase_if(samples, [&](Sample const& sample) { return std::abs(sample.value - median) > most; });
  return samples;
}

std::optional<double> medianAltitude(std::vector<StationReading> const& stations) {
  std::vector<double> altitudes;
  for (StationReading const& station : stations) {
    if (station.altitude) altitudes.push_back(*station.altitude);
  }
  return altitudes.empty() ? std::nullopt : std::optional(medianOf(std::move(altitudes)));
}

std::vector<Sample> samplesOf(std::vector<StationReading> const& stations, SpreadRow const& row,
                              std::optional<double> altitude, Instant now) {
  std::vector<Sample> samples;
  for (std::size_t i = 0; i < stations.size(); ++i) {
    for (StationModule const& module : stations[i].modules) {
      auto value = module.value(row.quantity);
      if (!value || !module.observedAt || std::chrono::abs(now - *module.observedAt) > kLife) continue;
      bool const isLowered = row.quantity == temperature && altitude && stations[i].altitude;
      if (isLowered) *value += (*stations[i].altitude - *altitude) * kLapsePerM;
      samples.push_back({*value, *module.observedAt, i});
      break;
    }
  }
  return samples;
}

}  // namespace

PublicStations publicStations(std::vector<StationReading> stations, Coordinate place,
                              std::optional<double> altitude, Instant now) {
  PublicStations all;
  auto const distance = [&](StationReading const& station) { return haversineKm(*station.place(), place); };
  std::erase_if(stations, [&](StationReading const& station) {
    return !station.place() || distance(station) > kPublicReachKm;
  });
  std::ranges::sort(stations, {}, distance);
  if (!altitude) altitude = medianAltitude(stations);
  for (SpreadRow const& row : kSpreads) {
    auto const samples = samplesOf(stations, row, altitude, now);
    auto const good = believed(samples, row.leastDeviation);
    if (row.quantity == temperature) {
      all.used = static_cast<int>(good.size());
      all.leftOut = static_cast<int>(samples.size() - good.size());
      for (Sample const& sample : samples) {
        if (std::ranges::find(good, sample.station, &Sample::station) == good.end())
          all.outliers.push_back(stations[sample.station].id);
      }
      for (Sample const& sample : good)
        all.withinKm = std::max(all.withinKm, distance(stations[sample.station]));
    }
    if (std::ssize(good) < kFewestPublic) continue;
    auto module = std::ranges::find(all.reading.modules, row.kind, &StationModule::kind);
    if (module == all.reading.modules.end()) {
      all.reading.modules.push_back({.id = std::string(enumName(row.kind)), .kind = row.kind});
      module = std::prev(all.reading.modules.end());
    }
    Instant const oldest = std::ranges::min_element(good, {}, &Sample::observedAt)->observedAt;
    module->observedAt = module->observedAt ? std::min(*module->observedAt, oldest) : oldest;
    module->add(row.quantity, medianOf(good));
  }
  all.reading.id = "around";
  all.reading.latitude = place.latitude;
  all.reading.longitude = place.longitude;
  all.reading.altitude = altitude;
  all.nearest = std::move(stations);
  return all;
}

}  // namespace nimbara

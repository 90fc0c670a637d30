#include "zones_by_area.h"

#include <algorithm>
#include <cstring>

namespace nimbara::gazetteer {

namespace {

constexpr std::size_t kSamples = 24;

bool passesEastOf(Coordinate point, Coordinate a, Coordinate b) {
  if ((a.latitude > point.latitude) == (b.latitude > point.latitude)) return false;
  double const share = (point.latitude - a.latitude) / (b.latitude - a.latitude);
  return point.longitude < a.longitude + share * (b.longitude - a.longitude);
}

bool encloses(CountryOutline const& outline, Coordinate point) {
  bool odd = false;
  for (Ring const& ring : outline.rings) {
    for (std::size_t i = 0; i < ring.size(); ++i)
      odd ^= passesEastOf(point, ring[i], ring[(i + 1) % ring.size()]);
  }
  return odd;
}

template <class Record>
Record recordAt(TableFile const& file, Section section, std::size_t number) {
  Record record;
  std::memcpy(&record, file.bytes(section).data() + number * sizeof record, sizeof record);
  return record;
}

double degrees(double cells, double origin) {
  return cells / kCellsPerDegree + origin;
}

/// Zone -> the middle of each of its runs.
std::map<std::uint16_t, std::vector<Coordinate>> runMiddles(TableFile const& file) {
  std::map<std::uint16_t, std::vector<Coordinate>> middles;
  for (std::size_t row = 0; row < kZoneRows; ++row) {
    auto const end = recordAt<std::uint32_t>(file, Section::zoneRows, row + 1);
    for (auto i = recordAt<std::uint32_t>(file, Section::zoneRows, row); i < end; ++i) {
      auto const run = recordAt<ZoneRun>(file, Section::zoneRuns, i);
      double const behind = i + 1 < end ? firstColumnOf(recordAt<ZoneRun>(file, Section::zoneRuns, i + 1))
                                        : static_cast<double>(kZoneColumns);
      middles[static_cast<std::uint16_t>(zoneOf(run))].push_back(
          {degrees(static_cast<double>(row) + 0.5, -90), degrees((firstColumnOf(run) + behind) / 2, -180)});
    }
  }
  return middles;
}

/// Evenly spread over the list.
std::vector<Coordinate> samplesOf(std::vector<Coordinate> const& all) {
  std::size_t const count = std::min(kSamples, all.size());
  std::vector<Coordinate> samples;
  samples.reserve(count);
  for (std::size_t i = 0; i < count; ++i) samples.push_back(all[i * all.size() / count]);
  return samples;
}

}  // namespace

void addZonesByArea(std::vector<CountryOutline> const& outlines, TableFile const& file,
                    CountryNumbers& countries) {
  auto middles = runMiddles(file);
  middles.erase(0);
  for (auto const& [zone, all] : middles) {
    auto const samples = samplesOf(all);
    std::map<std::string, std::size_t> inside;
    for (Coordinate const& sample : samples) {
      for (CountryOutline const& outline : outlines)
        inside[outline.country] += encloses(outline, sample) ? 1 : 0;
    }
    auto const most = std::ranges::max_element(inside, {}, [](auto const& entry) { return entry.second; });
    if (most->second > 0) countries.addZone(countries.number(most->first), zone);
  }
}

}  // namespace nimbara::gazetteer

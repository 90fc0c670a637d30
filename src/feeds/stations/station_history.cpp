#include "feeds/stations/station_history.h"

#include "base/files/private_folders.h"
#include "base/json/json_codec.h"
#include "feeds/fetching/kept_record.h"
#include "feeds/stations/station_overlay.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::size_t kLargest = std::size_t{512} << 10;

struct KeptHistory {
  std::string station;
  std::vector<StationSample> samples;
};

std::string keyOf(std::string const& link, StationReading const& station) {
  return link + " " + station.id;
}

}  // namespace

template <>
inline constexpr auto jsonFields<KeptHistory> =
    FieldList{field("station", &KeptHistory::station), field("samples", &KeptHistory::samples)};

std::optional<StationSample> sampleOf(StationReading const& station, Instant now) {
  StationSample sample;
  auto const take = [&](StationQuantity quantity, std::optional<double>& member) {
    auto const measured = measuredNow(station, quantity, now);
    if (!measured) return;
    member = measured->value;
    sample.at = std::max(sample.at, measured->observedAt);
  };
  take(StationQuantity::temperature, sample.temperature);
  take(StationQuantity::windSpeed, sample.windSpeed);
  take(StationQuantity::pressure, sample.pressure);
  bool const isEmpty = !sample.temperature && !sample.windSpeed && !sample.pressure;
  return isEmpty ? std::nullopt : std::optional(sample);
}

std::vector<StationSample> withSample(std::vector<StationSample> samples, StationSample const& sample,
                                      Instant now) {
  std::erase_if(samples, [&](StationSample const& each) {
    return now - each.at > kStationHistory || each.at > now + kStationSampling;
  });
  auto const spanOf = [](Instant at) {
    return std::chrono::floor<std::chrono::minutes>(at).time_since_epoch() / kStationSampling;
  };
  bool const isNew = samples.empty() || spanOf(sample.at) > spanOf(samples.back().at);
  if (isNew) samples.push_back(sample);
  return samples;
}

void StationHistory::note(std::string const& link, StationReading const& station, Instant now) const {
  auto const sample = sampleOf(station, now);
  if (file_.empty() || !sample) return;
  std::vector<StationSample> const before = read(link, station, now);
  KeptHistory record{keyOf(link, station), withSample(before, *sample, now)};
  if (record.samples == before) return;
  makePrivateFolders(file_.parent_path());
  // Without its file the chart begins later; nothing else is lost by it.
  std::ignore = writeFileAtomically(file_, encodeJson(record));
}

std::vector<StationSample> StationHistory::read(std::string const& link, StationReading const& station,
                                                Instant now) const {
  if (file_.empty()) return {};
  auto kept = keptRecord<KeptHistory>(file_, kLargest);
  if (!kept || kept->station != keyOf(link, station)) return {};
  std::erase_if(kept->samples, [&](StationSample const& each) {
    return now - each.at > kStationHistory || each.at > now + kStationSampling;
  });
  return std::move(kept->samples);
}

void StationHistory::remove() const {
  std::error_code ignored;
  if (!file_.empty()) std::filesystem::remove(file_, ignored);
}

}  // namespace nimbara

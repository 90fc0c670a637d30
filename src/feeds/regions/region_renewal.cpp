#include "feeds/regions/region_renewal.h"

#include "base/files/file.h"
#include "base/text/text.h"
#include "feeds/regions/meteo_alarm_countries.h"
#include "feeds/regions/regions.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::hours kMonth = 30 * 24h;
constexpr std::chrono::hours kDay = 24h;
constexpr std::size_t kLongestDate = 64;

bool hasOutlines(std::string const& country) {
  static std::map<std::string, std::size_t> const countries = embeddedRegions()->countByCountry();
  return countries.contains(country);
}

}  // namespace

RegionRenewal::RegionRenewal(HttpClient& http, Clock const& clock, std::string baseUrl,
                             std::filesystem::path dataDirectory)
    : http_(http), clock_(clock), baseUrl_(std::move(baseUrl)), folder_(std::move(dataDirectory)) {}

std::optional<Instant> RegionRenewal::dueAt() const {
  auto const kept = readFile(folder_ / "regions.due", kLongestDate);
  return kept ? parseIso8601(trimmed(*kept)) : std::nullopt;
}

/// A folder that cannot be written to is looked into again and again, so nothing is fetched for it either.
void RegionRenewal::lookAgainAt(Instant when) const {
  std::ignore = writeFileAtomically(folder_ / "regions.due", formatIso8601(when) + "\n");
}

/// A date beyond a month is of a clock that was wrong.
bool RegionRenewal::isDue(std::span<Coordinate const> places) const {
  if (folder_.empty()) return false;
  auto const due = dueAt();
  if (due && clock_.now() < *due && *due - clock_.now() <= kMonth) return false;
  return std::ranges::any_of(
      places, [](Coordinate place) { return hasOutlines(warningCountry(describePlace(place).countryCode)); });
}

Result<std::optional<RegionUpdate>, std::string> RegionRenewal::run(std::stop_token const& stop) {
  std::unique_lock const lock(running_, std::try_to_lock);
  if (!lock) return std::nullopt;
  lookAgainAt(clock_.now() + kDay);
  if (!dueAt()) return std::unexpected("the folder of data cannot be written to");
  auto const file = regionFileIn(folder_);
  auto update =
      updateRegions(http_, baseUrl_, file,
                    {embeddedRegions().get(), std::string(Regions(file).outlines()->edition())}, stop);
  if (!update) return std::unexpected(update.error());
  lookAgainAt(clock_.now() + kMonth);
  return update->regions == 0 ? std::nullopt : std::optional(std::move(*update));
}

}  // namespace nimbara

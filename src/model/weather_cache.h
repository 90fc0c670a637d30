// Keeps recent forecasts: raw answers in memory, so that a second look costs no request, and processed
// forecasts in a folder, so that a place shows at once, before or without the network. Several threads and
// several processes may use one folder at a time. Best effort: a failed write loses nothing but speed, a file
// that cannot be read is as good as none, and nothing half-written is ever read. Never asks the network.
#pragma once

#include "base/geodesy.h"
#include "base/time/instant.h"
#include "model/forecast_insight.h"
#include "model/provider_option.h"
#include "model/weather_data.h"
#include "model/wttr_response.h"
#include "platform/clock.h"

#include <filesystem>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

/// One raw answer in memory.
struct CacheEntry {
  Instant timestamp;  ///< when the answer arrived
  WttrResponse response;
  std::optional<WeatherProviderOption> provider;  ///< the one that answered
};

template <>
inline constexpr auto jsonFields<CacheEntry> =
    FieldList{field("timestamp", &CacheEntry::timestamp), field("response", &CacheEntry::response),
              field("_nimbaraProvider", &CacheEntry::provider)};

/// One file on disk.
struct ParsedCacheEntry {
  Instant responseTimestamp;  ///< when the provider's answer arrived
  WeatherData data;
  ForecastInsight insight;
  std::optional<WeatherProviderOption> provider;  ///< the one that answered
  std::optional<bool> standIn;                    ///< true for what a test server made up

  bool operator==(ParsedCacheEntry const&) const = default;
};

template <>
inline constexpr auto jsonFields<ParsedCacheEntry> = FieldList{
    field("responseTimestamp", &ParsedCacheEntry::responseTimestamp), field("data", &ParsedCacheEntry::data),
    fieldOr("insight", &ParsedCacheEntry::insight), field("_nimbaraProvider", &ParsedCacheEntry::provider),
    field("_nimbaraStandIn", &ParsedCacheEntry::standIn)};

/// Whether something of that moment is younger than `ttl`. What seems to come from the future, as after the
/// clock was set back, is not fresh.
bool isFresh(Instant timestamp, Instant now, std::chrono::milliseconds ttl);

class WeatherCache {
 public:
  static constexpr std::chrono::seconds kTtl{900};
  static constexpr std::size_t kMemoryCapacity = 8;

  enum class Source { services, standIn };

  /// Without a directory nothing outlives the process. What a test server made up is marked in
  /// its file, and is not taken for a forecast by runs that ask the services themselves.
  WeatherCache(std::filesystem::path cacheDirectory, Clock const& clock, Source source = Source::services,
               std::chrono::seconds ttl = kTtl);

  /// Keeps a raw answer that arrived now; beyond eight keys the least recently used is dropped.
  void store(std::string_view key, WttrResponse response, std::optional<WeatherProviderOption> provider = {});
  /// The raw answer when it is younger than the limit.
  std::optional<WttrResponse> fetch(std::string_view key);
  /// The same with what is known about it.
  std::optional<CacheEntry> fetchEntry(std::string_view key);

  /// Replaces the file of that place.
  void store(std::string_view key, ParsedCacheEntry entry);
  /// The file of that place, however old.
  std::optional<ParsedCacheEntry> load(std::string_view key);

  /// The key of the place that was shown last.
  void saveLastLocation(std::string_view key);
  std::optional<std::string> loadLastLocation();

  std::filesystem::path const& cacheDirectory() const { return cacheDirectory_; }
  std::chrono::seconds ttl() const { return ttl_; }

  /// SHA-256 of the trimmed, lower-cased key, so that a file's name does not show the place.
  static std::string fileName(std::string_view key);

 private:
  void markUsed(std::string const& key);

  std::filesystem::path cacheDirectory_;
  Clock const& clock_;
  Source source_;
  std::chrono::seconds ttl_;
  std::once_flag swept_;
  std::mutex turn_;
  std::map<std::string, CacheEntry, std::less<>> memoryCache_;
  std::list<std::string> memoryAccessOrder_;  ///< least recently used first
};

/// The key of a coordinate: "52.52,13.41".
std::string cacheKey(Coordinate place);

}  // namespace nimbara

#include "model/weather_cache.h"

#include "base/files/file.h"
#include "base/sha256.h"
#include "base/text/number.h"
#include "base/text/text.h"

namespace nimbara {

namespace {

/// Far above any forecast: a file that is larger was not written by us.
constexpr std::size_t kLargestFile = std::size_t{8} << 20;
constexpr std::size_t kLongestKey = 1024;
constexpr std::string_view kLastLocation = "_last_location.txt";

/// What a writer that was killed left is taken away once nobody can be writing it any more.
constexpr std::chrono::hours kOldestTemporary{1};

void sweepTemporaries(std::filesystem::path const& folder) {
  namespace fs = std::filesystem;
  auto const oldest = fs::file_time_type::clock::now() - kOldestTemporary;
  std::error_code ignored;
  for (fs::directory_iterator entry(folder, ignored), end; entry != end; entry.increment(ignored)) {
    bool const isTemporary = entry->path().filename().string().starts_with('.');
    if (isTemporary && entry->last_write_time(ignored) < oldest) fs::remove(entry->path(), ignored);
  }
}

std::string normalized(std::string_view key) {
  return asciiLowered(trimmed(key));
}

}  // namespace

bool isFresh(Instant timestamp, Instant now, std::chrono::milliseconds ttl) {
  return timestamp <= now && now - timestamp < ttl;
}

std::string cacheKey(Coordinate place) {
  return plainDecimal(place.latitude) + "," + plainDecimal(place.longitude);
}

WeatherCache::WeatherCache(std::filesystem::path cacheDirectory, Clock const& clock, Source source,
                           std::chrono::seconds ttl)
    : cacheDirectory_(std::move(cacheDirectory)), clock_(clock), source_(source), ttl_(ttl) {}

std::string WeatherCache::fileName(std::string_view key) {
  return sha256Hex(normalized(key)) + ".json";
}

void WeatherCache::markUsed(std::string const& key) {
  memoryAccessOrder_.remove(key);
  memoryAccessOrder_.push_back(key);
}

void WeatherCache::store(std::string_view key, WttrResponse response,
                         std::optional<WeatherProviderOption> provider) {
  std::string const name = normalized(key);
  std::lock_guard const turn(turn_);
  memoryCache_[name] = {clock_.now(), std::move(response), provider};
  markUsed(name);
  while (memoryCache_.size() > kMemoryCapacity) {
    memoryCache_.erase(memoryAccessOrder_.front());
    memoryAccessOrder_.pop_front();
  }
}

std::optional<WttrResponse> WeatherCache::fetch(std::string_view key) {
  auto entry = fetchEntry(key);
  if (!entry) return std::nullopt;
  return std::move(entry->response);
}

std::optional<CacheEntry> WeatherCache::fetchEntry(std::string_view key) {
  std::string const name = normalized(key);
  std::lock_guard const turn(turn_);
  auto const found = memoryCache_.find(name);
  if (found == memoryCache_.end() || !isFresh(found->second.timestamp, clock_.now(), ttl_)) {
    return std::nullopt;
  }
  markUsed(name);
  return found->second;
}

void WeatherCache::store(std::string_view key, ParsedCacheEntry entry) {
  if (cacheDirectory_.empty()) return;
  if (source_ == Source::standIn) entry.standIn = true;
  std::string const bytes = encodeJson(entry);
  std::lock_guard const turn(turn_);
  std::call_once(swept_, [this] { sweepTemporaries(cacheDirectory_); });
  // The cache is best effort: where nothing can be written, the next start asks the network again.
  std::ignore = writeFileAtomically(cacheDirectory_ / fileName(key), bytes);
}

std::optional<ParsedCacheEntry> WeatherCache::load(std::string_view key) {
  if (cacheDirectory_.empty()) return std::nullopt;
  auto const bytes = [&] {
    std::lock_guard const turn(turn_);
    return readFile(cacheDirectory_ / fileName(key), kLargestFile);
  }();
  if (!bytes) return std::nullopt;
  auto entry = decodeJson<ParsedCacheEntry>(*bytes);
  bool const isForeign = entry && entry->standIn == true && source_ == Source::services;
  if (!entry || isForeign) return std::nullopt;
  return std::move(*entry);
}

void WeatherCache::saveLastLocation(std::string_view key) {
  if (cacheDirectory_.empty()) return;
  std::lock_guard const turn(turn_);
  std::ignore = writeFileAtomically(cacheDirectory_ / kLastLocation, key);
}

std::optional<std::string> WeatherCache::loadLastLocation() {
  if (cacheDirectory_.empty()) return std::nullopt;
  std::lock_guard const turn(turn_);
  auto const bytes = readFile(cacheDirectory_ / kLastLocation, kLongestKey);
  if (!bytes || trimmed(*bytes).empty()) return std::nullopt;
  return std::string(trimmed(*bytes));
}

}  // namespace nimbara

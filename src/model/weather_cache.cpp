#include "model/weather_cache.h"

#include "base/files/file.h"
#include "base/sha256.h"
#include "base/text/number.h"
#include "base/text/text.h"

#include <algorithm>
#include <memory>

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

/// What the files held that were read last. The background service looks at the forecasts of its places once
/// a minute, and they change a few times an hour: only a file that somebody has written since is read again.
class RecentFiles {
 public:
  struct Stamp {
    std::filesystem::file_time_type written;
    std::uintmax_t size = 0;
    bool operator==(Stamp const&) const = default;
  };
  using Entry = std::shared_ptr<ParsedCacheEntry const>;

  static RecentFiles& ofThisProcess() {
    static RecentFiles files;
    return files;
  }
  static std::optional<Stamp> stampOf(std::filesystem::path const& file) {
    std::error_code failure;
    Stamp stamp{std::filesystem::last_write_time(file, failure), {}};
    if (!failure) stamp.size = std::filesystem::file_size(file, failure);
    return failure ? std::nullopt : std::optional(stamp);
  }

  Entry find(std::filesystem::path const& file, Stamp const& stamp) {
    std::lock_guard const lock(mutex_);
    auto const found = std::ranges::find(files_, file, &Known::file);
    if (found == files_.end() || found->stamp != stamp) return nullptr;
    files_.splice(files_.end(), files_, found);
    return found->entry;
  }
  void keep(std::filesystem::path const& file, Stamp const& stamp, Entry entry) {
    std::lock_guard const lock(mutex_);
    std::erase_if(files_, [&](Known const& known) { return known.file == file; });
    files_.push_back({file, stamp, std::move(entry)});
    if (files_.size() > WeatherCache::kMemoryCapacity) files_.pop_front();
  }
  /// For who writes it: two files within a tick of the clock look alike.
  void forget(std::filesystem::path const& file) {
    std::lock_guard const lock(mutex_);
    std::erase_if(files_, [&](Known const& known) { return known.file == file; });
  }

 private:
  struct Known {
    std::filesystem::path file;
    Stamp stamp;
    Entry entry;
  };
  std::mutex mutex_;
  std::list<Known> files_;  // least recently used first
};

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
  std::filesystem::path const file = cacheDirectory_ / fileName(key);
  std::ignore = writeFileAtomically(file, bytes);
  RecentFiles::ofThisProcess().forget(file);
}

std::optional<ParsedCacheEntry> WeatherCache::load(std::string_view key) {
  if (cacheDirectory_.empty()) return std::nullopt;
  std::filesystem::path const file = cacheDirectory_ / fileName(key);
  RecentFiles& recent = RecentFiles::ofThisProcess();
  auto const stamp = RecentFiles::stampOf(file);  // before the reading: who writes meanwhile makes it another
  RecentFiles::Entry entry = stamp ? recent.find(file, *stamp) : nullptr;
  if (!entry) {
    auto const bytes = [&] {
      std::lock_guard const turn(turn_);
      return readFile(file, kLargestFile);
    }();
    if (!bytes) return std::nullopt;
    auto decoded = decodeJson<ParsedCacheEntry>(*bytes);
    if (!decoded) return std::nullopt;
    entry = std::make_shared<ParsedCacheEntry const>(std::move(*decoded));
    if (stamp) recent.keep(file, *stamp, entry);
  }
  bool const isForeign = entry->standIn == true && source_ == Source::services;
  if (isForeign) return std::nullopt;
  return *entry;
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

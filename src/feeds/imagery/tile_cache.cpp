#include "feeds/imagery/tile_cache.h"

#include "base/files/file.h"
#include "base/sha256.h"

#include <algorithm>
#include <vector>

namespace nimbara {

namespace {

constexpr std::size_t kLargest = std::size_t{4} << 20;

}  // namespace

TileCache::TileCache(std::filesystem::path folder, std::uintmax_t mostBytes)
    : folder_(std::move(folder)), mostBytes_(mostBytes) {}

std::optional<std::string> TileCache::find(std::string const& key) {
  if (folder_.empty()) return std::nullopt;
  std::string const name = sha256Hex(key);
  auto bytes = readFile(folder_ / name, kLargest);
  if (!bytes) return std::nullopt;
  std::lock_guard const lock(mutex_);
  look();
  note(name, bytes->size());
  return std::move(*bytes);
}

void TileCache::keep(std::string const& key, std::string_view bytes) {
  if (folder_.empty() || bytes.size() > std::min<std::uintmax_t>(kLargest, mostBytes_)) return;
  std::string const name = sha256Hex(key);
  if (!writeFileAtomically(folder_ / name, bytes)) return;
  std::lock_guard const lock(mutex_);
  look();
  note(name, bytes.size());
  makeRoom();
}

/// Once: what earlier runs have left.
void TileCache::look() {
  if (hasLooked_) return;
  hasLooked_ = true;
  std::error_code error;
  for (auto const& entry : std::filesystem::directory_iterator(folder_, error)) {
    std::error_code ofEntry;
    auto const size = entry.file_size(ofEntry);
    auto const used = entry.last_write_time(ofEntry);
    if (ofEntry) continue;
    kept_[entry.path().filename().string()] = {size, used};
    bytes_ += size;
  }
}

/// It was used now, which its file remembers for later runs.
void TileCache::note(std::string const& name, std::uintmax_t bytes) {
  Kept& kept = kept_[name];
  bytes_ += bytes - kept.bytes;
  auto const now = std::filesystem::file_time_type::clock::now();
  // Two uses within one tick of the file system's clock keep their order here.
  auto const last = std::ranges::max_element(kept_, {}, [](auto const& entry) { return entry.second.used; });
  kept = {bytes, std::max(now, last->second.used + std::chrono::nanoseconds(1))};
  std::error_code ignored;
  std::filesystem::last_write_time(folder_ / name, kept.used, ignored);
}

void TileCache::makeRoom() {
  if (bytes_ <= mostBytes_) return;
  std::vector<std::pair<std::filesystem::file_time_type, std::string>> oldest;
  oldest.reserve(kept_.size());
  for (auto const& [name, kept] : kept_) oldest.emplace_back(kept.used, name);
  std::ranges::sort(oldest);
  // Somewhat more than needed, so that not every picture makes room.
  auto const wanted = mostBytes_ - mostBytes_ / 16;
  for (auto const& [used, name] : oldest) {
    if (bytes_ <= wanted || kept_.size() == 1) return;
    std::error_code ignored;
    std::filesystem::remove(folder_ / name, ignored);
    bytes_ -= kept_[name].bytes;
    kept_.erase(name);
  }
}

}  // namespace nimbara

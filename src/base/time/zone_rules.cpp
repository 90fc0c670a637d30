#include "base/time/zone_rules.h"

#include <algorithm>
#include <cstdint>

namespace nimbara {

namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr std::size_t kHeaderSize = 44;
/// The widest that the format allows.
constexpr seconds kFarthestWest = -std::chrono::hours(25);
constexpr seconds kFarthestEast = std::chrono::hours(26);

/// A whole number of `size` bytes, the highest first.
std::int64_t numberAt(std::string_view bytes, std::size_t at, std::size_t size) {
  auto const isNegative = (static_cast<unsigned char>(bytes[at]) & 0x80U) != 0;
  std::uint64_t value = isNegative ? ~std::uint64_t{0} : 0;
  for (std::size_t i = 0; i < size; ++i) value = (value << 8U) | static_cast<unsigned char>(bytes[at + i]);
  return static_cast<std::int64_t>(value);
}

struct Header {
  char version = 0;
  std::size_t utcFlags = 0, standardFlags = 0, leapSeconds = 0, changes = 0, types = 0, characters = 0;

  std::size_t dataSize(std::size_t timeSize) const {
    return changes * (timeSize + 1) + types * 6 + characters + leapSeconds * (timeSize + 4) + standardFlags +
           utcFlags;
  }
};

std::optional<Header> headerOf(std::string_view bytes) {
  constexpr std::int64_t kMost = 1'000'000;
  if (bytes.size() < kHeaderSize || !bytes.starts_with("TZif")) return std::nullopt;
  Header header;
  header.version = bytes[4];
  std::size_t at = 20;
  for (std::size_t* const count : {&header.utcFlags, &header.standardFlags, &header.leapSeconds,
                                   &header.changes, &header.types, &header.characters}) {
    std::int64_t const number = numberAt(bytes, at, 4);
    if (number < 0 || number > kMost) return std::nullopt;
    *count = static_cast<std::size_t>(number);
    at += 4;
  }
  return header;
}

/// The offsets of the zone's local time types; empty when one is out of range.
std::vector<seconds> typesOf(std::string_view data, Header const& header, std::size_t timeSize) {
  std::vector<seconds> types;
  types.reserve(header.types);
  for (std::size_t i = 0; i < header.types; ++i) {
    seconds const offset(numberAt(data, header.changes * (timeSize + 1) + i * 6, 4));
    if (offset < kFarthestWest || offset > kFarthestEast) return {};
    types.push_back(offset);
  }
  return types;
}

std::optional<std::vector<ZoneRules::Change>> changesOf(std::string_view data, Header const& header,
                                                        std::size_t timeSize,
                                                        std::vector<seconds> const& types) {
  std::vector<ZoneRules::Change> changes;
  changes.reserve(header.changes);
  for (std::size_t i = 0; i < header.changes; ++i) {
    sys_seconds const moment(seconds(numberAt(data, i * timeSize, timeSize)));
    auto const type = static_cast<unsigned char>(data[header.changes * timeSize + i]);
    if (type >= types.size() || (!changes.empty() && moment <= changes.back().moment)) return std::nullopt;
    changes.push_back({moment, types[type]});
  }
  return changes;
}

/// The text between the two line breaks that end the file; an empty one says nothing about later times.
std::optional<PosixZone> footerOf(std::string_view bytes) {
  if (bytes.size() < 2 || bytes.front() != '\n') return std::nullopt;
  std::string_view const text = bytes.substr(1);
  return parsePosixZone(text.substr(0, text.find('\n')));
}

}  // namespace

ZoneRules::ZoneRules(seconds first, std::vector<Change> changes, std::optional<PosixZone> later)
    : first_(first), changes_(std::move(changes)), later_(later) {}

std::optional<ZoneRules> ZoneRules::fromTzif(std::string_view bytes) {
  auto header = headerOf(bytes);
  if (!header) return std::nullopt;
  std::size_t timeSize = 4;
  std::size_t begin = kHeaderSize;
  // From version 2 on the first block is for old readers, and one of 64-bit times follows it.
  if (header->version >= '2') {
    begin += header->dataSize(timeSize);
    if (begin > bytes.size()) return std::nullopt;
    header = headerOf(bytes.substr(begin));
    if (!header) return std::nullopt;
    timeSize = 8;
    begin += kHeaderSize;
  }
  if (header->leapSeconds > 0 || bytes.size() - begin < header->dataSize(timeSize)) return std::nullopt;
  std::string_view const data = bytes.substr(begin, header->dataSize(timeSize));
  std::vector<seconds> const types = typesOf(data, *header, timeSize);
  if (types.empty()) return std::nullopt;
  auto changes = changesOf(data, *header, timeSize, types);
  if (!changes) return std::nullopt;
  return ZoneRules(types.front(), *std::move(changes), footerOf(bytes.substr(begin + data.size())));
}

seconds ZoneRules::offset(sys_seconds moment) const {
  bool const isLater = changes_.empty() || moment >= changes_.back().moment;
  if (isLater && later_) return later_->offset(moment);
  auto const after = std::ranges::upper_bound(changes_, moment, {}, &Change::moment);
  return after == changes_.begin() ? first_ : std::prev(after)->offset;
}

}  // namespace nimbara

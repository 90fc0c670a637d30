// Reading records and texts out of a map's sections, which may be corrupt: every position is checked.
#pragma once

#include "regions/region_map_layout.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace nimbara::region_map {

/// `number` must be one of the section's.
template <class Record>
Record recordAt(std::string_view section, std::size_t number) {
  Record record;
  std::memcpy(&record, section.data() + number * sizeof record, sizeof record);
  return record;
}

template <class Record>
std::size_t countIn(std::string_view section) {
  return section.size() / sizeof(Record);
}

/// The text that begins there; empty beyond the end.
inline std::string_view textAt(std::string_view texts, std::uint32_t place) {
  if (place >= texts.size()) return {};
  std::string_view const rest = texts.substr(place);
  return rest.substr(0, rest.find('\0'));
}

/// What a section leaves of a range; corrupt files have ranges beyond it.
inline std::size_t endWithin(std::size_t first, std::size_t count, std::size_t size) {
  return first >= size ? first : first + std::min(count, size - first);
}

/// The next point of an arc. Corrupt files step beyond all numbers.
inline OutlinePoint stepped(OutlinePoint from, Step step) {
  auto const sum = [](std::int32_t number, std::int16_t more) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(number) + static_cast<std::uint32_t>(more));
  };
  return {sum(from.latitude, step.north), sum(from.longitude, step.east)};
}

}  // namespace nimbara::region_map

// Coordinate -> country, region names and region codes, all offline: from the gazetteer and, once they have
// been fetched, the outlines of warning regions. Owned by whoever asks for warnings. Any thread may ask.
#pragma once

#include "feeds/region_map.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace nimbara {

class Regions {
 public:
  /// `file` is looked for at the first question, not before.
  explicit Regions(std::filesystem::path file) : file_(std::move(file)) {}

  PlaceRegions at(Coordinate place) const;

  /// Why the outlines cannot be used; nothing when they can be or were never fetched.
  std::optional<std::string> problem() const;

 private:
  RegionMap const* map() const;

  std::filesystem::path file_;
  mutable std::once_flag opened_;
  mutable std::optional<RegionMap> map_;
  mutable std::optional<std::string> problem_;
};

/// What the gazetteer and the regions of the outlines, the smallest first, say of a place together.
PlaceRegions placeRegionsOf(Coordinate place, std::span<MappedRegion const> outlined);

}  // namespace nimbara

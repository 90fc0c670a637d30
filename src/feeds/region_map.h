// Coordinate -> warning regions, from one compact file that is read where it lies: a grid of cells of one
// degree leads to the regions whose outlines are worth a look. Says nothing of countries without outlines.
// Any thread may ask.
#pragma once

#include "base/mapped_file.h"
#include "feeds/region_outline.h"

#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// The texts live as long as the map.
struct MappedRegion {
  std::string_view registry;
  std::string_view code;
  std::string_view country;
  std::string_view name;

  bool operator==(MappedRegion const&) const = default;
};

/// A place on no region's ground, such as a pier, belongs to the region that is nearest within this.
inline constexpr double kRegionReachKm = 3;

class RegionMap {
 public:
  /// The error is a sentence that names the file. Whatever the file holds, look-ups stay within it.
  static Result<RegionMap, std::string> open(std::filesystem::path const& file);
  /// The same over bytes that outlive the map; the error says what is wrong with them.
  static Result<RegionMap, std::string> over(std::string_view bytes);

  /// The regions that the coordinate lies in, the smallest first.
  std::vector<MappedRegion> at(Coordinate place) const;

  std::size_t size() const { return regionCount_; }
  /// How many regions each country has.
  std::map<std::string, std::size_t> countByCountry() const;

 private:
  RegionMap() = default;

  friend class RegionSearch;

  MappedFile file_ = MappedFile::none();
  std::string_view regions_;
  std::string_view rings_;
  std::string_view points_;
  std::string_view cells_;
  std::string_view texts_;
  std::size_t regionCount_ = 0;
};

/// The bytes of a map of these regions.
std::string regionMapOf(std::span<RegionOutline const> outlines);

}  // namespace nimbara

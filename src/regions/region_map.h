// Coordinate -> warning regions, from one compact file that is read where it lies: a grid of cells of one
// degree leads to the regions whose outlines are worth a look. Says nothing of countries without outlines.
// A look-up takes nothing from the heap. Any thread may ask.
#pragma once

#include "base/files/mapped_file.h"
#include "regions/region_outline.h"

#include <array>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// The texts live as long as the map.
struct MappedRegion {
  std::string_view registry;
  std::string_view code;
  std::string_view country;
  std::string_view name;  ///< empty where it names no region among others
  bool isSea = false;
  double km = 0;  ///< of the place from the region's border; 0 within

  bool operator==(MappedRegion const&) const = default;
};

/// What a look-up found; beyond its room the largest regions are left out.
class FoundRegions {
 public:
  static constexpr std::size_t kMost = 24;

  MappedRegion const* begin() const { return regions_.data(); }
  MappedRegion const* end() const { return regions_.data() + size_; }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

 private:
  friend class RegionSearch;

  std::array<MappedRegion, kMost> regions_;
  std::size_t size_ = 0;
};

/// A place in its country that no land region holds belongs to the nearest one within this: outlines of land
/// end at a shore that is drawn more coarsely than towns are built.
inline constexpr double kLandReachKm = 25;
/// Who lives so near a sea region's shore is concerned by its warnings.
inline constexpr double kSeaReachKm = 5;

class RegionMap {
 public:
  /// The error is a sentence that names the file. Whatever the file holds, look-ups stay within it.
  static Result<RegionMap, std::string> open(std::filesystem::path const& file);
  /// The same over bytes that outlive the map; the error says what is wrong with them.
  static Result<RegionMap, std::string> over(std::string_view bytes);

  /// The land regions of the country that hold the place, the smallest first, or else the nearest within
  /// `kLandReachKm`; then its sea regions that hold the place or are within `kSeaReachKm`, the nearest first.
  /// Without a country the regions of all countries count, and land only where it holds the place.
  FoundRegions at(Coordinate place, std::string_view country = {}) const;

  /// The other registries' codes of an EMMA_ID region.
  std::vector<RegionCode> aliasesOf(std::string_view region) const;

  /// The region's border as rings of corners, for drawing it; an odd number of them encloses what is inside.
  /// Whichever registry the code is of; empty for a region that the map does not have.
  std::vector<std::vector<Coordinate>> outlineOf(RegionCode const& code) const;

  /// Everything that the map holds, as it can be packed again.
  OutlineSet outlines() const;

  /// Whether the code is that of a region of the map, in whichever registry.
  bool knows(RegionCode const& code) const;
  /// Whether a region of the map is called so, as `searchFolded` writes it.
  bool hasName(std::string_view folded) const;

  /// The day of the outlines' edition ("2026-02-20") or the name of their document; may be empty.
  std::string_view edition() const;
  std::size_t size() const { return regionCount_; }
  std::size_t bytes() const { return byteCount_; }
  /// How many regions each country has.
  std::map<std::string, std::size_t> countByCountry() const;

 private:
  RegionMap() = default;

  OutlineArc arcAt(std::size_t number) const;

  friend class RegionSearch;

  MappedFile file_ = MappedFile::none();
  std::string_view regions_;
  std::string_view arcs_;
  std::string_view borders_;
  std::string_view cells_;
  std::string_view aliases_;
  std::string_view steps_;
  std::string_view names_;
  std::string_view texts_;
  std::uint32_t edition_ = 0;
  std::size_t regionCount_ = 0;
  std::size_t byteCount_ = 0;
};

/// The bytes of a map of these regions.
std::string regionMapOf(OutlineSet const& set);

}  // namespace nimbara

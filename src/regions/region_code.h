// The code of a warning region in one of the registries that services use, and what is known of a place in
// these terms. Plain values.
#pragma once

#include "base/json/json.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

class RegionMap;

/// "EMMA_ID" and "DE356"; other registries are NUTS3, NUTS2, CISORP, FIPS and WARNCELLID.
struct RegionCode {
  std::string registry;
  std::string code;

  auto operator<=>(RegionCode const&) const = default;
};

inline constexpr std::string_view kNuts3Registry = "NUTS3";
inline constexpr std::string_view kEmmaRegistry = "EMMA_ID";

/// The regions that a place lies in.
struct PlaceRegions {
  std::string country;             ///< ISO 3166-1 of two letters; empty when not known
  std::vector<std::string> names;  ///< fit for comparing with area names: no administrative words
  /// Land before sea, the place's own land region first; behind them other registries' codes of the same.
  std::vector<RegionCode> codes;
  std::vector<RegionCode> seaCodes;  ///< those of `codes` that are of regions at sea
  /// What the codes were taken from, so that it can be asked whether it knows a warning's; none where they
  /// were stated.
  std::shared_ptr<RegionMap const> outlines;

  /// By what is known of the place, whatever it was taken from.
  bool operator==(PlaceRegions const& other) const {
    return country == other.country && names == other.names && codes == other.codes &&
           seaCodes == other.seaCodes;
  }
};

template <>
inline constexpr auto jsonFields<RegionCode> =
    FieldList{field("registry", &RegionCode::registry), field("code", &RegionCode::code)};

template <>
inline constexpr auto jsonFields<PlaceRegions> =
    FieldList{field("country", &PlaceRegions::country), field("names", &PlaceRegions::names),
              field("codes", &PlaceRegions::codes), field("seaCodes", &PlaceRegions::seaCodes)};

/// "EMMA_ID:DE356", or a bare code, which is taken for one of NUTS3.
RegionCode regionCodeOf(std::string_view text);

/// Whether one of the place's land regions has a code of that registry; a sea code alone does not count.
bool hasLandCodeOf(PlaceRegions const& regions, std::string_view registry);

}  // namespace nimbara

// The code of a warning region in one of the registries that services use, and what is known of a place in
// these terms. Plain values.
#pragma once

#include "base/json.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

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
  std::vector<RegionCode> codes;

  bool operator==(PlaceRegions const&) const = default;
};

template <>
inline constexpr auto jsonFields<RegionCode> =
    std::tuple{field("registry", &RegionCode::registry), field("code", &RegionCode::code)};

template <>
inline constexpr auto jsonFields<PlaceRegions> =
    std::tuple{field("country", &PlaceRegions::country), field("names", &PlaceRegions::names),
               field("codes", &PlaceRegions::codes)};

/// "EMMA_ID:DE356", or a bare code, which is taken for one of NUTS3.
RegionCode regionCodeOf(std::string_view text);

}  // namespace nimbara

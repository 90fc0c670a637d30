// The satellites that the globe knows: the groups of the feed, and what a record's name tells about its
// satellite. Values and plain functions; loads nothing (see satellite_feed.h).
#pragma once

#include "base/enum_names.h"
#include "globe/propagation/sat_rec.h"

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

class SatelliteCatalog {
 public:
  enum class Kind { iss, hubble, tiangong, starlink, oneweb, gps, geo, generic };

  struct Group {
    std::string_view id;       ///< the feed's name
    std::string_view display;  ///< key of the legend's text
    int colorIndex = 0;        ///< into the table of colours; groups that are shown together share one
  };

  struct Entry {
    SGP4::SatRec satrec;
    std::string name;
    int colorIndex = 0;
    bool isNamed = false;  ///< drawn with a label
    Kind kind = Kind::generic;
  };

  /// A colour of the layer, 0 to 1.
  struct Color {
    float red, green, blue;
  };

  static std::span<Group const> groups();
  /// Nothing for a group that does not exist.
  static Group const* group(std::string_view id);
  static std::span<Color const> colors();

  /// The kind by the satellite's name, its orbit and the group that it came in.
  static Kind kindOf(SGP4::SatRec const& record, std::string_view groupID);
  /// The text's key: "sat.kind." and the kind; "sat.kind.weather" for the weather group's own satellites.
  static std::string kindKey(Kind kind, std::string_view groupID);
  static std::string_view systemImage(Kind kind);
  /// The stations' cores and the telescope; not their modules and visitors.
  static bool isNamed(std::string_view name);

  struct Parsed {
    std::vector<Entry> entries;
    std::size_t dropped = 0;  ///< records that cannot be read or propagated
  };
  static Parsed parse(std::string_view text, Group const& group);
};

template <>
inline constexpr auto enumNames<SatelliteCatalog::Kind> = std::to_array<std::string_view>(
    {"iss", "hubble", "tiangong", "starlink", "oneweb", "gps", "geo", "generic"});
static_assert(enumNamesComplete(SatelliteCatalog::Kind::generic));
}  // namespace nimbara

// A place as a person writes it: a coordinate or a name.
#pragma once

#include "base/geodesy.h"
#include "base/result.h"

#include <string>
#include <string_view>
#include <variant>

namespace nimbara {

/// A place that a forecast can be asked for. The names are empty while only the coordinate is known.
struct Place {
  Coordinate coordinate;
  std::string name;
  std::string country;
  std::string region;

  bool operator==(Place const&) const = default;
};

struct PlaceName {
  std::string name;

  bool operator==(PlaceName const&) const = default;
};

/// "52.52,13.41" is a coordinate, a text with letters a name. The error is a sentence that names the text and
/// what is wrong with it: a latitude beyond ±90, a longitude beyond ±180, or neither coordinate nor name.
Result<std::variant<Coordinate, PlaceName>, std::string> parsePlace(std::string_view text);

}  // namespace nimbara

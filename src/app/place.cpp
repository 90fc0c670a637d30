#include "app/place.h"

#include "base/number.h"
#include "base/text.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

bool hasLetter(std::string_view text) {
  return std::ranges::any_of(text, [](char c) {
    auto const byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
  });
}

std::string quoted(std::string_view text) {
  return "'" + oneLine(text) + "'";
}

Result<std::variant<Coordinate, PlaceName>, std::string> checked(Coordinate coordinate,
                                                                 std::string_view text) {
  if (std::abs(coordinate.latitude) > 90) {
    return std::unexpected("the latitude of " + quoted(text) + " lies outside -90 to 90");
  }
  if (std::abs(coordinate.longitude) > 180) {
    return std::unexpected("the longitude of " + quoted(text) + " lies outside -180 to 180");
  }
  return coordinate;
}

}  // namespace

Result<std::variant<Coordinate, PlaceName>, std::string> parsePlace(std::string_view text) {
  text = trimmed(text);
  auto const parts = split(text, ',');
  auto const first = parseDouble(trimmed(parts[0]));
  auto const second = parts.size() == 2 ? parseDouble(trimmed(parts[1])) : std::nullopt;
  if (first && second) return checked({*first, *second}, text);
  if (!first && hasLetter(text)) return PlaceName{std::string(text)};
  return std::unexpected(quoted(text) + " is neither a coordinate like 52.52,13.41 nor a place's name");
}

}  // namespace nimbara

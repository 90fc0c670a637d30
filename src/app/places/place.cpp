#include "app/places/place.h"

#include "base/text/number.h"
#include "base/text/text.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace nimbara {

namespace {

bool beginsLikeNumber(std::string_view text) {
  return !text.empty() && std::string_view("+-.0123456789").find(text.front()) != std::string_view::npos;
}

/// "nan", "-inf": how programs write what is no number.
bool isNoNumber(std::string_view text) {
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  std::string const word = asciiLowered(text);
  return word == "nan" || word == "inf" || word == "infinity";
}

/// Two parts that are to be numbers, whether they are or not. "Nan, Thailand" and "Stuttgart, 70173" are not.
bool isMeantAsCoordinate(std::vector<std::string_view> const& parts) {
  auto const like = [](std::string_view part) {
    return beginsLikeNumber(trimmed(part)) || isNoNumber(trimmed(part));
  };
  return parts.size() == 2 && like(parts[0]) && like(parts[1]);
}

/// A letter that no number is written with, or any letter where the text does not begin like a number.
bool hasLetter(std::string_view text) {
  bool const likeNumber = beginsLikeNumber(text);
  return std::ranges::any_of(text, [likeNumber](char c) {
    auto const byte = static_cast<unsigned char>(c);
    bool const letter = byte >= 0x80 || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    return letter && !(likeNumber && (c == 'e' || c == 'E'));
  });
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// "10115", "110 00", "1000-205": digits, in two groups at most. Codes with letters are names.
bool isPostalCode(std::string_view text) {
  constexpr std::ptrdiff_t kFewest = 3;
  constexpr std::ptrdiff_t kMost = 10;
  auto const digits = std::ranges::count_if(text, isDigit);
  auto const marks = std::ranges::count_if(text, [](char c) { return c == ' ' || c == '-'; });
  bool const isWritten = digits + marks == std::ssize(text) && marks <= 1;
  return isWritten && digits >= kFewest && digits <= kMost && isDigit(text.front()) && isDigit(text.back());
}

std::string quoted(std::string_view text) {
  return "'" + oneLine(text) + "'";
}

Result<std::variant<Coordinate, PlaceName>, std::string> checked(Coordinate coordinate,
                                                                 std::string_view text) {
  if (std::abs(coordinate.latitude) > 90) {
    return std::unexpected("the latitude of " + quoted(text) + " is outside -90 to 90");
  }
  if (std::abs(coordinate.longitude) > 180) {
    return std::unexpected("the longitude of " + quoted(text) + " is outside -180 to 180");
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
  bool const isName = !text.empty() && !isMeantAsCoordinate(parts);
  if (isName && isPostalCode(text)) return PlaceName{std::string(text)};
  bool const isAfterCode =
      first && parts.size() > 1 && isPostalCode(trimmed(parts[0])) && hasLetter(parts[1]);
  if (isName && (!first || isAfterCode) && hasLetter(text)) return PlaceName{std::string(text)};
  return std::unexpected(quoted(text) + " is neither a coordinate like 52.52,13.41 nor a place's name");
}

}  // namespace nimbara

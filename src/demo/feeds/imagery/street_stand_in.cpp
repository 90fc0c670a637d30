#include "demo/feeds/imagery/street_stand_in.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/world/demo_picture.h"

namespace nimbara {

namespace {

constexpr int kSide = 256;
/// Ground, parks, streets and avenues.
constexpr std::uint32_t kMapColours[] = {0xf2efe9ff, 0xd5e8c8ff, 0xffffffff, 0xf6cf65ff};
enum Colour : std::uint8_t { ground, park, street, avenue };

/// Streets lie 32 points apart; each fourth is an avenue, and between some lies a park.
Colour colourAt(std::int64_t x, std::int64_t y) {
  constexpr int kApart = 32, kAvenue = 4 * kApart;
  bool const isOnAvenue = x % kAvenue < 5 || y % kAvenue < 5;
  if (isOnAvenue) return avenue;
  if (x % kApart < 2 || y % kApart < 2) return street;
  return (x / kApart * 7 + y / kApart * 13) % 11 == 0 ? park : ground;
}

}  // namespace

DemoAnswer streetTile(DemoRequest const& request, Instant /*now*/) {
  auto const parts = split(request.path, '/');
  auto const number = [&parts](std::size_t fromEnd) {
    std::string_view const part = parts[parts.size() - fromEnd];
    return parseInteger(part.substr(0, part.find('.'))).value_or(-1);
  };
  constexpr int kDeepest = 19;
  int const zoom = number(3), column = number(2), row = number(1);
  bool const isTile =
      zoom >= 0 && zoom <= kDeepest && column >= 0 && row >= 0 && column < 1 << zoom && row < 1 << zoom;
  if (!isTile) return {404, "", {}};
  DemoPicture picture(kSide, kSide);
  picture.palette.assign(std::begin(kMapColours), std::end(kMapColours));
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x)
      picture.at(x, y) = colourAt(std::int64_t{kSide} * column + x, std::int64_t{kSide} * row + y);
  }
  return {200, pngOf(picture), {}};
}

}  // namespace nimbara

#include "feeds/imagery/street_tiles.h"

#include "feeds/imagery/radar/radar_lists.h"
#include "platform/service.h"

#include <algorithm>

namespace nimbara {

bool isTileTemplate(std::string_view text) {
  constexpr std::string_view kParts[] = {"{z}", "{x}", "{y}"};
  for (std::string_view const part : kParts) {
    auto const at = text.find(part);
    if (at == std::string_view::npos || text.find(part, at + 1) != std::string_view::npos) return false;
  }
  if (std::ranges::count(text, '{') != 3 || std::ranges::count(text, '}') != 3) return false;
  // What stands before the first of them names the host; behind a question mark there may be a key.
  auto const path = text.find('/', text.find("//") + 2);
  return path != std::string_view::npos && path < text.find('{') && !text.contains(' ') &&
         normalizedBase(text.substr(0, path)).has_value();
}

std::string streetTileAddress(std::string_view pattern, TileAddress tile) {
  return pictureAddress(pattern, {tile});
}

std::string streetTileKey(std::string_view pattern, TileAddress tile, Instant now) {
  constexpr std::chrono::days kMonth{30};
  return "streets " + std::to_string(now.time_since_epoch() / kMonth) + " " +
         streetTileAddress(pattern, tile);
}

}  // namespace nimbara
